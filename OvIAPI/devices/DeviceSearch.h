#pragma once
/// The search for cameras on all producers.

#include <atomic>
#include <cstdint>
#include <mutex>

#include "TLClassSupport/OvLock.h"
#include "devices/ProducerCameras.h"

/// How far a search goes.
enum class OvSearchMode : int32_t { WholeNetwork = 0, LocalNetwork = 1 };

/// Searches for cameras. One thread at a time searches.
class CDeviceSearch {
public:
    CDeviceSearch() = default;
    CDeviceSearch(const CDeviceSearch&) = delete;
    CDeviceSearch& operator=(const CDeviceSearch&) = delete;

    /// Applies to all later searches, also to those that an opening starts.
    void SetMode(OvSearchMode mode) { m_mode = mode; }
    /// Searches, after the searches of other threads.
    /// @param timeout  how long each producer may search, in milliseconds
    /// @return the cameras in the order of the producers
    OvDeviceInfoList Run(unsigned timeout);
    /// Reserves the search for the calling thread as long as the result exists. The
    /// result owns no lock if another thread is searching.
    std::unique_lock<OVTLClass::CLock> TryTakeTurn() { return {m_lock, std::try_to_lock}; }

private:
    OVTLClass::CLock m_lock{OVTLClass::LockRank::Search};
    /// Atomic because a search that an opening starts reads it without the API lock.
    std::atomic<OvSearchMode> m_mode{OvSearchMode::WholeNetwork};
};

/// Searches for the GigE Vision cameras in all networks: a camera that is to be
/// configured may be in a foreign subnet and so not in the device list.
OvDeviceInfoList SearchWholeNetwork();
