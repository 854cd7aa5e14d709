#pragma once
/// Notes what a device hears of its camera.

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <vector>

#include "framework/Backend.h"
#include "gige/protocol/BigEndian.h"

namespace OvTest {

/// An event as a consumer gets it.
struct NotedEvent {
    uint64_t id = 0;
    OvGige::Bytes bytes;

    bool operator==(const NotedEvent&) const = default;
};

class NotingSink : public OvProducer::EventSink {
public:
    void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) override {
        if (type != GenTL::EVENT_REMOTE_DEVICE) {
            return;
        }
        NotedEvent event;
        std::memcpy(&event.id, entry.data(), sizeof event.id);
        event.bytes.assign(entry.begin() + sizeof event.id, entry.end());
        const std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
        m_changed.notify_all();
    }

    std::vector<NotedEvent> Events() const {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }
    /// The events once there are so many.
    std::vector<NotedEvent> Await(size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::minutes(1), [&] { return m_events.size() >= count; });
        return m_events;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<NotedEvent> m_events;
};

}  // namespace OvTest
