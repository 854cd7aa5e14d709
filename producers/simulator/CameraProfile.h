#pragma once
/// What one simulated camera is and where it sits on the network.

#include <cstdint>
#include <string>

#include "gige/protocol/Address.h"
#include "gige/protocol/Gvcp.h"
#include "simulator/Faults.h"

namespace OvSimulator {

/// Addresses that a camera has at a time.
struct IpAddresses {
    OvGige::Ipv4 ip;
    OvGige::Ipv4 mask;
    OvGige::Ipv4 gateway;

    bool operator==(const IpAddresses&) const = default;
};

/// What of the messages that carry events a camera sends.
enum class MessageKind {
    None,       ///< it has no channel for them
    Event,      ///< time and frame of events
    EventData,  ///< all that belongs to an event
};

struct CameraProfile {
    unsigned index = 0;   ///< tells the pictures of cameras apart
    std::string vendor;   ///< at most 31 bytes, as the other texts of the identity
    std::string model;    ///< the colour camera's or the mono camera's
    std::string version;  ///< of the camera
    std::string serialNumber;
    std::string userName;  ///< at most 15 bytes
    OvGige::MacAddress mac;
    bool color = true;

    /// The adapter that the camera sits on: broadcasts arrive and leave there alone, and
    /// addresses that it lacks are added to it. Empty: the camera has an address that this
    /// machine has already, on whatever adapter.
    std::string adapter;
    /// What a DHCP server would offer.
    IpAddresses address;
    uint16_t port = OvGige::kControlPort;  ///< 0: any that is free

    MessageKind messages = MessageKind::EventData;
    bool zipped = true;          ///< whether the camera's description is
    size_t descriptionSize = 0;  ///< a smaller description is filled up with blanks to it
    Faults faults;
};

/// A camera with an identity of its own, which follows from what is given: it is the same each
/// time.
CameraProfile MakeProfile(unsigned index, const IpAddresses& address, uint16_t port);

}  // namespace OvSimulator
