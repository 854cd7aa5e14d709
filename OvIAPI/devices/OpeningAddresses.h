#pragma once
/// The addresses at which cameras are being opened.

#include <condition_variable>
#include <cstdint>
#include <vector>

#include "TLClassSupport/OvLock.h"

/// Lets one thread at a time open the camera at an address.
class COpeningAddresses {
public:
    COpeningAddresses() = default;
    COpeningAddresses(const COpeningAddresses&) = delete;
    COpeningAddresses& operator=(const COpeningAddresses&) = delete;

    /// Waits while another thread opens the address.
    void Begin(int64_t address);
    void End(int64_t address);

private:
    OVTLClass::CLock m_lock{OVTLClass::LockRank::OpeningAddresses};
    std::vector<int64_t> m_addresses;
    std::condition_variable_any m_ended;
};
