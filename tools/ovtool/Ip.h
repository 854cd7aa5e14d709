#pragma once
/// How GigE Vision cameras sit on the network.

#include <cstdint>
#include <string>

#include "Session.h"

/// Dotted texts.
struct IpAddresses {
    std::string ip;
    std::string mask;
    std::string gateway;
};

struct IpConfiguration {
    /// One of IpModeNames.
    std::string mode;
    /// For the modes with a persistent address.
    IpAddresses addresses;
    std::string userId;
};

/// The ways by which a camera can get its address.
std::vector<std::string> IpModeNames();

/// Cameras of all networks with their addresses and their adapters'.
void ListAddresses(uint32_t timeout, bool json);

// Cameras are named by MAC address, in any case and with any separator; they
// need not be reachable.

void ForceIp(const std::string& mac, const IpAddresses& addresses, bool json);
void ConfigureIp(const std::string& mac, const IpConfiguration& configuration, bool json);
void ResetCamera(const std::string& mac, OV_RESET_MODE mode, bool json);

/// The address that a camera keeps; sets it first when `wanted` has one.
void PersistentIp(const CameraChoice& choice, const IpAddresses& wanted, bool json);
