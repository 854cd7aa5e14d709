#pragma once
/// The virtual cameras at the flat interface, as applications have them.

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "support/ApiTest.h"
#include "support/FrameCounter.h"

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
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<EventData> m_heard;
};

/// Two virtual cameras that remember nothing; the first is open.
class VirtualApiTest : public ::testing::Test {
protected:
    static constexpr uint32_t kCameras = 2;
    static constexpr uint64_t kDropOff = 0xA20, kDropOffTime = 0xA24, kDropOffFrames = 0xA28;

    VirtualApiTest() {
        setenv("OV_VIRTUAL_STATE", "off", 1);
        setenv("OV_VIRTUAL_CAMERAS", "2", 1);
    }
    ~VirtualApiTest() override { OVCloseLib(); }  // before what the callbacks point at goes

    void SetUp() override {
        ASSERT_OV_OK(OVInitLib());
        ASSERT_EQ(Update(), kCameras);
        camera = OpenQuick();
    }

    static uint32_t Update() {
        uint32_t count = 0;
        EXPECT_OV_OK(OVUpdateDeviceList(&count, 1000));
        return count;
    }

    /// With a small window and a quick exposure.
    static OV_DEV_HANDLE OpenQuick() {
        OV_DEV_HANDLE handle = nullptr;
        EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
        EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 64));
        EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Height, 32));
        EXPECT_OV_OK(OVSetFloat(handle, OV_FEATURE_ExposureTime, 100));
        return handle;
    }

    static void Write(OV_DEV_HANDLE handle, uint64_t address, uint32_t value) {
        size_t size = sizeof value;
        EXPECT_OV_OK(OVWriteRemoteDevicePort(handle, address, &value, &size));
    }

    static void SetEntry(OV_DEV_HANDLE handle, OV_FEATURE_ID feature, const char* name) {
        size_t size = 0;
        ASSERT_OV_OK(OVGetEnumDescription(handle, feature, nullptr, &size));
        std::vector<OV_ENUM_DESCRIPTION> entries(size / sizeof(OV_ENUM_DESCRIPTION));
        ASSERT_OV_OK(OVGetEnumDescription(handle, feature, entries.data(), &size));
        for (const OV_ENUM_DESCRIPTION& entry : entries) {
            if (std::strcmp(entry.szSymbolic, name) == 0) {
                ASSERT_OV_OK(OVSetEnum(handle, feature, entry.nValue));
                return;
            }
        }
        FAIL() << "no entry " << name;
    }

    void Notify(const char* event) const {
        SetEntry(camera, OV_FEATURE_EventSelector, event);
        SetEntry(camera, OV_FEATURE_EventNotification, "On");
    }

    OV_DEV_HANDLE camera = nullptr;
};
