// Every GenTL call beneath a call of the interface fails in turn: what was done
// before is undone, and the next attempt works.

#include <algorithm>
#include <functional>
#include <map>

#include "support/ApiTest.h"

namespace {

/// How often each function is called during an action.
std::map<std::string, unsigned> CallsOf(TestProducer& producer,
                                        const std::function<void()>& action) {
    producer.ClearLog();
    action();
    std::map<std::string, unsigned> calls;
    for (const std::string& name : producer.Log()) {
        ++calls[name];
    }
    return calls;
}

/// Information that producers may refuse, and calls of the way down: their
/// failure is no failure of the action.
bool IsForgiven(const std::string& name) {
    static const char* const kForgiven[] = {
        "GCGetInfo",          "TLGetInfo",       "TLGetInterfaceInfo", "IFGetInfo",
        "IFGetDeviceInfo",    "DevGetInfo",      "DSGetInfo",          "DSGetBufferInfo",
        "TLGetInterfaceID",   "IFGetDeviceID",   "GCGetLastError",     "TLUpdateInterfaceList",
        "IFUpdateDeviceList", "IFGetNumDevices", "TLGetNumInterfaces", "DevGetDataStreamID",
    };
    return std::any_of(std::begin(kForgiven), std::end(kForgiven),
                       [&name](const char* forgiven) { return name == forgiven; });
}

class FaultTest : public ApiTest {
protected:
    /// Has each call of the action fail once, from a clean begin each time.
    void FailEachCall(const std::function<void()>& prepare,
                      const std::function<OV_STATUS()>& action,
                      const std::function<void()>& expectUndone) {
        prepare();
        const auto calls = CallsOf(producer, [&] { EXPECT_OV_OK(action()); });
        OVCloseLib();
        unsigned cases = 0;
        for (const auto& [name, count] : calls) {
            for (unsigned nth = 1; nth <= count; ++nth) {
                producer.Reset();
                prepare();
                producer.FailCall(name.c_str(), nth, -1010);
                const OV_STATUS status = action();
                if (status != OV_STATUS_SUCCESS) {
                    EXPECT_EQ(status, IsForgiven(name) ? status : -1010) << name << " " << nth;
                    expectUndone();
                    EXPECT_OV_OK(action()) << "a later attempt, after " << name << " " << nth;
                } else {
                    EXPECT_TRUE(IsForgiven(name)) << name << " " << nth << " went unnoticed";
                }
                OVCloseLib();
                ++cases;
            }
        }
        EXPECT_GT(cases, 5U);
        RecordProperty("cases", static_cast<int>(cases));
    }

    void ExpectClosed(std::initializer_list<const char*> kinds) {
        for (const char* const kind : kinds) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }
};

TEST_F(FaultTest, InitLibUndoesEverything) {
    FailEachCall([] {}, &OVInitLib, [&] { ExpectClosed({"Library", "System"}); });
}

TEST_F(FaultTest, OpenDeviceUndoesEverything) {
    OV_DEV_HANDLE handle = nullptr;
    FailEachCall(
        [&] {
            Init();
            ASSERT_EQ(Update(), 1U);
        },
        [&] { return OVOpenDeviceByIndex(1, &handle); },
        [&] {
            ExpectClosed({"Device", "Stream", "Event"});
        });
}

/// A call of the start that fails at each of the three attempts.
class StartFaultTest : public FaultTest, public testing::WithParamInterface<const char*> {};

TEST_P(StartFaultTest, ThreeFailuresOfAStartUndoEverything) {
    Init();
    ASSERT_EQ(Update(), 1U);
    OV_DEV_HANDLE handle = Open();
    const char* const name = GetParam();
    // The stream is opened with the camera. Its events are registered by the start.
    const int64_t events = producer.OpenCount("Event");
    producer.FailCall(name, 0, -1010);
    EXPECT_EQ(OVStreamOn(handle), -1010);
    // A flush may have worked before it failed, so each attempt undoes it by another.
    EXPECT_EQ(producer.CallCount(name), std::string(name) == "DSFlushQueue" ? 6U : 3U);
    ExpectClosed({"Buffer", "Acquisition"});
    EXPECT_EQ(producer.OpenCount("Event"), events);
    EXPECT_EQ(ParamsLocked(), 0U);

    OVCloseLib();
    producer.Reset();
    Init();
    ASSERT_EQ(Update(), 1U);
    handle = Open();
    EXPECT_OV_OK(OVStreamOn(handle));
    EXPECT_EQ(ParamsLocked(), 1U);
    EXPECT_OV_OK(OVStreamOff(handle));
}

INSTANTIATE_TEST_SUITE_P(Calls, StartFaultTest,
                         testing::Values("GCRegisterEvent", "DSAnnounceBuffer", "DSFlushQueue",
                                         "DSStartAcquisition"),
                         [](const auto& test) { return std::string(test.param); });

/// One failure anywhere in a start is healed by the next attempt; only the lock
/// of the parameters, which stands before all attempts, is tried once.
TEST_F(FaultTest, OneFailureOfAStartIsHealed) {
    OV_DEV_HANDLE handle = nullptr;
    const auto prepare = [&] {
        Init();
        ASSERT_EQ(Update(), 1U);
        handle = Open();
    };
    prepare();
    const auto calls = CallsOf(producer, [&] { EXPECT_OV_OK(OVStreamOn(handle)); });
    OVCloseLib();
    unsigned cases = 0;
    for (const auto& [name, count] : calls) {
        for (unsigned nth = 1; nth <= count; ++nth, ++cases) {
            SCOPED_TRACE(name + " " + std::to_string(nth));
            producer.Reset();
            prepare();
            producer.FailCall(name.c_str(), nth, -1010);
            if (name == "GCWritePort" && nth == 1) {
                EXPECT_EQ(OVStreamOn(handle), -1010);
                ExpectClosed({"Buffer", "Acquisition"});
                EXPECT_EQ(ParamsLocked(), 0U);
            }
            EXPECT_OV_OK(OVStreamOn(handle));
            EXPECT_EQ(producer.OpenCount("Buffer"), 5);
            EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
            EXPECT_OV_OK(OVStreamOff(handle));
            ExpectClosed({"Buffer", "Acquisition"});
            OVCloseLib();
        }
    }
    EXPECT_GT(cases, 20U);
    RecordProperty("cases", static_cast<int>(cases));
}

}  // namespace
