// How the application hears that a camera is gone.

#include <future>

#include "EventTest.h"
#include "TLClassBuffer/BufferInitInfo.h"
#include "TLClassEvent/CallbackScope.h"
#include "TLClassEvent/DeviceOfflineEvent.h"
#include "ThreadShortage.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DeviceOffline : public EventTest {
protected:
    void Lose() { producer.LoseDevice(0, 0); }
    bool IsOffline() { return device->DoIsDeviceOffineLine(); }
    void AwaitThreadEnd() {
        Await([this] { return device->DoGetOfflineThreadID() == 0; });
    }
};

TEST_F(DeviceOffline, IsNotWatchedBeforeACallbackIsRegistered) {
    EXPECT_FALSE(device->DOGetCNativeDeviceOfflineEvent().IsRegistered());
    EXPECT_EQ(device->DoGetOfflineThreadID(), 0U);
    Lose();
    EXPECT_FALSE(IsOffline());
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 0U);
}

TEST_F(DeviceOffline, ASecondRegistrationOfTheEventDoesNothing) {
    RegisterOfflineCounter();
    const pthread_t thread = device->DoGetOfflineThreadID();
    RegisterOfflineCounter();
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 1U);
    EXPECT_EQ(device->DoGetOfflineThreadID(), thread);
    EXPECT_TRUE(device->DOGetCNativeDeviceOfflineEvent().IsRegistered());
}

TEST_F(DeviceOffline, TellsTheCallbacksInOrderOnItsThread) {
    std::vector<int> order;
    std::atomic<pthread_t> thread{0};
    for (int i = 0; i < 3; ++i) {
        RegisterOffline([&, i] {
            order.push_back(i);
            thread = CVxThread::PthreadSelf();
            ++called;
        });
    }
    const pthread_t expected = device->DoGetOfflineThreadID();
    EXPECT_NE(expected, 0U);
    EXPECT_FALSE(IsOffline());
    Lose();
    AwaitCalled(3);
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
    EXPECT_EQ(thread, expected);
    EXPECT_TRUE(IsOffline());
}

TEST_F(DeviceOffline, ACallbackThatThrowsIsLoggedAndTheNextIsCalled) {
    const LogCapture log;
    RegisterOffline([] { throw std::runtime_error("the application failed"); });
    RegisterOffline([] { throw 1; });
    RegisterOfflineCounter();
    Lose();
    AwaitCalled(1);
    EXPECT_THAT(log.Lines(), HasLogged("__CallAll", "the application failed"));
    EXPECT_THAT(log.Lines(), HasLogged("__CallAll", "UnKnown Exception"));
}

TEST_F(DeviceOffline, TheStatusNeverWaitsForACallback) {
    std::promise<void> release;
    RegisterOffline([&] {
        ++called;
        release.get_future().wait();
    });
    Lose();
    AwaitCalled(1);
    EXPECT_TRUE(IsOffline());
    release.set_value();
}

TEST_F(DeviceOffline, UnregisteringWaitsForARunningCallback) {
    std::promise<void> release;
    std::atomic<bool> done{false};
    void* const handle = RegisterOffline([&] {
        ++called;
        release.get_future().wait();
        done = true;
    });
    Lose();
    AwaitCalled(1);
    std::thread unregistering([&] {
        device->DoUnregisterDeviceOfflineCallback(handle);
        EXPECT_TRUE(done);
    });
    release.set_value();
    unregistering.join();
}

TEST_F(DeviceOffline, AnUnregisteredCallbackIsNotCalled) {
    void* const handle = RegisterOffline([] { ADD_FAILURE() << "it was taken away"; });
    RegisterOfflineCounter();
    device->DoUnregisterDeviceOfflineCallback(handle);
    device->DoUnregisterDeviceOfflineCallback(handle);
    device->DoUnregisterDeviceOfflineCallback(nullptr);
    Lose();
    AwaitCalled(1);
}

TEST_F(DeviceOffline, ACallbackThatIsRegisteredAfterTheLossIsCalledOnTheThreadStartedAgain) {
    RegisterOfflineCounter();
    Lose();
    AwaitThreadEnd();
    std::atomic<pthread_t> thread{0};
    std::promise<void> release;
    RegisterOffline([&] {
        thread = device->DoGetOfflineThreadID() == CVxThread::PthreadSelf() ? 1 : 0;
        ++called;
        release.get_future().wait();
    });
    AwaitCalled(2);
    EXPECT_EQ(thread, 1U);
    RegisterOfflineCounter();
    release.set_value();
    AwaitCalled(3);
    AwaitThreadEnd();
    EXPECT_EQ(called, 3U) << "each is called once";
    EXPECT_EQ(producer.CallCount("EventGetData"), 1U) << "the loss is known";
    EXPECT_TRUE(IsOffline());
}

/// Is copied after the signal came, by a registration that is under way.
class LateCallback : public OfflineCallback {
public:
    LateCallback(std::function<void()> whenCopied, std::function<void()> function)
        : OfflineCallback(std::move(function)), m_whenCopied(std::move(whenCopied)) {}
    IDeviceOfflineCallback* Clone() const override {
        m_whenCopied();
        return OfflineCallback::Clone();
    }

private:
    std::function<void()> m_whenCopied;
};

TEST_F(DeviceOffline, ASignalDuringARegistrationIsNotLost) {
    RegisterOfflineCounter();
    const LateCallback late(
        [this] {
            Lose();
            AwaitThreadEnd();
        },
        [this] { ++called; });
    device->DoRegisterDeviceOfflineCallback(late);
    AwaitCalled(2);
}

TEST_F(DeviceOffline, ACallbackMayTakeItselfAway) {
    std::atomic<void*> handle{nullptr};
    handle = RegisterOffline([&] {
        Await([&] { return handle != nullptr; });
        device->DoUnregisterDeviceOfflineCallback(handle);
        ++called;
    });
    Lose();
    AwaitCalled(1);
    AwaitThreadEnd();
}

TEST_F(DeviceOffline, UnregisteringInAnotherCallbackWaitsForNone) {
    std::promise<void> release;
    void* const handle = RegisterOffline([&] {
        ++called;
        release.get_future().wait();
    });
    Lose();
    AwaitCalled(1);
    {
        const CCallbackScope capture(CallbackKind::Capture, device.get());
        device->DoUnregisterDeviceOfflineCallback(handle);
    }
    release.set_value();
}

TEST_F(DeviceOffline, CloseAndOpenWatchAnew) {
    RegisterOfflineCounter();
    Lose();
    AwaitCalled(1);
    device->DoCloseDevice();
    EXPECT_FALSE(IsOffline());
    EXPECT_FALSE(device->DOGetCNativeDeviceOfflineEvent().IsRegistered());
    producer.ReturnDevice(0, 0);
    Open();
    RegisterOffline([this] { called = 10; });
    EXPECT_FALSE(IsOffline());
    Lose();
    AwaitCalled(10);
    EXPECT_EQ(called, 10U) << "the first callback went with the close";
    EXPECT_TRUE(IsOffline());
}

TEST_F(DeviceOffline, AnEventThatIsRefusedAsUnknownIsNotOffered) {
    for (const int32_t code : {GenTL::GC_ERR_NOT_IMPLEMENTED, GenTL::GC_ERR_INVALID_ID,
                               GenTL::GC_ERR_INVALID_PARAMETER}) {
        const LogCapture log;
        producer.FailCall("GCRegisterEvent", 1, code);
        EXPECT_NE(RegisterOffline([] { ADD_FAILURE() << "nobody can tell"; }), nullptr) << code;
        EXPECT_FALSE(device->DOGetCNativeDeviceOfflineEvent().IsRegistered());
        EXPECT_THAT(log.Lines(), HasLogged("RegisterDeviceOfflineEvent",
                                           ".*Planned failure of GCRegisterEvent.*"));
    }
    device->DoCloseDevice();
}

TEST_F(DeviceOffline, AProducerWithoutTheEventReportsPresenceForEver) {
    const LogCapture log;
    producer.OfferEvent(GenTL::EVENT_DEVICE_OFFLINE, 0);
    EXPECT_NE(RegisterOffline([] { ADD_FAILURE() << "nobody can tell"; }), nullptr);
    EXPECT_FALSE(device->DOGetCNativeDeviceOfflineEvent().IsRegistered());
    EXPECT_EQ(device->DoGetOfflineThreadID(), 0U);
    EXPECT_EQ(log.Lines().size(), 1U);
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("'RegisterDeviceOfflineEvent'")));
    Lose();
    EXPECT_FALSE(IsOffline());
    device->DoCloseDevice();
    EXPECT_EQ(producer.CallCount("EventKill"), 0U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 0U);
}

TEST_F(DeviceOffline, AnotherFailureOfTheRegistrationIsRaised) {
    producer.FailCall("GCRegisterEvent", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of GCRegisterEvent",
                      RegisterOfflineCounter());
    EXPECT_EQ(producer.OpenCount("Event"), 0);
    RegisterOfflineCounter();
    Lose();
    AwaitCalled(1);
    EXPECT_EQ(called, 1U) << "the refused one isn't kept";
}

TEST_F(DeviceOffline, WithoutAThreadTheEventIsGivenBack) {
    {
        const ThreadShortage shortage;
        EXPECT_UNEXPECTED(-1, "Failed to start __OnThreadGetDeviceOfflineEvent",
                          RegisterOfflineCounter());
    }
    EXPECT_EQ(producer.OpenCount("Event"), 0);
    RegisterOfflineCounter();
    Lose();
    AwaitCalled(1);
}

/// A callback of which no copy can be made.
class UniqueCallback : public IDeviceOfflineCallback {
public:
    IDeviceOfflineCallback* Clone() const override { throw std::runtime_error("no copy"); }
    void operator()() override {}
};

TEST_F(DeviceOffline, ARegistrationWithoutACopyLeavesNothing) {
    EXPECT_THROW(device->DoRegisterDeviceOfflineCallback(UniqueCallback()), std::runtime_error);
    EXPECT_EQ(device->DoGetOfflineThreadID(), 0U);
    EXPECT_EQ(producer.OpenCount("Event"), 0);
}

TEST_F(DeviceOffline, ARegistrationWithoutACopyLeavesEarlierOnes) {
    RegisterOfflineCounter();
    EXPECT_THROW(device->DoRegisterDeviceOfflineCallback(UniqueCallback()), std::runtime_error);
    Lose();
    AwaitCalled(1);
}

TEST_F(DeviceOffline, ARegistrationAfterAFailingWaitWaitsAnew) {
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_IO);
    RegisterOfflineCounter();
    AwaitThreadEnd();
    RegisterOfflineCounter();
    Lose();
    AwaitCalled(2);
}

TEST_F(DeviceOffline, AFailingWaitIsLoggedAndEndsTheThread) {
    const LogCapture log;
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_IO);
    RegisterOfflineCounter();
    AwaitThreadEnd();
    Lose();
    EXPECT_FALSE(IsOffline());
    device->DoCloseDevice();
    EXPECT_EQ(called, 0U);
    EXPECT_THAT(log.Lines(), HasLogged("GetOfflineEvent", "Planned failure of EventGetData"));
}

TEST_F(DeviceOffline, ACloseEndsTheWaitWithoutALine) {
    const LogCapture log;
    RegisterOfflineCounter();
    AwaitCalls("EventGetData", 1);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(called, 0U) << "nobody hears of a close";
    EXPECT_EQ(device->DoGetOfflineThreadID(), 0U);
}

TEST_F(DeviceOffline, ACloseWithARefusedKillIsLoggedAndEndsTheWait) {
    const LogCapture log;
    producer.FailCall("EventKill", 0, GenTL::GC_ERR_IO);
    RegisterOfflineCounter();
    AwaitCalls("EventGetData", 1);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), HasLogged("EventKill", "Planned failure of EventKill"));
    EXPECT_EQ(producer.OpenCount("Event"), 0);
}

TEST_F(DeviceOffline, ACloseRepeatsAKillThatTheProducerForgets) {
    RegisterOfflineCounter();
    AwaitCalls("EventGetData", 1);
    producer.SkipCall("EventKill", 1);
    producer.SkipCall("EventKill", 2);
    device->DoCloseDevice();
    EXPECT_EQ(device->DoGetOfflineThreadID(), 0U);
    EXPECT_EQ(called, 0U);
}

TEST_F(DeviceOffline, ACloseStopsAfterTheStreamsAndTheRemoteEvents) {
    CBufferInitInfo info;
    info.SetPayloadSize(64 * 48);
    const auto stream = device->DoGetDataStreamList().at(0);
    stream->DoOpenDataStream();
    stream->DoStartDataStreamAcqusition(info);
    device->DoActiveRemoteDeviceEventThread();
    RegisterOfflineCounter();
    producer.ClearLog();
    device->DoCloseDevice();
    EXPECT_THAT(
        CallsAmong({"EventKill", "GCUnregisterEvent", "DSStopAcquisition", "DSClose", "DevClose"}),
        ElementsAre("EventKill", "GCUnregisterEvent", "DSStopAcquisition", "DSClose", "EventKill",
                    "GCUnregisterEvent",                            // remote events
                    "EventKill", "EventKill", "GCUnregisterEvent",  // the offline thread
                    "DevClose"));
    EXPECT_EQ(called, 0U);
}

TEST_F(DeviceOffline, ALostCameraClosesAfterItsCallback) {
    RegisterOffline([this] {
        ++called;
        int64_t width = 0;
        EXPECT_THROW(width = device->DoGetRemoteDeviceFeatureControl()->DoGetInt("Width"),
                     CDeviceOfflineError)
            << width;
    });
    Lose();
    device->DoCloseDevice();
    EXPECT_LE(called, 1U);
}

}  // namespace
}  // namespace OVTLClass
