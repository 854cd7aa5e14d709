#pragma once
/// The connection between a camera and its host: who receives the camera's events, and
/// whether the camera is on the bus.

#include <chrono>
#include <memory>
#include <mutex>

#include "framework/Backend.h"
#include "virtual/CameraEvents.h"

namespace OvVirtual {

/// Any thread may call all operations.
class CameraLink {
public:
    using Clock = std::chrono::steady_clock;

    /// Fails with -10000 while the camera is off the bus.
    void Open(std::weak_ptr<OvProducer::EventSink> host);
    void Close();

    /// Whether a search finds the camera.
    bool IsOnBus() const;
    /// Whether the connection was lost since the camera was opened.
    bool IsLost() const;
    /// Fails with -10000 while the camera is off the bus, and after the connection was
    /// lost until the camera is opened again.
    void CheckUsable() const;

    /// Drops the connection and posts the event of a lost device. The camera is on the
    /// bus again after that time.
    void DropOff(std::chrono::milliseconds time);

    /// Posts an event. Nobody receives it unless the camera is open and the host has
    /// registered the event.
    void Send(CameraEvent event, uint64_t frame, uint64_t ticks);

private:
    mutable std::mutex m_mutex;
    std::weak_ptr<OvProducer::EventSink> m_host;
    bool m_isLost = false;
    Clock::time_point m_back = Clock::time_point::min();  ///< time of its return to the bus
};

}  // namespace OvVirtual
