#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>

#include "camera/Features.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Interrupts.h"
#include "support/Json.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

using Clock = std::chrono::steady_clock;

/// What the camera sent, from the threads of its callbacks to the one that
/// prints.
class Inbox {
public:
    void Put(Json event) {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
        m_changed.notify_one();
    }
    void PutLoss() {
        const std::lock_guard lock(m_mutex);
        m_isLost = true;
        m_changed.notify_one();
    }

    /// The next event, or nothing at the end, which an interrupt brings too. A loss is
    /// raised, but not before what was under way then.
    std::optional<Json> Take(Clock::time_point end, Interrupts& interrupts) {
        constexpr std::chrono::milliseconds kLastWords(100);
        constexpr std::chrono::milliseconds kSlice(50);
        const auto hasEvent = [this] { return !m_events.empty(); };
        std::unique_lock lock(m_mutex);
        while (!m_changed.wait_until(lock, std::min(end, Clock::now() + kSlice),
                                     [&] { return m_isLost || hasEvent(); })) {
            if (interrupts.Came() || Clock::now() >= end) {
                return std::nullopt;
            }
        }
        if (m_isLost && !m_changed.wait_for(lock, kLastWords, hasEvent)) {
            throw LossOfCamera();
        }
        if (!hasEvent()) {
            return std::nullopt;
        }
        Json event = std::move(m_events.front());
        m_events.pop_front();
        return event;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Json> m_events;
    bool m_isLost = false;
};

/// The features that one event brings.
class EventFeatures {
public:
    struct Part {
        std::string name;
        FeatureRow row;
    };

    /// Those that the library knows.
    explicit EventFeatures(std::string name) : m_name(std::move(name)) {
        for (const char* const part : {"", "Timestamp", "FrameID"}) {
            const std::string wanted = "Event" + m_name + part;
            const auto& rows = AllFeatures();
            const auto found = std::find_if(rows.begin(), rows.end(),
                                            [&](const auto& row) { return row.name == wanted; });
            if (found != rows.end()) {
                m_parts.push_back({part, *found});
            }
        }
    }

    const std::string& Name() const { return m_name; }
    const std::vector<Part>& Parts() const { return m_parts; }

    /// What came last, of the features that the camera has. It has them once
    /// events are awaited.
    Json Read(OV_DEV_HANDLE camera) const {
        Json event = {{"event", m_name}, {"id", nullptr}, {"timestamp", nullptr}};
        Json data = Json::object();
        for (const Part& part : m_parts) {
            bool isThere = false;
            OVIsImplemented(camera, part.row.id, &isThere);
            if (!isThere) {
                continue;
            }
            const auto value = TryReadFeature(camera, part.row);
            const Json read = value ? ToJson(*value) : Json();
            if (part.name.empty()) {
                event["id"] = read;
            } else if (part.name == "Timestamp") {
                event["timestamp"] = read;
            } else {
                data[part.row.name] = read;
            }
        }
        event["data"] = data;
        return event;
    }

private:
    std::string m_name;
    std::vector<Part> m_parts;
};

/// A feature callback for the life of the object.
class FeatureCallback {
public:
    /// On the first of the event's features that the camera has: they change
    /// together, so one tells of all.
    FeatureCallback(OV_DEV_HANDLE camera, const EventFeatures& features, void* user,
                    OVFeatureCallback function)
        : m_camera(camera) {
        for (const EventFeatures::Part& part : features.Parts()) {
            m_feature = part.row.id;
            if (OVRegisterFeatureCallback(camera, user, function, m_feature, &m_handle) ==
                OV_STATUS_SUCCESS) {
                return;
            }
        }
        throw ToolError("the camera has no features of the event " + features.Name());
    }
    ~FeatureCallback() { OVUnregisterFeatureCallback(m_camera, m_feature, m_handle); }
    FeatureCallback(const FeatureCallback&) = delete;
    FeatureCallback& operator=(const FeatureCallback&) = delete;

private:
    OV_DEV_HANDLE m_camera;
    OV_FEATURE_ID m_feature = 0;
    OV_FEATURE_CALLBACK_HANDLE m_handle = nullptr;
};

/// Has the camera send an event for the life of the object. Selector and
/// notification are then as before, unless the camera is gone.
class Notification {
public:
    Notification(OV_DEV_HANDLE camera, const std::string& name) : m_camera(camera) {
        Check(OVGetEnum(camera, OV_FEATURE_EventSelector, &m_selectorBefore), "read EventSelector");
        WriteFeature(camera, RowOf(OV_FEATURE_EventSelector), name);
        Check(OVGetEnum(camera, OV_FEATURE_EventSelector, &m_selector), "read EventSelector");
        Check(OVGetEnum(camera, OV_FEATURE_EventNotification, &m_before), "read EventNotification");
        WriteFeature(camera, RowOf(OV_FEATURE_EventNotification), "On");
    }
    ~Notification() {
        OVSetEnum(m_camera, OV_FEATURE_EventSelector, m_selector);
        OVSetEnum(m_camera, OV_FEATURE_EventNotification, m_before);
        OVSetEnum(m_camera, OV_FEATURE_EventSelector, m_selectorBefore);
    }
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;

private:
    OV_DEV_HANDLE m_camera;
    int64_t m_selectorBefore = 0;
    int64_t m_selector = 0;
    int64_t m_before = 0;
};

/// One event, sent and heard for the life of the object.
class Subscription {
public:
    Subscription(OV_DEV_HANDLE camera, EventFeatures features, Inbox& inbox)
        : m_camera(camera),
          m_features(std::move(features)),
          m_inbox(inbox),
          m_callback(camera, m_features, this, &OnEvent),
          m_notification(camera, m_features.Name()) {}

private:
    static void OnEvent(OV_FEATURE_ID /*feature*/, void* user) {
        const auto* const self = static_cast<Subscription*>(user);
        self->m_inbox.Put(self->m_features.Read(self->m_camera));
    }

    OV_DEV_HANDLE m_camera;
    const EventFeatures m_features;
    Inbox& m_inbox;
    FeatureCallback m_callback;
    Notification m_notification;
};

/// The events that are asked for; all that can be heard if none is named.
std::vector<EventFeatures> ChosenEvents(OV_DEV_HANDLE camera,
                                        const std::vector<std::string>& names) {
    const FeatureRange range = ReadRange(camera, RowOf(OV_FEATURE_EventSelector));
    const auto& offered = std::get<std::vector<std::string>>(range);
    std::vector<EventFeatures> events;
    for (const std::string& name : names.empty() ? offered : names) {
        if (std::find(offered.begin(), offered.end(), name) == offered.end()) {
            throw ToolError("the camera has no event " + name + ", but: " + ToText(range));
        }
        EventFeatures features(name);
        if (!names.empty() || !features.Parts().empty()) {
            events.push_back(std::move(features));
        }
    }
    return events;
}

/// Frames that flow and are of no interest.
class UnseenFrames {
public:
    explicit UnseenFrames(OV_DEV_HANDLE camera) : m_acquisition(Prepare(camera)) {}

private:
    static OV_DEV_HANDLE Prepare(OV_DEV_HANDLE camera) {
        Check(OVRegisterCaptureCallback(camera, nullptr, [](OV_FRAME_CALLBACK_PARAM*) {}),
              "take frames");
        return camera;
    }

    Acquisition m_acquisition;
};

void Print(const Json& event, bool json) {
    if (json) {
        PrintJsonLine(event);
        return;
    }
    const auto name = event["event"].get<std::string>();
    std::printf("%s", Visible(name).c_str());
    if (!event["id"].is_null()) {
        std::printf(" 0x%" PRIx64, event["id"].get<int64_t>());
    }
    if (!event["timestamp"].is_null()) {
        std::printf(" at %s", event["timestamp"].dump().c_str());
    }
    const size_t prefix = ("Event" + name).size();
    for (const auto& [feature, value] : event["data"].items()) {
        std::printf("  %s %s", feature.c_str() + prefix, ToText(value).c_str());
    }
    std::printf("\n");
    FlushOutput();
}

}  // namespace

void PrintEvents(const CameraChoice& choice, const EventOptions& options, bool json) {
    Interrupts interrupts;
    Inbox inbox;
    const Camera camera(choice, Access::Control);
    void* loss = nullptr;
    Check(OVRegisterDeviceOfflineCallback(
              camera.Handle(), &inbox, [](void* user) { static_cast<Inbox*>(user)->PutLoss(); },
              &loss),
          "hear of a loss of the camera");
    std::vector<std::unique_ptr<Subscription>> subscriptions;
    for (EventFeatures& features : ChosenEvents(camera.Handle(), options.names)) {
        subscriptions.push_back(
            std::make_unique<Subscription>(camera.Handle(), std::move(features), inbox));
    }
    std::optional<UnseenFrames> frames;
    if (!options.idle) {
        frames.emplace(camera.Handle());
    }
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                        std::chrono::duration<double>(options.seconds));
    for (uint32_t number = 0; !options.count || number < *options.count; ++number) {
        const std::optional<Json> event = inbox.Take(end, interrupts);
        if (!event || interrupts.Came()) {
            break;
        }
        Print(*event, json);
    }
    interrupts.Check();
}
