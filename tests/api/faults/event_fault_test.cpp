// Faults of the calls that start, ask and end a camera's channels of events, and of
// the threads that wait for events.

#include <filesystem>
#include <iterator>
#include <thread>

#include "FaultMatrix.h"
#include "support/CallbackCounter.h"

namespace {

constexpr OV_FEATURE_ID kEvent = OV_FEATURE_EventExposureEndFrameID;
constexpr unsigned kMilliseconds = 60000;

class EventFaultTest : public FaultMatrix {
protected:
    /// What the threads of the events ask in their own time.
    static inline const std::set<std::string> kOnThreads = {"EventGetData", "GCGetLastError"};

    ~EventFaultTest() override { OVCloseLib(); }  // before `counter` goes

    void OpenCamera() {
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    OV_STATUS RegisterOffline() {
        return OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss,
                                               &offline);
    }
    OV_STATUS RegisterEvent() {
        return OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent, kEvent,
                                         &feature);
    }

    void OpenHeard() {
        OpenCamera();
        ASSERT_OV_OK(RegisterOffline());
        ASSERT_OV_OK(RegisterEvent());
        ASSERT_EQ(Faulty().WaitForCalls("EventGetData", 2, kMilliseconds), 0);
    }

    void ExpectEvents(unsigned count) {
        const unsigned before = counter.events;
        Faulty().FireExposureEnd(0, 0, count);
        CallbackCounter::Await(counter.events, before + count);
    }

    void ExpectLoss() {
        const unsigned before = counter.losses;
        Faulty().LoseDevice(0, 0);
        CallbackCounter::Await(counter.losses, before + 1);
    }

    OV_DEV_HANDLE camera = nullptr;
    void* offline = nullptr;
    void* feature = nullptr;
    CallbackCounter counter;
};

// On the caller's thread.

TEST_P(EventFaultTest, ARegistrationForTheLossIsMadeOrUndone) {
    Run({.steps = {{"GCRegisterEvent", 1, Fate::RaisedUnlessUnknown,
                    "a producer may not tell of losses"}},
         .prepare =
             [this] {
                 OpenCamera();
                 offline = nullptr;
             },
         .action = [this] { return RegisterOffline(); },
         .check =
             [this](const Fault& fault) {
                 const bool isMade = fault.expected.status == OV_STATUS_SUCCESS;
                 EXPECT_EQ(offline != nullptr, isMade);
                 EXPECT_EQ(Faulty().OpenCount("Event"), 0);
             },
         .again =
             [this] {
                 EXPECT_OV_OK(RegisterOffline());
                 EXPECT_EQ(Faulty().OpenCount("Event"), 1);
                 ExpectLoss();
                 EXPECT_OV_OK(OVCloseDevice(camera));
                 ExpectClosed({"Device", "Event"});
             },
         .elsewhere = kOnThreads});
}

TEST_P(EventFaultTest, ARegistrationForAnEventIsMadeOrUndone) {
    Run({.steps = {{"GCRegisterEvent", 1, Fate::RaisedUnlessUnknown, "a camera may have no events"},
                   {"EventGetInfo", 2, Fate::Raised, ""}},
         .prepare =
             [this] {
                 OpenCamera();
                 feature = nullptr;
             },
         .action = [this] { return RegisterEvent(); },
         .check =
             [this](const Fault& fault) {
                 EXPECT_EQ(feature != nullptr, fault.expected.status == OV_STATUS_SUCCESS);
                 EXPECT_EQ(Faulty().OpenCount("Event"), 0);
                 uint32_t number = 0;
                 ExpectFailure(OVGetEventNumInQueue(camera, &number), OV_STATUS_INVALID_CALL,
                               "The thread of the remote device's events is not started");
             },
         .again =
             [this] {
                 if (feature != nullptr) {
                     EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kEvent, feature));
                 }
                 EXPECT_OV_OK(RegisterEvent());
                 EXPECT_EQ(Faulty().OpenCount("Event"), 1);
                 ExpectEvents(2);
                 EXPECT_OV_OK(OVCloseDevice(camera));
                 ExpectClosed({"Device", "Event"});
             },
         .elsewhere = kOnThreads});
}

TEST_P(EventFaultTest, CallbacksGoWithoutTheProducer) {
    Run({.steps = {},
         .prepare = [this] { OpenHeard(); },
         .action =
             [this] {
                 EXPECT_OV_OK(OVUnregisterDeviceOfflineCallback(camera, offline));
                 return OVUnregisterFeatureCallback(camera, kEvent, feature);
             },
         .again = [] {},
         .elsewhere = kOnThreads});
}

TEST_P(EventFaultTest, TheQueueIsAskedOnce) {
    uint32_t number = 0;
    Run({.steps = {{"EventGetInfo", 1, Fate::Raised, ""}},
         .prepare =
             [&] {
                 OpenHeard();
                 number = 77;
             },
         .action = [&] { return OVGetEventNumInQueue(camera, &number); },
         .check =
             [&](const Fault&) {
                 EXPECT_EQ(number, 77U);
                 EXPECT_EQ(Faulty().OpenCount("Event"), 2);
             },
         .again =
             [&] {
                 EXPECT_OV_OK(OVGetEventNumInQueue(camera, &number));
                 EXPECT_EQ(number, 0U);
                 ExpectEvents(1);
             },
         .elsewhere = kOnThreads});
}

TEST_P(EventFaultTest, TheQueueIsFlushedOnce) {
    Run({.steps = {{"EventFlush", 1, Fate::Raised, ""}},
         .prepare = [this] { OpenHeard(); },
         .action = [this] { return OVFlushEvent(camera); },
         .again =
             [this] {
                 EXPECT_OV_OK(OVFlushEvent(camera));
                 ExpectEvents(1);
             },
         .elsewhere = kOnThreads});
}

TEST_P(EventFaultTest, AClosePassesTheEndOfBothChannels) {
    const char* const down = "the way down goes to its end";
    Run({.steps = {{"DSClose", 1, Fate::Swallowed, down},
                   {"EventKill", 1, Fate::Swallowed, down},          // the camera's events
                   {"GCUnregisterEvent", 1, Fate::Swallowed, down},  //
                   {"EventKill", 2, Fate::Swallowed, down},          // the loss
                   {"GCUnregisterEvent", 1, Fate::Swallowed, down},
                   {"DevClose", 1, Fate::Swallowed, down}},
         .prepare = [this] { OpenHeard(); },
         .action = [this] { return OVCloseDevice(camera); },
         .again =
             [this] {
                 CloseLib();
                 OpenHeard();
                 ExpectEvents(1);
                 ExpectLoss();
                 EXPECT_OV_OK(OVCloseDevice(camera));
             },
         .elsewhere = kOnThreads,
         .failsAfterWork = true});
}

// On the threads of the events.

TEST_P(EventFaultTest, AFaultOnTheThreadOfEventsCostsAtMostItsOwnEvent) {
    const struct {
        const char* call;
        unsigned count;
        unsigned lost;
    } kCalls[] = {{"EventGetData", 1, 0}, {"EventGetDataInfo", 2, 1}};
    OpenCamera();
    ASSERT_OV_OK(RegisterEvent());
    for (const auto& row : kCalls) {
        for (unsigned nth = 1; nth <= row.count; ++nth) {
            for (const int32_t code : kFaultCodes) {
                SCOPED_TRACE(row.call + (" with " + std::to_string(code)));
                CountCase();
                // The wait that is on already is none that fails.
                ExpectEvents(1);
                const unsigned before = counter.events;
                Faulty().FailCall(row.call, nth, code);
                Faulty().FireExposureEnd(0, 0, 3);
                CallbackCounter::Await(counter.events, before + 3 - row.lost);
                ExpectEvents(1);
                EXPECT_EQ(counter.events, before + 4 - row.lost);
                EXPECT_EQ(LastError::Get().status, OV_STATUS_SUCCESS) << "of another thread";
            }
        }
    }
    EXPECT_OV_OK(OVCloseDevice(camera));
    ExpectClosed({"Device", "Event"});
}

size_t CountThreads() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return static_cast<size_t>(std::distance(begin(threads), end(threads)));
}

TEST_P(EventFaultTest, AFaultOfTheWaitForTheLossEndsItUntilTheNextRegistration) {
    for (const int32_t code : kFaultCodes) {
        SCOPED_TRACE(code);
        CountCase();
        OpenCamera();
        const unsigned before = counter.losses;
        Faulty().FailCall("EventGetData", 1, code);
        const uint64_t calls = Faulty().CallCount("EventGetData");
        const size_t threads = CountThreads();
        EXPECT_OV_OK(RegisterOffline());
        ASSERT_EQ(Faulty().WaitForCalls("EventGetData", calls + 1, kMilliseconds), 0);
        while (CountThreads() > threads) {
            std::this_thread::yield();
        }
        EXPECT_EQ(Faulty().CallCount("EventGetData"), calls + 1);
        EXPECT_OV_OK(RegisterOffline());
        ASSERT_EQ(Faulty().WaitForCalls("EventGetData", calls + 2, kMilliseconds), 0);
        Faulty().LoseDevice(0, 0);
        CallbackCounter::Await(counter.losses, before + 2);
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_EQ(counter.losses, before + 2) << "each callback is called once";
        EXPECT_EQ(LastError::Get().status, OV_STATUS_SUCCESS) << "of another thread";
        Faulty().ReturnDevice(0, 0);
        EXPECT_EQ(Update(), 1U);
        camera = Open();
        EXPECT_OV_OK(RegisterOffline());
        ExpectLoss();
        EXPECT_OV_OK(OVCloseDevice(camera));
        ExpectClosed({"Device", "Event"});
        Faulty().ReturnDevice(0, 0);
        CloseLib();
    }
}

INSTANTIATE_TEST_SUITE_P(Producers, EventFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
