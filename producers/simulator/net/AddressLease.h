#pragma once
/// An address that an adapter of this machine has as long as a simulated camera needs it.

#include "simulator/CameraProfile.h"

namespace OvSimulator {

/// Adds the address to the adapter and takes it away at the end.
class AddressLease {
public:
    /// @param adapter  the system's number of the adapter
    /// @throws OvProducer::Failure GC_ERR_ACCESS_DENIED without the right to it, GC_ERR_IO if
    ///         the system refuses for another reason
    AddressLease(int adapter, const IpAddresses& addresses);
    ~AddressLease();
    AddressLease(const AddressLease&) = delete;
    AddressLease& operator=(const AddressLease&) = delete;

private:
    const int m_adapter;
    const IpAddresses m_addresses;
};

}  // namespace OvSimulator
