#pragma once
/// Polling of features that change by themselves: their cached values are dropped when
/// their polling time has passed.

#include <array>
#include <atomic>
#include <cstdint>

#include "OvIDef.h"

namespace GenApi_3_0_ORVANE {
class CNodeMapRef;
}

namespace OVTLClass {
class IDevice;
}

/// One node map, and the time of its last poll.
class CPolledMap {
public:
    /// Starts the measurement of time. The map must exist until the camera is closed.
    void Begin(GenApi_3_0_ORVANE::CNodeMapRef& map);
    /// The shortest polling time of its nodes in milliseconds; -1 if none is polled.
    int64_t GetPeriod() const { return m_period; }
    /// Passes the time since the last call to the map. Does nothing without polled nodes.
    void Poll();

private:
    GenApi_3_0_ORVANE::CNodeMapRef* m_map = nullptr;
    int64_t m_period = -1;
    std::atomic<int64_t> m_last{0};
};

/// Polling of all node maps of one open camera.
class CCameraPolling {
public:
    CCameraPolling() = default;
    CCameraPolling(const CCameraPolling&) = delete;
    CCameraPolling& operator=(const CCameraPolling&) = delete;

    /// To be called once, after the camera and its stream were opened.
    void Begin(OVTLClass::IDevice& camera, GenApi_3_0_ORVANE::CNodeMapRef& stream);
    /// The shortest period of its maps in milliseconds; -1 if none has polled nodes.
    int64_t GetPeriod() const { return m_period; }

    /// Polls all maps. The polling thread calls it.
    void Poll();
    /// Polls the map that a call is about to use, unless the polling thread watches the
    /// camera.
    void PollBeforeCall(OV_FEATURE_LEVEL level);
    /// Says whether the polling thread watches this camera.
    void SetWatched(bool watched) { m_isWatched = watched; }

private:
    OVTLClass::IDevice* m_camera = nullptr;
    CPolledMap m_remote;
    CPolledMap m_local;
    CPolledMap m_stream;
    int64_t m_period = -1;
    std::atomic<bool> m_isWatched{false};
};
