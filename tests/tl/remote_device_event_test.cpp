// The way of a camera's own messages into its features.

#include <array>
#include <future>

#include "EventTest.h"
#include "TLClassEvent/RemoteDeviceEvent.h"
#include "TLClassFeature/IFeatureControl.h"
#include "ThreadShortage.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr uint64_t kExposureEnd = 0x9001;
constexpr const char* kFrameID = "EventExposureEndFrameID";
constexpr const char* kNotStarted = "The thread of the remote device's events is not started";

/// Runs a function of the test with each change of a feature.
class ChangeCallback : public IFeatureCallback {
public:
    explicit ChangeCallback(std::function<void()> function) : m_function(std::move(function)) {}
    void operator()(GenApi_3_0_ORVANE::INode* /*node*/) override { m_function(); }
    IFeatureCallback* Clone() const override { return new ChangeCallback(m_function); }

private:
    std::function<void()> m_function;
};

class RemoteEvent : public EventTest {
protected:
    IFeatureControl& Features() { return *device->DoGetRemoteDeviceFeatureControl(); }
    void Start() { device->DoActiveRemoteDeviceEventThread(); }
    void OnEvent(std::function<void()> function) {
        Features().DoRegisterFeatureCallback(kFrameID, ChangeCallback(std::move(function)));
    }
    void StartCounting() {
        Start();
        OnEvent([this] { ++called; });
    }
    void Fire(unsigned count = 1) { producer.FireExposureEnd(0, 0, count); }
    void ExpectStopped() {
        EXPECT_EQ(device->DoGetEventThreadID(), 0U);
        EXPECT_RAISES(CInvalidCallError, kNotStarted, device->DoGetEventNumInQueue());
        EXPECT_RAISES(CInvalidCallError, kNotStarted, device->DoFlushRemoteDeviceEvent());
        EXPECT_EQ(producer.OpenCount("Event"), 0);
        EXPECT_FALSE(Features().DoIsReadable(kFrameID));
    }
    /// Expects that an event is dropped and the next one delivered.
    void ExpectDropped(const char* function, unsigned nth) {
        const LogCapture log;
        producer.FailCall(function, nth, GenTL::GC_ERR_IO);
        StartCounting();
        Fire(2);
        AwaitCalled(1);
        EXPECT_EQ(Features().DoGetInt(kFrameID), 1) << "the first is lost";
        EXPECT_EQ(called, 1U);
        EXPECT_THAT(log.Lines(),
                    Contains(HasSubstr("Planned failure of " + std::string(function))));
    }
};

TEST_F(RemoteEvent, IsStoppedAtFirst) {
    ExpectStopped();
    EXPECT_EQ(producer.CallCount("EventGetInfo"), 0U);
    EXPECT_EQ(producer.CallCount("EventFlush"), 0U);
}

TEST_F(RemoteEvent, ReachesTheFeaturesOnItsThread) {
    std::atomic<pthread_t> thread{0};
    std::array<int64_t, 3> values{};
    Start();
    OnEvent([&] {
        thread = CVxThread::PthreadSelf();
        values = {Features().DoGetInt("EventExposureEnd"), Features().DoGetInt(kFrameID),
                  Features().DoGetInt("EventExposureEndTimestamp")};
        ++called;
    });
    Fire(3);
    AwaitCalled(3);
    EXPECT_THAT(values, ElementsAre(kExposureEnd, 2, 2000));
    EXPECT_EQ(thread, device->DoGetEventThreadID());
    EXPECT_NE(thread, CVxThread::PthreadSelf());
}

TEST_F(RemoteEvent, ASecondStartDoesNothing) {
    Start();
    const pthread_t thread = device->DoGetEventThreadID();
    EXPECT_NE(thread, 0U);
    Start();
    EXPECT_EQ(device->DoGetEventThreadID(), thread);
    EXPECT_EQ(producer.CallCount("GCRegisterEvent"), 1U);
}

TEST_F(RemoteEvent, StartsStepByStep) {
    producer.BlockCall("EventGetData");
    Start();
    EXPECT_THAT(CallsAmong({"GCRegisterEvent", "EventGetInfo", "GCUnregisterEvent"}),
                ElementsAre("GCRegisterEvent", "EventGetInfo", "EventGetInfo"));
    producer.ReleaseCall("EventGetData");
}

TEST_F(RemoteEvent, TheQueueIsCountedAndFlushed) {
    producer.BlockCall("EventGetData");
    Start();
    AwaitCalls("EventGetData", 1);
    Fire(3);
    EXPECT_EQ(device->DoGetEventNumInQueue(), 3U);
    device->DoFlushRemoteDeviceEvent();
    EXPECT_EQ(device->DoGetEventNumInQueue(), 0U);
    producer.ReleaseCall("EventGetData");
}

TEST_F(RemoteEvent, FailuresOfTheQueueAreRaised) {
    Start();
    producer.FailCall("EventGetInfo", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of EventGetInfo",
                      device->DoGetEventNumInQueue());
    producer.FailCall("EventFlush", 1, GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_RAISES(CNotImplementedError, "Planned failure of EventFlush",
                  device->DoFlushRemoteDeviceEvent());
}

TEST_F(RemoteEvent, AProducerWithoutItLeavesTheChannelStopped) {
    const LogCapture log;
    producer.OfferEvent(GenTL::EVENT_REMOTE_DEVICE, 0);
    Start();
    EXPECT_EQ(log.Lines().size(), 1U);
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("'__Start'")));
    ExpectStopped();
    producer.OfferEvent(GenTL::EVENT_REMOTE_DEVICE, 1);
    StartCounting();
    Fire();
    AwaitCalled(1);
}

TEST_F(RemoteEvent, ThatIsRefusedAsUnknownIsNotOffered) {
    for (const int32_t code : {GenTL::GC_ERR_NOT_IMPLEMENTED, GenTL::GC_ERR_INVALID_ID,
                               GenTL::GC_ERR_INVALID_PARAMETER}) {
        const LogCapture log;
        producer.FailCall("GCRegisterEvent", 1, code);
        Start();
        EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("Planned failure of GCRegisterEvent")));
        ExpectStopped();
    }
    StartCounting();
    Fire();
    AwaitCalled(1);
}

struct StartFailure {
    const char* function;
    unsigned nth;
};

class RemoteEventStart : public RemoteEvent, public ::testing::WithParamInterface<StartFailure> {};

TEST_P(RemoteEventStart, ThatFailsIsUndone) {
    producer.FailCall(GetParam().function, GetParam().nth, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of " + std::string(GetParam().function),
                      Start());
    ExpectStopped();
    StartCounting();
    Fire();
    AwaitCalled(1);
}

INSTANTIATE_TEST_SUITE_P(Steps, RemoteEventStart,
                         ::testing::Values(StartFailure{"GCRegisterEvent", 1},
                                           StartFailure{"EventGetInfo", 1},
                                           StartFailure{"EventGetInfo", 2}));

TEST_F(RemoteEvent, WithoutAThreadTheEventIsGivenBack) {
    {
        const ThreadShortage shortage;
        EXPECT_UNEXPECTED(-1, "Failed to start __OnThreadGetRemoteDeviceEvent", Start());
    }
    ExpectStopped();
}

TEST_F(RemoteEvent, AFailingWaitIsLoggedAndTheNextEventComes) {
    const LogCapture log;
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_IO);
    StartCounting();
    Fire();
    AwaitCalled(1);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("Planned failure of EventGetData")));
}

TEST_F(RemoteEvent, ATimeoutAndAnAbortLeaveNoLine) {
    const LogCapture log;
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_TIMEOUT);
    producer.FailCall("EventGetData", 2, GenTL::GC_ERR_ABORT);
    StartCounting();
    Fire();
    AwaitCalled(1);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(RemoteEvent, WithoutItsIdentifierIsDropped) {
    ExpectDropped("EventGetDataInfo", 1);
}

TEST_F(RemoteEvent, WithoutItsValueIsDropped) {
    ExpectDropped("EventGetDataInfo", 2);
}

TEST_F(RemoteEvent, OfAnotherIdentifierIsNobodys) {
    StartCounting();
    const std::array<uint8_t, 24> payload{};
    producer.FireRemoteEvent(0, 0, kExposureEnd + 1, payload.data(), payload.size());
    Fire();
    AwaitCalled(1);
    AwaitCalls("EventGetData", 3);
    EXPECT_EQ(called, 1U);
}

TEST_F(RemoteEvent, WithoutDataRunsTheCallbackAndCannotBeRead) {
    StartCounting();
    producer.FireRemoteEvent(0, 0, kExposureEnd, nullptr, 0);
    AwaitCalled(1);
    EXPECT_FALSE(Features().DoIsReadable(kFrameID));
}

TEST_F(RemoteEvent, ACallbackThatThrowsIsLoggedAndTheNextEventComes) {
    const LogCapture log;
    Start();
    OnEvent([this] {
        ++called;
        throw std::runtime_error("the application failed");
    });
    Fire(2);
    AwaitCalled(2);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), HasLogged("__RunThread", "the application failed"));
}

TEST_F(RemoteEvent, ACloseWaitsForARunningCallback) {
    std::promise<void> release;
    std::atomic<bool> done{false};
    Start();
    OnEvent([&] {
        ++called;
        release.get_future().wait();
        done = true;
    });
    Fire();
    AwaitCalled(1);
    std::thread closing([&] {
        device->DoCloseDevice();
        EXPECT_TRUE(done);
    });
    release.set_value();
    closing.join();
    EXPECT_EQ(device->DoGetEventThreadID(), 0U);
}

TEST_F(RemoteEvent, AStopOfAStoppedChannelDoesNothing) {
    device->DoCloseDevice();
    EXPECT_EQ(producer.CallCount("EventKill"), 0U);
    EXPECT_EQ(producer.CallCount("GCUnregisterEvent"), 0U);
    CRemoteDeviceEvent(*device->DoGetGenTLLib()).StopGetRemoteDeviceEventThread();
    EXPECT_EQ(producer.CallCount("EventKill"), 0U);
}

TEST_F(RemoteEvent, TheQueueIsRefusedOnAClosedDevice) {
    Start();
    device->DoCloseDevice();
    EXPECT_RAISES(CInvalidCallError, kNotStarted, device->DoGetEventNumInQueue());
    EXPECT_RAISES(CInvalidCallError, kNotStarted, device->DoFlushRemoteDeviceEvent());
}

TEST_F(RemoteEvent, FailuresOfTheStopAreLoggedAndEachStepRuns) {
    const LogCapture log;
    Start();
    AwaitCalls("EventGetData", 1);
    producer.FailAfterCall("EventKill", 1, GenTL::GC_ERR_IO);
    producer.FailAfterCall("GCUnregisterEvent", 1, GenTL::GC_ERR_IO);
    device->DoCloseDevice();
    EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("Planned failure of EventKill"),
                                         HasSubstr("Planned failure of GCUnregisterEvent")));
    EXPECT_FALSE(device->DoIsDeviceOpen());
    // What failed after its work still counts as open.
    manager.DoUninit();
    producer.Reset();
}

TEST_F(RemoteEvent, AStopRepeatsAKillThatTheProducerForgets) {
    Start();
    AwaitCalls("EventGetData", 1);
    producer.SkipCall("EventKill", 1);
    device->DoCloseDevice();
    EXPECT_GE(producer.CallCount("EventKill"), 2U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 1U) << "the wait didn't run out";
}

TEST_F(RemoteEvent, OutlivesTheLossOfTheCamera) {
    StartCounting();
    producer.LoseDevice(0, 0);
    EXPECT_NE(device->DoGetEventThreadID(), 0U);
    producer.ReturnDevice(0, 0);
    Fire();
    AwaitCalled(1);
}

}  // namespace
}  // namespace OVTLClass
