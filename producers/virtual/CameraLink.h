#pragma once
/// The line between a camera and its host: who listens to the camera, and
/// whether the camera is on the bus at all.

#include <chrono>
#include <memory>
#include <mutex>

#include "framework/Backend.h"
#include "virtual/CameraEvents.h"

namespace OvVirtual {

/// All operations may be called from any thread.
class CameraLink {
public:
    using Clock = std::chrono::steady_clock;

    /// -10000 while the camera is off the bus.
    void Open(std::weak_ptr<OvProducer::EventSink> host);
    void Close();

    /// Whether a search finds the camera.
    bool IsOnBus() const;
    /// -10000 off the bus, and over a connection that was lost. A camera that
    /// comes back must be opened anew.
    void CheckUsable() const;

    /// The connection is lost, which the host is told; the camera comes back to
    /// the bus after that time.
    void DropOff(std::chrono::milliseconds time);

    /// Nobody hears it unless the camera is open and the host has registered.
    void Send(CameraEvent event, uint64_t frame, uint64_t ticks);

private:
    mutable std::mutex m_mutex;
    std::weak_ptr<OvProducer::EventSink> m_host;
    bool m_isLost = false;
    Clock::time_point m_back = Clock::time_point::min();  ///< when it is on the bus again
};

}  // namespace OvVirtual
