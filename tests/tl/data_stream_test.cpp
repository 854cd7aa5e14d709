// A stream: the strict order of start and stop, and what its buffers are.

#include <algorithm>
#include <map>
#include <set>
#include <thread>

#include "StreamTest.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassStream/DataStream.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class StreamAcquisition : public StreamTest {
protected:
    int64_t ParamsLocked() { return stream->GetFeatureControl()->DoGetInt("TLParamsLocked"); }
    /// The calls so far, without those that read and write features.
    std::vector<std::string> Steps() {
        std::vector<std::string> calls = producer.Log();
        calls.erase(std::remove_if(calls.begin(), calls.end(),
                                   [](const std::string& call) {
                                       return call.ends_with("Port") || call == "DSGetInfo";
                                   }),
                    calls.end());
        return calls;
    }
    /// The memory of `count` frames.
    std::set<void*> Memory(size_t count) {
        std::set<void*> memory;
        for (size_t i = 0; i < count; ++i) {
            memory.insert(Pull().base.value);
        }
        return memory;
    }
    void ExpectIdle() {
        EXPECT_FALSE(stream->DoIsDataStreamAcquisiton());
        EXPECT_EQ(ParamsLocked(), 0);
        for (const char* const kind : {"Buffer", "Event", "Acquisition"}) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }
};

TEST_F(StreamAcquisition, OpensOnce) {
    EXPECT_TRUE(stream->DoIsDataStreamOpen());
    EXPECT_NE(stream->DoGetStreamHandle(), nullptr);
    EXPECT_TRUE(stream->GetFeatureControl()->DoExist("TLParamsLocked"));
    stream->DoOpenDataStream();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(StreamAcquisition, IsBlankOnceClosed) {
    stream->DoCloseDataStream();
    EXPECT_FALSE(stream->DoIsDataStreamOpen());
    EXPECT_EQ(stream->DoGetStreamHandle(), nullptr);
    EXPECT_EQ(stream->GetFeatureControl(), nullptr);
    EXPECT_EQ(stream->GetNodeMapRef(), nullptr);
    producer.ClearLog();
    stream->DoCloseDataStream();
    EXPECT_THAT(producer.Log(), IsEmpty());
    stream->DoOpenDataStream();
    EXPECT_TRUE(stream->DoIsDataStreamOpen());
}

TEST_F(StreamAcquisition, CannotOpenOnceTheDeviceIsClosed) {
    device->DoCloseDevice();
    EXPECT_UNEXPECTED(-1, "The node map of remote device  is invalid", stream->DoOpenDataStream());
    EXPECT_FALSE(stream->DoIsDataStreamOpen());
}

TEST_F(StreamAcquisition, IsClosedAgainWhenItsDescriptionIsMissing) {
    stream->DoCloseDataStream();
    producer.SetUrl("Stream", "");
    EXPECT_UNEXPECTED(-1, "UrlNum <= 0", stream->DoOpenDataStream());
    EXPECT_FALSE(stream->DoIsDataStreamOpen());
    EXPECT_EQ(producer.OpenCount("Stream"), 0);
}

TEST_F(StreamAcquisition, LogsAFailedClose) {
    const LogCapture log;
    producer.FailAfterCall("DSClose", 1, GenTL::GC_ERR_ERROR);
    stream->DoCloseDataStream();
    EXPECT_FALSE(stream->DoIsDataStreamOpen());
    EXPECT_THAT(log.Lines(), HasLogged("DoCloseDataStream", "Planned failure of DSClose"));
    manager.DoUninit();
    producer.Reset();
}

TEST_F(StreamAcquisition, StartsInOrder) {
    stream->SetAcqusitionBufferNumber(2);
    Start();
    EXPECT_TRUE(stream->DoIsDataStreamAcquisiton());
    EXPECT_THAT(Steps(), ElementsAre("GCRegisterEvent", "DSAnnounceBuffer", "DSAnnounceBuffer",
                                     "DSFlushQueue", "DSStartAcquisition"));
    EXPECT_EQ(ParamsLocked(), 1);
}

TEST_F(StreamAcquisition, LocksParametersBeforeAllElse) {
    Start();
    const std::vector<std::string> calls = producer.Log();
    const auto write = std::find(calls.begin(), calls.end(), "GCWritePort");
    EXPECT_LT(write - calls.begin(),
              std::find(calls.begin(), calls.end(), "DSGetInfo") - calls.begin());
}

TEST_F(StreamAcquisition, StartsOnce) {
    Start();
    producer.ClearLog();
    Start();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(StreamAcquisition, CannotStartBeforeItIsOpen) {
    stream->DoCloseDataStream();
    EXPECT_UNEXPECTED(-1, "Can not start stream acquisition before open it", Start());
}

TEST_F(StreamAcquisition, CannotStartWithoutAPayload) {
    info.SetPayloadSize(0);
    EXPECT_UNEXPECTED(-1, "Can not allocate zero bytes memory", Start());
    ExpectIdle();
}

TEST_F(StreamAcquisition, StopsInOrder) {
    stream->SetAcqusitionBufferNumber(2);
    Start();
    producer.ClearLog();
    Stop();
    EXPECT_THAT(Steps(), ElementsAre("EventKill", "GCUnregisterEvent", "DSStopAcquisition",
                                     "DSFlushQueue", "DSRevokeBuffer", "DSRevokeBuffer"));
    EXPECT_EQ(producer.Log().back(), "GCWritePort");
    ExpectIdle();
}

TEST_F(StreamAcquisition, StopOfAnIdleStreamDoesNothing) {
    Stop();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(StreamAcquisition, StartsAgainAfterAStop) {
    Start();
    Stop();
    Start();
    EXPECT_EQ(Pull().size.value, 64U * 48U);
}

TEST_F(StreamAcquisition, StopsWithTheClose) {
    Start();
    stream->DoCloseDataStream();
    EXPECT_FALSE(stream->DoIsDataStreamAcquisiton());
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_EQ(producer.OpenCount("Buffer"), 0);
}

TEST_F(StreamAcquisition, AFailedStartRevokesAllBuffersAndUnlocksTheParameters) {
    producer.FailCall("DSStartAcquisition", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of DSStartAcquisition", Start());
    EXPECT_EQ(producer.SuccessCount("DSAnnounceBuffer"), 5U);
    EXPECT_EQ(producer.SuccessCount("DSRevokeBuffer"), 5U);
    ExpectIdle();
}

TEST_F(StreamAcquisition, AFailedStartUndoesItsStepsInReverse) {
    stream->SetAcqusitionBufferNumber(1);
    producer.FailCall("DSStartAcquisition", 1, GenTL::GC_ERR_IO);
    EXPECT_THROW(Start(), CUnexpectedError);
    std::vector<std::string> calls = Steps();
    const auto failed = std::find(calls.begin(), calls.end(), "DSStartAcquisition");
    calls.erase(std::remove(calls.begin(), calls.end(), "GCGetLastError"), calls.end());
    EXPECT_THAT(std::vector(failed + 1, calls.end()),
                ElementsAre("DSFlushQueue", "DSRevokeBuffer", "EventKill", "GCUnregisterEvent"));
}

TEST_F(StreamAcquisition, UndoesEveryStepWhenALaterOneFails) {
    Start();
    const std::vector<std::string> calls = producer.Log();
    Stop();
    std::map<std::string, unsigned> seen;
    for (const std::string& call : calls) {
        SCOPED_TRACE(call + " " + std::to_string(++seen[call]));
        producer.FailCall(call.c_str(), seen[call], GenTL::GC_ERR_ERROR);
        try {
            Start();
            Stop();
        } catch (const CUnexpectedError& error) {
            EXPECT_EQ(error.GetStatus(), GenTL::GC_ERR_ERROR);
        }
        ExpectIdle();
    }
}

TEST_F(StreamAcquisition, LogsEveryStepOfAStopThatFailsAndStops) {
    Start();
    const LogCapture log;
    const std::vector<std::string> calls = {"EventKill", "GCUnregisterEvent", "DSStopAcquisition",
                                            "DSFlushQueue", "DSRevokeBuffer"};
    for (const std::string& call : calls) {
        producer.FailAfterCall(call.c_str(), 1, GenTL::GC_ERR_ERROR);
    }
    producer.FailCall("GCWritePort", 1, GenTL::GC_ERR_IO);
    Stop();
    EXPECT_FALSE(stream->DoIsDataStreamAcquisiton());
    std::vector<::testing::Matcher<std::string>> expected;
    for (const std::string& call : calls) {
        expected.emplace_back(::testing::EndsWith(":Planned failure of " + call));
        if (call == "DSStopAcquisition") {
            // It had stopped; the second try finds it so.
            expected.emplace_back(::testing::HasSubstr("'__StopEngine':"));
        }
    }
    expected.emplace_back(::testing::HasSubstr("{Planned failure of GCWritePort}"));
    EXPECT_THAT(log.Lines(), ElementsAreArray(expected));
    manager.DoUninit();
    producer.Reset();
}

TEST_F(StreamAcquisition, StopsAProducerThatCannotBreakAFrameOff) {
    producer.FailCommand("DSStopAcquisition", GenTL::ACQ_STOP_FLAGS_KILL,
                         GenTL::GC_ERR_NOT_IMPLEMENTED);
    Start();
    Stop();
    ExpectIdle();
}

TEST_F(StreamAcquisition, LeavesNoBufferBehindWhenAFlushWorksAndFails) {
    producer.FailAfterCall("DSFlushQueue", 1, GenTL::GC_ERR_ERROR);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_ERROR, "Planned failure of DSFlushQueue", Start());
    ExpectIdle();
    Start();
    producer.FailAfterCall("DSFlushQueue", 1, GenTL::GC_ERR_ERROR);
    Stop();
    ExpectIdle();
}

TEST_F(StreamAcquisition, UnlocksParametersThatWereLockedAndFailed) {
    producer.FailAfterCall("GCWritePort", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of GCWritePort", Start());
    EXPECT_EQ(ParamsLocked(), 0);
}

/// A producer that keeps its buffers when the stream stops.
class KeptBuffers : public StreamAcquisition {
protected:
    void StopWithoutBuffers() {
        producer.FailCall("DSRevokeBuffer", 1, GenTL::GC_ERR_BUSY);
        producer.FailCall("DSRevokeBuffer", 2, GenTL::GC_ERR_BUSY);
        Stop();
    }
    /// Has `count` frames fetched and given back, each with the pixels of the camera.
    void ExpectFrames(unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            const BUFFER_INFO frame = Pull();
            EXPECT_EQ(static_cast<const uint8_t*>(frame.base.value)[0],
                      static_cast<uint8_t>(frame.frameId.value));
            GiveBack(frame);
        }
    }
};

TEST_F(KeptBuffers, AreReplacedAndUsedWhileTheProducerHasThem) {
    stream->SetAcqusitionBufferNumber(2);
    Start();
    StopWithoutBuffers();
    EXPECT_EQ(producer.OpenCount("Buffer"), 2);
    producer.FailCall("DSRevokeBuffer", 1, GenTL::GC_ERR_BUSY);
    producer.FailCall("DSRevokeBuffer", 2, GenTL::GC_ERR_BUSY);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 4) << "the kept ones and two new ones";
    ExpectFrames(8);
    Stop();
    ExpectIdle();
}

TEST_F(KeptBuffers, GoOnceTheProducerGivesThemBack) {
    stream->SetAcqusitionBufferNumber(2);
    Start();
    StopWithoutBuffers();
    info.SetPayloadSize(64 * 48 + 1);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 2);
    ExpectFrames(4);
}

TEST_F(KeptBuffers, GoWithTheClose) {
    Start();
    StopWithoutBuffers();
    stream->DoCloseDataStream();
    stream->DoOpenDataStream();
    Start();
    ExpectFrames(5);
    // The close took the buffers without a revoke.
    manager.DoUninit();
    producer.Reset();
}

TEST_F(StreamAcquisition, LeavesParametersAloneThatItDoesNotHave) {
    stream->DoCloseDataStream();
    const std::string text = EngineTest::XmlNodeMap::Describe("<Port Name=\"StreamPort\"/>");
    producer.SetDescription("Stream", "Stream.xml", text.data(), text.size());
    stream->DoOpenDataStream();
    producer.ClearLog();
    Start();
    Stop();
    EXPECT_THAT(producer.Log(), ::testing::Not(::testing::Contains("GCWritePort")));
}

TEST_F(StreamAcquisition, HasFiveBuffersUnlessTold) {
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 5U);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 5);
}

TEST_F(StreamAcquisition, TakesANumberOfBuffers) {
    stream->SetAcqusitionBufferNumber(3);
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 3U);
    EXPECT_EQ(stream->DoGetAnnounceBufferListSize(), 3U);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 3);
}

TEST_F(StreamAcquisition, RefusesFewerBuffersThanTheProducerNeeds) {
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 4);
    EXPECT_RAISES(COutOfRangeError, "Acquisition buffers is less than the minimum",
                  stream->SetAcqusitionBufferNumber(3));
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 5U);
    stream->SetAcqusitionBufferNumber(4);
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 4U);
}

TEST_F(StreamAcquisition, TakesAnyNumberWhenTheProducerTellsNoMinimum) {
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 4);
    producer.FailCommand("DSGetInfo", GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN,
                         GenTL::GC_ERR_NOT_AVAILABLE);
    stream->SetAcqusitionBufferNumber(1);
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 1U);
}

TEST_F(StreamAcquisition, HasAsManyBuffersAsTheProducerNeeds) {
    stream->DoCloseDataStream();
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 8);
    stream->DoOpenDataStream();
    EXPECT_EQ(stream->GetAcqusitionBufferNumber(), 8U);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 8);
}

TEST_F(StreamAcquisition, TakesMoreBuffersWhenTheProducerNeedsThemByTheStart) {
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 7);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 7);
    EXPECT_EQ(stream->DoGetAnnounceBufferListSize(), 7U);
}

TEST_F(StreamAcquisition, KeepsMoreBuffersThanTheProducerNeeds) {
    stream->SetAcqusitionBufferNumber(9);
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 7);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 9);
}

struct Alignment {
    int64_t alignment;
    bool told;
    uint64_t size;
};

class StreamAlignment : public StreamAcquisition,
                        public ::testing::WithParamInterface<Alignment> {};

TEST_P(StreamAlignment, RoundsTheSizeOfBuffersUp) {
    producer.SetStreamNumber(0, 0, "Alignment", GetParam().alignment);
    if (!GetParam().told) {
        producer.FailCommand("DSGetInfo", GenTL::STREAM_INFO_BUF_ALIGNMENT,
                             GenTL::GC_ERR_NOT_AVAILABLE);
    }
    info.SetPayloadSize(1000);
    Start();
    EXPECT_EQ(Pull().size.value, GetParam().size);
}

TEST_F(StreamAcquisition, AlignsTheAddressesOfItsBuffers) {
    constexpr uintptr_t kAlignment = 4096;
    producer.SetStreamNumber(0, 0, "Alignment", kAlignment);
    Start();
    for (void* const memory : Memory(5)) {
        EXPECT_EQ(reinterpret_cast<uintptr_t>(memory) % kAlignment, 0U);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, StreamAlignment,
                         ::testing::Values(Alignment{512, true, 1024}, Alignment{1, true, 1000},
                                           Alignment{0, true, 1000}, Alignment{512, false, 1000},
                                           Alignment{1000, true, 1000},
                                           Alignment{1001, true, 1001}));

TEST_F(StreamAcquisition, KeepsItsMemoryFromOneStartToTheNext) {
    Start();
    const std::set<void*> before = Memory(5);
    Stop();
    Start();
    EXPECT_EQ(before.size(), 5U);
    EXPECT_EQ(Memory(5), before);
}

TEST_F(StreamAcquisition, KeepsTheFirstBuffersWhenTheirNumberShrinks) {
    Start();
    std::vector<void*> before;
    for (int i = 0; i < 5; ++i) {
        before.push_back(Pull().base.value);
    }
    Stop();
    stream->SetAcqusitionBufferNumber(3);
    Start();
    EXPECT_EQ(producer.OpenCount("Buffer"), 3);
    EXPECT_EQ(Memory(3), std::set<void*>(before.begin(), before.begin() + 3));
}

TEST_F(StreamAcquisition, KeepsItsBuffersWhenTheirNumberGrows) {
    stream->SetAcqusitionBufferNumber(2);
    Start();
    const std::set<void*> before = Memory(2);
    Stop();
    stream->SetAcqusitionBufferNumber(4);
    Start();
    const std::set<void*> after = Memory(4);
    EXPECT_EQ(after.size(), 4U);
    EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
}

TEST_F(StreamAcquisition, TellsHowManyFramesWait) {
    Start();
    EXPECT_EQ(stream->DoGetDeliveryBufferListSize(), 0U);
    producer.Trigger(0, 0, 2);
    while (stream->DoGetDeliveryBufferListSize() < 2) {
        std::this_thread::yield();
    }
    Fetch();
    EXPECT_EQ(stream->DoGetDeliveryBufferListSize(), 1U);
}

TEST_F(StreamAcquisition, RaisesWhenItCannotTellHowManyFramesWait) {
    producer.FailCall("DSGetInfo", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of DSGetInfo",
                      stream->DoGetDeliveryBufferListSize());
}

TEST_F(StreamAcquisition, CannotGiveBuffersBackOnceClosed) {
    stream->DoCloseDataStream();
    EXPECT_UNEXPECTED(-1, "The data stream is closed", stream->DoFlushAllToInput());
}

TEST_F(StreamAcquisition, GivesNoBufferBackBetweenTheFlushAndTheEndOfAStop) {
    Start();
    producer.ClearLog();
    producer.BlockCall("DSRevokeBuffer");
    std::thread stopper([this] { Stop(); });
    EXPECT_EQ(producer.WaitForCalls("DSRevokeBuffer", 1, 60000), 0);
    stream->DoFlushAllToInput();
    producer.ReleaseCall("DSRevokeBuffer");
    stopper.join();
    EXPECT_EQ(producer.CallCount("DSQueueBuffer"), 0U);
    ExpectIdle();
    Start();
    EXPECT_EQ(Memory(5).size(), 5U);
}

TEST_F(StreamAcquisition, RaisesWhenWaitingFramesCannotBeGivenBack) {
    Start();
    producer.Trigger(0, 0, 1);
    while (stream->DoGetDeliveryBufferListSize() < 1) {
        std::this_thread::yield();
    }
    for (const char* const call : {"DSGetInfo", "EventGetData", "DSQueueBuffer"}) {
        const std::string function = call;
        producer.FailCall(call, 1, GenTL::GC_ERR_IO);
        EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of " + function,
                          stream->DoFlushAllToInput());
    }
}

}  // namespace
}  // namespace OVTLClass
