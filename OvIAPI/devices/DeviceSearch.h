#pragma once
/// The search for cameras on all producers.

#include <atomic>
#include <cstdint>
#include <mutex>

#include "TLClassSupport/OvLock.h"
#include "devices/DeviceReader.h"

/// How far a search goes.
enum class OvSearchMode : int32_t { WholeNetwork = 0, LocalNetwork = 1 };

/// Threads search one after the other.
class CDeviceSearch {
public:
    CDeviceSearch() = default;
    CDeviceSearch(const CDeviceSearch&) = delete;
    CDeviceSearch& operator=(const CDeviceSearch&) = delete;

    /// For all searches from now on, the automatic ones included.
    void SetMode(OvSearchMode mode) { m_mode = mode; }
    /// Waits for its turn.
    /// @param timeout  for each producer, in milliseconds
    /// @return the cameras in the order of the producers
    OvDeviceInfoList Run(unsigned timeout);
    /// The turn of the calling thread, while which it may search; owns no lock while
    /// another thread searches.
    std::unique_lock<OVTLClass::CLock> TryTakeTurn() { return {m_lock, std::try_to_lock}; }

private:
    OVTLClass::CLock m_lock{OVTLClass::LockRank::Search};
    /// A search that an opening starts reads it without the API lock.
    std::atomic<OvSearchMode> m_mode{OvSearchMode::WholeNetwork};
};

/// Looks for one GigE Vision camera that is to be configured: in all networks, since a
/// camera in a foreign subnet need not be known.
OvDeviceInfoList SearchWholeNetwork();
