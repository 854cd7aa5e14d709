// The order in which the calls on the device list look at their arguments.

#include <functional>

#include "support/ApiTest.h"

namespace {

/// What a call gets: everything right, unless a test spoils it.
struct DeviceArguments {
    bool hasRecord = true;
    bool hasHandle = true;
    bool hasKey = true;
    const char* key = "SN0_0";
    OV_OPEN_MODE mode = OV_OPEN_SN;
    OV_ACCESS_MODE access = OV_ACCESS_EXCLUSIVE;
    uint32_t index = 1;
    /// Of the caller's buffer.
    size_t size = sizeof(OV_DEVICE_BASE_INFO);
};

struct Check {
    const char* name;
    void (*spoil)(DeviceArguments&);
    OV_STATUS status;
    const char* message;
};

struct DeviceCall {
    const char* name;
    /// The exported function, which the failure names.
    const char* function;
    OV_STATUS (*run)(const DeviceArguments&);
    /// In the order in which the call makes them.
    std::vector<Check> checks;
};

OV_DEV_HANDLE lastHandle = nullptr;

OV_STATUS Open(const DeviceArguments& a) {
    const OV_OPEN_PARAM param{a.hasKey ? a.key : nullptr, a.mode, a.access};
    return OVOpenDevice(a.hasRecord ? &param : nullptr, a.hasHandle ? &lastHandle : nullptr);
}

OV_STATUS GetBaseInfo(const DeviceArguments& a) {
    OV_DEVICE_BASE_INFO record;
    size_t size = a.size;
    return OVGetAllDeviceBaseInfo(&record, a.hasRecord ? &size : nullptr);
}

OV_STATUS GetIPInfo(const DeviceArguments& a) {
    OV_DEVICE_IP_INFO record;
    return OVGetDeviceIPInfo(a.index, a.hasRecord ? &record : nullptr);
}

template <OV_STATUS (*Update)(uint32_t*, uint32_t)>
OV_STATUS UpdateList(const DeviceArguments& a) {
    uint32_t count = 0;
    return Update(a.hasRecord ? &count : nullptr, 0);
}

constexpr Check kNoRecord{"Record", [](DeviceArguments& a) { a.hasRecord = false; },
                          OV_STATUS_INVALID_PARAMETER, "NULL Pointer"};
constexpr Check kNoHandle{"Handle", [](DeviceArguments& a) { a.hasHandle = false; },
                          OV_STATUS_INVALID_PARAMETER, "NULL Pointer"};

const std::vector<Check> kOpenChecks{
    kNoRecord,
    {"NullKey", [](DeviceArguments& a) { a.hasKey = false; }, OV_STATUS_INVALID_PARAMETER,
     "NULL Pointer"},
    kNoHandle,
    {"EmptyKey", [](DeviceArguments& a) { a.key = ""; }, OV_STATUS_INVALID_PARAMETER,
     "OV_OPEN_PARAM::pszContent's length is 0"},
    {"Mode", [](DeviceArguments& a) { a.mode = 5; }, OV_STATUS_INVALID_PARAMETER,
     "Error Open Mode"},
    {"Access", [](DeviceArguments& a) { a.access = 5; }, OV_STATUS_INVALID_PARAMETER,
     "Error Access Mode"},
};

/// The checks of every opening, then those of one mode.
std::vector<Check> OpenChecksThen(std::initializer_list<Check> more) {
    std::vector<Check> checks = kOpenChecks;
    checks.insert(checks.end(), more);
    return checks;
}

const DeviceCall kDeviceCalls[] = {
    {"UpdateLocal", "OVUpdateDeviceList", &UpdateList<OVUpdateDeviceList>, {kNoRecord}},
    {"UpdateAll", "OVUpdateAllDeviceList", &UpdateList<OVUpdateAllDeviceList>, {kNoRecord}},
    {"GetBaseInfo",
     "OVGetAllDeviceBaseInfo",
     &GetBaseInfo,
     {kNoRecord,
      {"Size", [](DeviceArguments& a) { --a.size; }, OV_STATUS_NEED_MORE_BUFFER,
       "Need more buffer for all device info"}}},
    {"GetAddresses",
     "OVGetDeviceIPInfo",
     &GetIPInfo,
     {kNoRecord,
      {"IndexZero", [](DeviceArguments& a) { a.index = 0; }, OV_STATUS_OUT_OF_RANGE,
       "Index out of range"},
      {"Class", [](DeviceArguments&) {}, OV_STATUS_INVALID_PARAMETER, "The device is not GEV"}}},
    {"OpenByIndex",
     "OVOpenDeviceByIndex",
     [](const DeviceArguments& a) {
         return OVOpenDeviceByIndex(a.index, a.hasHandle ? &lastHandle : nullptr);
     },
     {kNoHandle,
      {"IndexZero", [](DeviceArguments& a) { a.index = 0; }, OV_STATUS_OUT_OF_RANGE,
       "Index should not be 0"}}},
    {"OpenBySerial", "OVOpenDevice", &Open,
     OpenChecksThen({{"Serial", [](DeviceArguments& a) { a.key = "nobody"; },
                      OV_STATUS_NOT_FOUND_DEVICE, "Not found device"}})},
    {"OpenByAddress", "OVOpenDevice", &Open,
     OpenChecksThen({{"Address",
                      [](DeviceArguments& a) {
                          a.mode = OV_OPEN_IP;
                          a.key = "1.2.3.255";
                      },
                      OV_STATUS_INVALID_PARAMETER, "IP string is wrong format"}})},
    {"OpenByPlace", "OVOpenDevice", &Open,
     OpenChecksThen({{"Place",
                      [](DeviceArguments& a) {
                          a.mode = OV_OPEN_INDEX;
                          a.key = "0";
                      },
                      OV_STATUS_OUT_OF_RANGE, "Index should not be 0"}})},
    {"Close",
     "OVCloseDevice",
     [](const DeviceArguments& a) { return OVCloseDevice(a.hasHandle ? lastHandle : nullptr); },
     {{"Handle", [](DeviceArguments& a) { a.hasHandle = false; }, OV_STATUS_INVALID_HANDLE,
       "Invalid device handle"}}},
};

class DeviceChecks : public ApiTest, public testing::WithParamInterface<DeviceCall> {
protected:
    void SetUp() override { lastHandle = nullptr; }

    /// Every two checks of the call, the first of them before or at the second.
    static void ForEachPair(const std::function<void(const Check&, const Check&)>& act) {
        const auto& checks = GetParam().checks;
        for (size_t first = 0; first < checks.size(); ++first) {
            for (size_t second = first; second < checks.size(); ++second) {
                SCOPED_TRACE(std::string(checks[first].name) + " and " + checks[second].name);
                act(checks[first], checks[second]);
            }
        }
    }
    static OV_STATUS Run(const Check& first, const Check& second) {
        DeviceArguments arguments;
        second.spoil(arguments);
        first.spoil(arguments);
        return GetParam().run(arguments);
    }
};

TEST_P(DeviceChecks, TheFirstOfTwoBadArgumentsDecides) {
    Init();
    ASSERT_EQ(Update(), 1U);
    ForEachPair([](const Check& first, const Check& second) {
        ExpectFailure(Run(first, second), first.status, first.message);
        EXPECT_EQ(lastHandle, nullptr) << "an output of a failure";
    });
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 0U);
}

TEST_P(DeviceChecks, TheLibraryMustBeInitialisedFirst) {
    ForEachPair([](const Check& first, const Check& second) {
        ExpectFailure(Run(first, second), OV_STATUS_NOT_INIT_API, "Not init API");
    });
}

TEST_P(DeviceChecks, TheFailureNamesTheCall) {
    Init();
    Update();
    const Check& first = GetParam().checks.front();
    EXPECT_EQ(Run(first, first), first.status);
    EXPECT_EQ(
        LastError::Get().text.find("{" + std::to_string(first.status) + "}{" + GetParam().function),
        0U)
        << LastError::Get().text;
}

INSTANTIATE_TEST_SUITE_P(All, DeviceChecks, testing::ValuesIn(kDeviceCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
