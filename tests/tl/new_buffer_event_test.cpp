// From a filled buffer to the application: by thread and callback, or by pull.

#include <array>
#include <atomic>
#include <functional>
#include <thread>

#include "StreamTest.h"
#include "TLClassEvent/NewBufferEvent.h"
#include "ThreadShortage.h"

namespace OVTLClass {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Runs a function of the test with each frame.
class FrameCallback : public INewBufferCallback {
public:
    using Function = std::function<void(const BUFFER_INFO&)>;
    explicit FrameCallback(Function function) : m_function(std::move(function)) {}
    INewBufferCallback* Clone() const override { return new FrameCallback(m_function); }
    void operator()(const BUFFER_INFO& info) override { m_function(info); }

private:
    Function m_function;
};

class Delivery : public StreamTest {
protected:
    explicit Delivery(const char* fileName = "KwTL.cti") : StreamTest(fileName) {}

    void Register(FrameCallback::Function function) {
        stream->DoRegisterCaptureCallback(FrameCallback(std::move(function)));
    }
    /// Counts frames.
    void RegisterCounter() {
        Register([this](const BUFFER_INFO&) { ++delivered; });
    }
    void AwaitDelivered(unsigned count) {
        while (delivered < count) {
            std::this_thread::yield();
        }
    }
    void AwaitRequeued(unsigned count) {
        EXPECT_EQ(producer.WaitForCalls("DSQueueBuffer", count, 60000), 0);
    }

    std::atomic<unsigned> delivered{0};
};

TEST_F(Delivery, WithoutACallbackHasNoThread) {
    EXPECT_FALSE(stream->DoIsRegisterCaptureCallback());
    Start();
    EXPECT_EQ(stream->DoGetAcquisitionThreadID(), 0U);
    Stop();
    EXPECT_EQ(producer.CallCount("EventGetData"), 0U);
}

TEST_F(Delivery, RunsTheCallbackOnTheStreamsThread) {
    std::atomic<pthread_t> caller{0};
    Register([&](const BUFFER_INFO&) {
        caller = CVxThread::PthreadSelf();
        ++delivered;
    });
    EXPECT_TRUE(stream->DoIsRegisterCaptureCallback());
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    EXPECT_EQ(caller, stream->DoGetAcquisitionThreadID());
    EXPECT_NE(caller, CVxThread::PthreadSelf());
}

TEST_F(Delivery, HasNoThreadOnceStopped) {
    RegisterCounter();
    Start();
    EXPECT_NE(stream->DoGetAcquisitionThreadID(), 0U);
    Stop();
    EXPECT_EQ(stream->DoGetAcquisitionThreadID(), 0U)
        << "the application's next thread may get the same identity";
}

TEST_F(Delivery, GivesTheFrameWhileTheCallbackRuns) {
    std::array<uint8_t, 3> first{};
    uint64_t frame = UINT64_MAX;
    Register([&](const BUFFER_INFO& buffer) {
        std::memcpy(first.data(), buffer.base.value, first.size());
        frame = buffer.frameId.value;
        ++delivered;
    });
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    EXPECT_THAT(first, ElementsAre(0, 1, 2));
    EXPECT_EQ(frame, 0U);
}

TEST_F(Delivery, GivesTheBufferBackAfterTheCallback) {
    RegisterCounter();
    stream->SetAcqusitionBufferNumber(1);
    Start();
    for (unsigned count = 1; count <= 3; ++count) {
        producer.Trigger(0, 0, 1);
        AwaitDelivered(count);
        AwaitRequeued(count);
    }
}

TEST_F(Delivery, LogsACallbackThatThrowsAndGivesTheBufferBack) {
    const LogCapture log;
    Register([this](const BUFFER_INFO&) {
        ++delivered;
        throw std::runtime_error("the application failed");
    });
    Start();
    producer.Trigger(0, 0, 1);
    AwaitRequeued(1);
    producer.Trigger(0, 0, 1);
    AwaitRequeued(2);
    Stop();
    EXPECT_EQ(delivered, 2U);
    EXPECT_THAT(log.Lines(), HasLogged("__DoOnBufferCallback", "the application failed"));
}

TEST_F(Delivery, LogsABufferThatCannotBeGivenBackAndGoesOn) {
    const LogCapture log;
    RegisterCounter();
    producer.FailCall("DSQueueBuffer", 1, GenTL::GC_ERR_IO);
    Start();
    producer.Trigger(0, 0, 1);
    AwaitRequeued(1);
    producer.Trigger(0, 0, 1);
    AwaitDelivered(2);
    Stop();
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("{Planned failure of DSQueueBuffer}")));
}

TEST_F(Delivery, LogsAFailureOfTheWaitAndGoesOn) {
    const LogCapture log;
    RegisterCounter();
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_IO);
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    Stop();
    EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("{Planned failure of EventGetData}")));
}

TEST_F(Delivery, TakesATimeoutAndAnAbortForNoFailure) {
    const LogCapture log;
    RegisterCounter();
    producer.FailCall("EventGetData", 1, GenTL::GC_ERR_TIMEOUT);
    producer.FailCall("EventGetData", 2, GenTL::GC_ERR_ABORT);
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    Stop();
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Delivery, EndsTheWaitOfItsThreadWithTheStop) {
    const LogCapture log;
    RegisterCounter();
    Start();
    ASSERT_EQ(producer.WaitForCalls("EventGetData", 1, 60000), 0);
    Stop();
    EXPECT_GE(producer.SuccessCount("EventKill"), 1U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 1U) << "the thread waits no second time";
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Delivery, RepeatsAKillThatTheProducerForgets) {
    RegisterCounter();
    Start();
    ASSERT_EQ(producer.WaitForCalls("EventGetData", 1, 60000), 0);
    producer.SkipCall("EventKill", 1);
    producer.SkipCall("EventKill", 2);
    Stop();
    EXPECT_GE(producer.CallCount("EventKill"), 3U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 1U) << "the wait didn't run out";
}

TEST_F(Delivery, LetsACallbackFlushWhileAStopWaitsForIt) {
    Register([this](const BUFFER_INFO&) {
        ++delivered;
        EXPECT_EQ(producer.WaitForCalls("EventKill", 1, 60000), 0);
        stream->DoFlushAllToInput();
    });
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    Stop();
    EXPECT_EQ(producer.OpenCount("Buffer"), 0);
}

TEST_F(Delivery, GivesWaitingFramesBackByAFlush) {
    Start();
    const BUFFER_INFO loan = Pull();
    producer.Trigger(0, 0, 2);
    while (stream->DoGetDeliveryBufferListSize() < 2) {
        std::this_thread::yield();
    }
    stream->DoFlushAllToInput();
    EXPECT_EQ(stream->DoGetDeliveryBufferListSize(), 0U);
    EXPECT_EQ(producer.SuccessCount("DSQueueBuffer"), 2U);
    EXPECT_EQ(producer.CallCount("DSFlushQueue"), 1U) << "the start's";
    GiveBack(loan);
}

TEST_F(Delivery, FlushesNothingWhileStopped) {
    stream->DoFlushAllToInput();
    EXPECT_EQ(producer.CallCount("DSFlushQueue"), 0U);
    EXPECT_EQ(producer.CallCount("EventGetData"), 0U);
}

TEST_F(Delivery, StartsAThreadForACallbackOfTheNextStartOnly) {
    Start();
    RegisterCounter();
    EXPECT_EQ(stream->DoGetAcquisitionThreadID(), 0U);
    Stop();
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
}

TEST_F(Delivery, RunsTheLastCallbackThatWasRegistered) {
    Register([](const BUFFER_INFO&) { ADD_FAILURE() << "the first callback ran"; });
    RegisterCounter();
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
}

TEST_F(Delivery, UnregistersOnceARunningCallbackHasReturned) {
    CVxEvent entered;
    CVxEvent release;
    std::atomic<bool> returned{false};
    Register([&](const BUFFER_INFO&) {
        entered.SetEvent();
        release.Wait(60000);
        returned = true;
    });
    Start();
    producer.Trigger(0, 0, 1);
    ASSERT_TRUE(entered.Wait(60000));
    std::thread unregister([&] {
        stream->DoUnregisterCaptureCallback();
        EXPECT_TRUE(returned);
    });
    release.SetEvent();
    unregister.join();
    EXPECT_FALSE(stream->DoIsRegisterCaptureCallback());
}

TEST_F(Delivery, KeepsGivingBuffersBackOnceUnregistered) {
    RegisterCounter();
    Start();
    stream->DoUnregisterCaptureCallback();
    producer.Trigger(0, 0, 1);
    AwaitRequeued(1);
    EXPECT_EQ(delivered, 0U);
}

using Pulling = Delivery;

TEST_F(Pulling, IsEndedByAnAbortThoughTheKillIsRefused) {
    producer.FailCall("EventKill", 0, GenTL::GC_ERR_NOT_IMPLEMENTED);
    Start();
    std::thread killer([this] {
        EXPECT_EQ(producer.WaitForCalls("EventGetData", 1, 60000), 0);
        stream->DoGetNativeNewBufferEvent().AbortWait();
        stream->DoGetNativeNewBufferEvent().AbortWait();
    });
    BUFFER_INFO frame;
    const auto error = Raised<CUnexpectedError>([&] { stream->DoGetBuffer(frame, 60000); });
    killer.join();
    // The wait was ended, or hadn't begun.
    EXPECT_TRUE(error.GetStatus() == GenTL::GC_ERR_ABORT ||
                error.GetStatus() == GenTL::GC_ERR_INVALID_HANDLE)
        << error.GetStatus();
    EXPECT_EQ(producer.CallCount("EventKill"), 1U)
        << "a kill without a wait would end the next one";
    EXPECT_EQ(producer.OpenCount("Event"), 0);
}

TEST_F(Pulling, GivesFramesInOrder) {
    Start();
    EXPECT_EQ(Pull().frameId.value, 0U);
    EXPECT_EQ(Pull().frameId.value, 1U);
}

TEST_F(Pulling, RaisesAfterItsTimeout) {
    Start();
    BUFFER_INFO frame;
    EXPECT_RAISES(CTimeoutError, "No event within the time-out", stream->DoGetBuffer(frame, 0));
}

TEST_F(Pulling, IsEndedByTheKillOfTheEvent) {
    Start();
    std::thread killer([this] {
        EXPECT_EQ(producer.WaitForCalls("EventGetData", 1, 60000), 0);
        stream->DoGetNativeNewBufferEvent().EventKill();
    });
    BUFFER_INFO frame;
    EXPECT_UNEXPECTED(-1012, "The wait for an event was aborted",
                      stream->DoGetBuffer(frame, 60000));
    killer.join();
}

TEST_F(Pulling, RaisesForABufferThatIsNotOfThisStream) {
    stream->SetAcqusitionBufferNumber(1);
    Start();
    const auto lib = stream->DoGetGenTLLib();
    std::vector<uint8_t> memory(64 * 48);
    void* foreign = nullptr;
    lib->DSAnnounceBuffer(stream->DoGetStreamHandle(), memory.data(), memory.size(), nullptr,
                          &foreign);
    lib->DSQueueBuffer(stream->DoGetStreamHandle(), foreign);
    Pull();
    EXPECT_UNEXPECTED(-1, "pUserPointer should not be NULL", Pull());
    Stop();
    lib->DSRevokeBuffer(stream->DoGetStreamHandle(), foreign, nullptr, nullptr);
}

TEST_F(Pulling, RaisesTheProducersFailureOnceStopped) {
    Start();
    Stop();
    BUFFER_INFO frame;
    EXPECT_EQ(Raised<CUnexpectedError>([&] { stream->DoGetBuffer(frame, 0); }).GetStatus(),
              GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(Pulling, TellsTheExpectedPayload) {
    Start();
    const BUFFER_INFO frame = Pull();
    EXPECT_TRUE(frame.expectedPayloadSize.valid);
    EXPECT_EQ(frame.expectedPayloadSize.value, 64U * 48U);
}

TEST_F(Pulling, LeavesInvalidWhatTheProducerDoesNotTell) {
    producer.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_TIMESTAMP,
                         GenTL::GC_ERR_NOT_AVAILABLE);
    Start();
    const BUFFER_INFO frame = Pull();
    EXPECT_FALSE(frame.timestamp.valid);
    EXPECT_TRUE(frame.frameId.valid);
}

struct Geometry {
    const char* fileName;
    bool chunkMode;
    bool ofTheCamera;
};

/// Whose word counts for the shape of a frame.
class FrameGeometry : public StreamTest, public ::testing::WithParamInterface<Geometry> {
protected:
    FrameGeometry() : StreamTest(GetParam().fileName) { info.SetChunkMode(GetParam().chunkMode); }
};

TEST_P(FrameGeometry, IsOfTheCameraWhereTheProducerCannotKnow) {
    Start();
    const BUFFER_INFO frame = Pull();
    const bool ofTheCamera = GetParam().ofTheCamera;
    EXPECT_EQ(frame.width.value, ofTheCamera ? 32U : 64U);
    EXPECT_EQ(frame.height.value, ofTheCamera ? 24U : 48U);
    EXPECT_EQ(frame.xOffset.value, ofTheCamera ? 4U : 0U);
    EXPECT_EQ(frame.yOffset.value, ofTheCamera ? 2U : 0U);
    EXPECT_EQ(frame.pixelFormat.value, ofTheCamera ? 0x01100003U : 0x01080001U);
    EXPECT_TRUE(frame.width.valid && frame.height.valid && frame.xOffset.valid &&
                frame.yOffset.valid && frame.pixelFormat.valid);
}

INSTANTIATE_TEST_SUITE_P(
    Transports, FrameGeometry,
    ::testing::Values(Geometry{"OvGVTL.cti", false, false}, Geometry{"OvGVTL.cti", true, true},
                      Geometry{"OvU3VTL.cti", false, false}, Geometry{"OvU3VTL.cti", true, false},
                      Geometry{"KwTL.cti", false, true}, Geometry{"KwTL.cti", true, true}));

/// The facts of a frame that the producer is asked for. They are counted because each
/// is a call, a lock and a copy on the way of every frame.
class FrameQuestions : public StreamTest, public ::testing::WithParamInterface<Geometry> {
protected:
    FrameQuestions() : StreamTest(GetParam().fileName) { info.SetChunkMode(GetParam().chunkMode); }
    void SetUp() override {
        StreamTest::SetUp();
        stream->SetAcqusitionBufferNumber(1);
        Start();
    }
    /// Of the next frame.
    uint64_t Questions() {
        const uint64_t before = producer.CallCount("DSGetBufferInfo");
        GiveBack(Pull());
        return producer.CallCount("DSGetBufferInfo") - before;
    }

    // State, bytes, time stamp and number; where the producer knows it, the shape.
    const uint64_t perFrame = GetParam().ofTheCamera ? 4 : 9;
    // Place and size, and the technology as a text in two calls.
    static constexpr uint64_t kPerAnnouncement = 4;
};

TEST_P(FrameQuestions, AreOfWhatChangesAfterTheFirstFrameOfABuffer) {
    EXPECT_EQ(Questions(), kPerAnnouncement + perFrame);
    EXPECT_EQ(Questions(), perFrame);
    EXPECT_EQ(Questions(), perFrame);
}

TEST_P(FrameQuestions, AreAllAskedAgainAfterTheNextAnnouncement) {
    Questions();
    Stop();
    Start();
    EXPECT_EQ(Questions(), kPerAnnouncement + perFrame);
}

TEST_P(FrameQuestions, AreOneCallWhereTheProducerHasIt) {
    Questions();
    producer.OfferStack(1);
    EXPECT_EQ(Questions(), 0U);
    EXPECT_EQ(producer.CallCount("DSGetBufferInfoStacked"), 1U);
    Questions();
    EXPECT_EQ(producer.CallCount("DSGetBufferInfoStacked"), 2U);
}

TEST_P(FrameQuestions, HaveTheSameAnswersInOneCall) {
    for (const char* const key : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat",
                                  "Timestamp", "SizeFilled", "Incomplete"}) {
        producer.SetFrame(0, 0, key, 1);
    }
    const BUFFER_INFO single = Pull();
    GiveBack(single);
    producer.OfferStack(1);
    const BUFFER_INFO stacked = Pull();
    const auto expectSame = [](const auto& a, const auto& b) {
        EXPECT_EQ(a.value, b.value);
        EXPECT_TRUE(a.valid && b.valid);
    };
    expectSame(stacked.sizeFilled, single.sizeFilled);
    expectSame(stacked.width, single.width);
    expectSame(stacked.height, single.height);
    expectSame(stacked.xOffset, single.xOffset);
    expectSame(stacked.yOffset, single.yOffset);
    expectSame(stacked.pixelFormat, single.pixelFormat);
    expectSame(stacked.timestamp, single.timestamp);
    expectSame(stacked.incomplete, single.incomplete);
    EXPECT_EQ(stacked.frameId.value, single.frameId.value + 1);
}

TEST_P(FrameQuestions, MissOnlyTheAnswersThatAreRefusedInOneCall) {
    Questions();
    producer.OfferStack(1);
    producer.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_TIMESTAMP,
                         GenTL::GC_ERR_NOT_AVAILABLE);
    const BUFFER_INFO frame = Pull();
    EXPECT_FALSE(frame.timestamp.valid);
    EXPECT_EQ(frame.timestamp.value, 0U);
    EXPECT_TRUE(frame.frameId.valid && frame.incomplete.valid && frame.sizeFilled.valid);
}

TEST_P(FrameQuestions, NeedNoSecondAnswerOfWhatIsFixed) {
    const BUFFER_INFO first = Pull();
    GiveBack(first);
    for (const int32_t command :
         {GenTL::BUFFER_INFO_BASE, GenTL::BUFFER_INFO_SIZE, GenTL::BUFFER_INFO_TLTYPE}) {
        producer.FailCommand("DSGetBufferInfo", command, GenTL::GC_ERR_NOT_AVAILABLE);
    }
    const BUFFER_INFO second = Pull();
    EXPECT_TRUE(second.base.valid);
    EXPECT_EQ(second.base.value, first.base.value);
    EXPECT_TRUE(second.size.valid);
    EXPECT_EQ(second.size.value, first.size.value);
    EXPECT_TRUE(second.tlType.valid);
    EXPECT_EQ(second.tlType.value, first.tlType.value);
    EXPECT_EQ(second.userPointer.value, first.userPointer.value);
}

INSTANTIATE_TEST_SUITE_P(Transports, FrameQuestions,
                         ::testing::Values(Geometry{"OvGVTL.cti", false, false},
                                           Geometry{"OvGVTL.cti", true, true},
                                           Geometry{"OvU3VTL.cti", false, false},
                                           Geometry{"KwTL.cti", false, true}));

TEST_F(Pulling, AsksAgainForAFixedFactThatWasRefused) {
    // The first question is for the length of the technology's text.
    producer.FailCall("DSGetBufferInfo", 1, GenTL::GC_ERR_NOT_AVAILABLE);
    stream->SetAcqusitionBufferNumber(1);
    Start();
    const BUFFER_INFO first = Pull();
    EXPECT_FALSE(first.tlType.valid);
    EXPECT_EQ(first.width.value, 64U) << "nobody knows that the camera's word counts";
    GiveBack(first);
    const BUFFER_INFO second = Pull();
    EXPECT_EQ(second.tlType.value, "Custom");
    EXPECT_EQ(second.width.value, 32U);
}

TEST_F(Pulling, LeavesToTheBufferWhatNoRecordOfAnApplicationHas) {
    producer.SetFrame(0, 0, "PayloadType", GenTL::PAYLOAD_TYPE_RAW_DATA);
    Start();
    const BUFFER_INFO frame = Pull();
    EXPECT_FALSE(frame.xPadding.valid || frame.yPadding.valid || frame.imageOffset.valid ||
                 frame.payloadType.valid || frame.pixelFormatNamespace.valid);
    const BUFFER_INFO all = static_cast<CBuffer*>(frame.userPointer.value)->GetBufferInfo();
    EXPECT_TRUE(all.xPadding.valid && all.yPadding.valid && all.imageOffset.valid &&
                all.pixelFormatNamespace.valid);
    EXPECT_EQ(all.payloadType.value, GenTL::PAYLOAD_TYPE_RAW_DATA);
    EXPECT_EQ(all.frameId.value, frame.frameId.value);
}

TEST_F(Delivery, IsNotRegisteredWithoutAThread) {
    RegisterCounter();
    {
        const ThreadShortage shortage;
        EXPECT_UNEXPECTED(-1, "Failed to start __OnThreadGetImage", Start());
    }
    EXPECT_EQ(stream->DoGetAcquisitionThreadID(), 0U);
    for (const char* const kind : {"Event", "Buffer", "Acquisition"}) {
        EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
    }
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
}

TEST_F(Delivery, OutlivesTheCamera) {
    RegisterCounter();
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
    producer.LoseDevice(0, 0);
    EXPECT_NE(stream->DoGetAcquisitionThreadID(), 0U);
    producer.ReturnDevice(0, 0);
    producer.Trigger(0, 0, 1);
    AwaitDelivered(2);
}

TEST_F(Delivery, IsNotRegisteredWhenTheEventIsRefused) {
    RegisterCounter();
    producer.FailCall("GCRegisterEvent", 1, GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_RAISES(CNotImplementedError, "Planned failure of GCRegisterEvent", Start());
    EXPECT_EQ(stream->DoGetAcquisitionThreadID(), 0U);
    EXPECT_EQ(producer.OpenCount("Event"), 0);
    Start();
    producer.Trigger(0, 0, 1);
    AwaitDelivered(1);
}

}  // namespace
}  // namespace OVTLClass
