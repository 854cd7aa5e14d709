// The checks of the event calls, and their order.

#include "EventApiTest.h"

namespace {

struct EventArguments {
    OV_DEV_HANDLE camera = nullptr;
    OV_FEATURE_ID feature = 0;
    void* callback = nullptr;
    bool hasFunction = true;
    bool hasOutput = true;
    void* handle = nullptr;
    uint32_t number = 0;

    OVDeviceOfflineCallback OnLoss() const {
        return hasFunction ? [](void*) {} : OVDeviceOfflineCallback{nullptr};
    }
    OVFeatureCallback OnChange() const {
        return hasFunction ? [](OV_FEATURE_ID, void*) {} : OVFeatureCallback{nullptr};
    }
    template <class T>
    T* Output(T& output) const {
        return hasOutput ? &output : nullptr;
    }
};

struct EventCall {
    const char* name;
    /// H device handle, N feature, F function, O output, C callback handle, in
    /// the order of the checks.
    const char* order;
    bool isOfFeatures;
    OV_STATUS (*run)(EventArguments& arguments);
};

const EventCall kEventCalls[] = {
    {"RegisterDeviceOfflineCallback", "HFO", false,
     [](EventArguments& a) {
         return OVRegisterDeviceOfflineCallback(a.camera, nullptr, a.OnLoss(), a.Output(a.handle));
     }},
    {"UnregisterDeviceOfflineCallback", "HC", false,
     [](EventArguments& a) { return OVUnregisterDeviceOfflineCallback(a.camera, a.callback); }},
    {"RegisterFeatureCallback", "HNFO", true,
     [](EventArguments& a) {
         return OVRegisterFeatureCallback(a.camera, nullptr, a.OnChange(), a.feature,
                                          a.Output(a.handle));
     }},
    {"UnregisterFeatureCallback", "HCN", true,
     [](EventArguments& a) {
         return OVUnregisterFeatureCallback(a.camera, a.feature, a.callback);
     }},
    {"FlushEvent", "H", true, [](EventArguments& a) { return OVFlushEvent(a.camera); }},
    {"GetEventNumInQueue", "HO", true,
     [](EventArguments& a) { return OVGetEventNumInQueue(a.camera, a.Output(a.number)); }},
};

class EventChecks : public EventApiTest, public testing::WithParamInterface<EventCall> {
protected:
    EventArguments Good() const {
        EventArguments arguments;
        arguments.camera = camera;
        arguments.feature = kEvent;
        arguments.callback = GetParam().isOfFeatures ? RegisterFeature(kEvent) : RegisterOffline();
        return arguments;
    }

    static void Spoil(EventArguments& arguments, char check) {
        switch (check) {
            case 'H':
                arguments.camera = nullptr;
                break;
            case 'N':
                arguments.feature |= 0xFFFFFF;
                break;
            case 'F':
                arguments.hasFunction = false;
                break;
            case 'O':
                arguments.hasOutput = false;
                break;
            default:
                arguments.callback = nullptr;
        }
    }

    static void ExpectRefused(EventArguments& arguments, char check) {
        const OV_STATUS status = GetParam().run(arguments);
        switch (check) {
            case 'H':
                ExpectFailure(status, OV_STATUS_INVALID_HANDLE, "Invalid device handle");
                break;
            case 'N':
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "Invalid feature ID");
                break;
            case 'C':
                ExpectFailure(status, OV_STATUS_INVALID_HANDLE,
                              GetParam().isOfFeatures ? "Invalid feature callback handle"
                                                      : "Invalid event callback handle");
                break;
            default:
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
        }
        EXPECT_EQ(arguments.handle, nullptr);
    }
};

TEST_P(EventChecks, PassWhenAllIsRight) {
    EventArguments arguments = Good();
    EXPECT_OV_OK(GetParam().run(arguments));
}

TEST_P(EventChecks, TheFirstOfTwoBadArgumentsDecides) {
    const std::string order = GetParam().order;
    const EventArguments good = Good();
    for (size_t first = 0; first < order.size(); ++first) {
        for (size_t second = first; second < order.size(); ++second) {
            SCOPED_TRACE(order.substr(first, 1) + order[second]);
            EventArguments arguments = good;
            Spoil(arguments, order[first]);
            Spoil(arguments, order[second]);
            ExpectRefused(arguments, order[first]);
        }
    }
}

TEST_P(EventChecks, TheFirstDecidesWhenAllAreBad) {
    EventArguments arguments = Good();
    for (const char check : std::string(GetParam().order)) {
        Spoil(arguments, check);
    }
    ExpectRefused(arguments, 'H');
}

TEST_P(EventChecks, AClosedLibraryIsToldFirst) {
    EventArguments arguments = Good();
    ASSERT_OV_OK(OVCloseLib());
    for (const char check : std::string(GetParam().order)) {
        Spoil(arguments, check);
    }
    ExpectFailure(GetParam().run(arguments), OV_STATUS_NOT_INIT_API, "Not init API");
}

INSTANTIATE_TEST_SUITE_P(All, EventChecks, testing::ValuesIn(kEventCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
