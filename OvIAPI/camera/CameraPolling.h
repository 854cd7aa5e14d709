#pragma once
/// Features that change by themselves: their values are dropped once their polling
/// time is over.

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

/// One node map, and when it was told the time.
class CPolledMap {
public:
    /// Begins to measure. The map stays until the camera is closed.
    void Begin(GenApi_3_0_ORVANE::CNodeMapRef& map);
    /// The shortest polling time of its nodes in milliseconds; -1 without any.
    int64_t GetPeriod() const { return m_period; }
    /// Hands the map the time since the last call; nothing without polled nodes.
    void Poll();

private:
    GenApi_3_0_ORVANE::CNodeMapRef* m_map = nullptr;
    int64_t m_period = -1;
    std::atomic<int64_t> m_last{0};
};

/// The node maps of one open camera.
class CCameraPolling {
public:
    CCameraPolling() = default;
    CCameraPolling(const CCameraPolling&) = delete;
    CCameraPolling& operator=(const CCameraPolling&) = delete;

    /// To be called when the camera and its stream are open.
    void Begin(OVTLClass::IDevice& camera, GenApi_3_0_ORVANE::CNodeMapRef& stream);
    /// The shortest period of its maps; -1 when none has polled nodes.
    int64_t GetPeriod() const { return m_period; }

    /// For the thread that polls.
    void Poll();
    /// Polls the map that a call is about to use, unless the thread does.
    void PollBeforeCall(OV_FEATURE_LEVEL level);
    /// Whether the thread polls this camera.
    void SetWatched(bool watched) { m_isWatched = watched; }

private:
    OVTLClass::IDevice* m_camera = nullptr;
    CPolledMap m_remote;
    CPolledMap m_local;
    CPolledMap m_stream;
    int64_t m_period = -1;
    std::atomic<bool> m_isWatched{false};
};
