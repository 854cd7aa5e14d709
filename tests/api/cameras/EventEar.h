#pragma once
/// Listens to the events of a camera.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "support/LastError.h"

/// What an event callback reads of its event.
struct EventData {
    OV_FEATURE_ID feature = 0;
    int64_t id = 0;
    int64_t timestamp = 0;
    int64_t frame = 0;
};

/// The features of one event.
struct EventIds {
    const char* name;
    OV_FEATURE_ID id;
    OV_FEATURE_ID timestamp;
    OV_FEATURE_ID frame;
};

/// Reads the event's features on the thread that reports it.
class EventEar {
public:
    EventEar(OV_DEV_HANDLE camera, const EventIds& ids) : m_camera(camera), m_ids(ids) {}
    EventEar(const EventEar&) = delete;
    EventEar& operator=(const EventEar&) = delete;
    /// Events may come until here, long after the last frame.
    ~EventEar() {
        for (const auto& [feature, callback] : m_callbacks) {
            EXPECT_OV_OK(OVUnregisterFeatureCallback(m_camera, feature, callback));
        }
    }

    /// Hears of the events by one of their features.
    void Listen(OV_FEATURE_ID feature) {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(OVRegisterFeatureCallback(m_camera, this, &OnEvent, feature, &handle));
        m_callbacks.emplace_back(feature, handle);
    }
    static void OnEvent(OV_FEATURE_ID feature, void* user) {
        static_cast<EventEar*>(user)->Hear(feature);
    }
    /// The next event that was heard.
    EventData Next() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_heard.empty(); });
        const EventData data = m_heard.front();
        m_heard.pop_front();
        return data;
    }
    size_t GetCount() {
        const std::lock_guard lock(m_mutex);
        return m_heard.size();
    }

private:
    void Hear(OV_FEATURE_ID feature) {
        EventData data;
        data.feature = feature;
        EXPECT_OV_OK(OVGetInt(m_camera, m_ids.id, &data.id));
        EXPECT_OV_OK(OVGetInt(m_camera, m_ids.timestamp, &data.timestamp));
        EXPECT_OV_OK(OVGetInt(m_camera, m_ids.frame, &data.frame));
        const std::lock_guard lock(m_mutex);
        m_heard.push_back(data);
        m_changed.notify_all();
    }

    OV_DEV_HANDLE m_camera;
    EventIds m_ids;
    std::vector<std::pair<OV_FEATURE_ID, OV_FEATURE_CALLBACK_HANDLE>> m_callbacks;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<EventData> m_heard;
};
