// Faults of the start, the stop, and the calls that move frames.

#include <array>

#include "FaultMatrix.h"

namespace {

constexpr int64_t kBuffers = 5;

class StreamFaultTest : public FaultMatrix {
protected:
    static Steps StartSteps() {
        return {
            {"GCWritePort", 1, Fate::RaisedUnlessMissing, "a camera may have no lock"},
            {"GCReadPort", 1, Fate::Swallowed, "without the chunk mode it counts as off"},
            {"GCReadPort", 6, Fate::Healed, ""},   // Width to PayloadSize
            {"GCWritePort", 1, Fate::Healed, ""},  // the stream's lock
            {"DSGetInfo", 6, Fate::Swallowed, "a fact may be missing"},
            {"GCRegisterEvent", 1, Fate::Healed, ""},
            {"DSAnnounceBuffer", kBuffers, Fate::Healed, ""},
            {"DSFlushQueue", 1, Fate::Healed, ""},
            {"DSStartAcquisition", 1, Fate::Healed, ""},
            {"GCWritePort", 1, Fate::Healed, ""},  // AcquisitionStart
        };
    }

    static Steps StopSteps() {
        const char* const down = "the way down goes to its end";
        return {
            {"GCWritePort", 1, Fate::ReportedByStop, down},  // AcquisitionStop
            {"DSQueueBuffer", 1, Fate::Swallowed, down},
            {"EventKill", 1, Fate::Swallowed, down},
            {"GCUnregisterEvent", 1, Fate::Swallowed, down},
            {"DSStopAcquisition", 1, Fate::Swallowed, down},
            {"DSFlushQueue", 1, Fate::Swallowed, down},
            {"DSRevokeBuffer", kBuffers, Fate::Swallowed, down},
            {"GCWritePort", 1, Fate::Swallowed, down},       // the stream's lock
            {"GCWritePort", 1, Fate::ReportedByStop, down},  // the camera's lock
        };
    }

    void OpenCamera() {
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    void StartCamera() {
        OpenCamera();
        ASSERT_OV_OK(OVStreamOn(camera));
    }

    void DeliverFrames(unsigned count) { Faulty().Trigger(0, 0, count); }

    OV_STATUS Lend() { return OVDQBuf(camera, &frame, 1000); }

    OV_STATUS CopyImage() {
        OV_FRAME_DATA data{};
        data.pImgBuf = m_image.data();
        return OVGetImage(camera, &data, 1000);
    }

    void CheckStart(const Fault& fault) {
        const bool started = fault.expected.status == OV_STATUS_SUCCESS;
        EXPECT_EQ(Faulty().OpenCount("Buffer"), started ? kBuffers : 0);
        EXPECT_EQ(Faulty().OpenCount("Event"), started ? 1 : 0);
        EXPECT_EQ(Faulty().OpenCount("Acquisition"), started ? 1 : 0);
        const bool unlocked = fault.step.fate == Fate::RaisedUnlessMissing;
        EXPECT_EQ(ParamsLocked(), started && !unlocked ? 1U : 0U);
    }

    void ExpectRoundOfFrames() {
        EXPECT_OV_OK(OVStreamOn(camera));
        EXPECT_EQ(ParamsLocked(), 1U);
        DeliverFrames(1);
        EXPECT_OV_OK(CopyImage());
        EXPECT_OV_OK(OVStreamOff(camera));
        EXPECT_EQ(ParamsLocked(), 0U);
    }

    FaultPlan StartPlan() {
        return {.steps = StartSteps(),
                .prepare = [this] { OpenCamera(); },
                .action = [this] { return OVStreamOn(camera); },
                .check = [this](const Fault& fault) { CheckStart(fault); },
                .again =
                    [this] {
                        EXPECT_OV_OK(OVStreamOn(camera));
                        EXPECT_OV_OK(OVStreamOff(camera));
                        ExpectRoundOfFrames();
                        ExpectClosed({"Buffer", "Event", "Acquisition"});
                    }};
    }

    OV_DEV_HANDLE camera = nullptr;
    OV_FRAME_BUFFER* frame = nullptr;

private:
    std::array<unsigned char, 1 << 16> m_image{};
};

TEST_P(StreamFaultTest, OneFaultOfAStartIsHealedOrUndone) {
    Run(StartPlan());
}

TEST_P(StreamFaultTest, AFaultAtEachAttemptOfAStartIsUndone) {
    RunPersistent(StartPlan());
}

TEST_P(StreamFaultTest, AStopGoesToItsEnd) {
    Run({.steps = StopSteps(),
         .prepare =
             [this] {
                 StartCamera();
                 DeliverFrames(1);
                 ASSERT_OV_OK(Lend());
             },
         .action = [this] { return OVStreamOff(camera); },
         .check =
             [this](const Fault&) {
                 ExpectFailure(OVQBuf(camera, frame), OV_STATUS_INVALID_CALL,
                               "Can't call QBuf before start capture");
             },
         .again =
             [this] {
                 EXPECT_OV_OK(OVStreamOff(camera));
                 EXPECT_EQ(ParamsLocked(), 0U);
                 // What the producer kept of the stream ends with it.
                 EXPECT_OV_OK(OVCloseDevice(camera));
                 camera = Open();
                 ExpectRoundOfFrames();
             },
         .failsAfterWork = true});
}

TEST_P(StreamFaultTest, ALoanThatFailsLeavesTheFrame) {
    Run({.steps = {{"EventGetData", 1, Fate::Raised, ""},
                   {"DSGetBufferInfo", FactsOfAFirstFrame(), Fate::Swallowed,
                    "a fact may be missing"}},
         .prepare =
             [this] {
                 StartCamera();
                 DeliverFrames(2);
             },
         .action = [this] { return Lend(); },
         .check =
             [this](const Fault& fault) {
                 EXPECT_EQ(frame == nullptr, fault.expected.status != OV_STATUS_SUCCESS);
             },
         .again =
             [this] {
                 EXPECT_OV_OK(Lend());
                 EXPECT_OV_OK(OVQAllBufs(camera));
             }});
}

TEST_P(StreamFaultTest, AReturnThatFailsLeavesTheLoan) {
    Run({.steps = {{"DSQueueBuffer", 1, Fate::Raised, ""}},
         .prepare =
             [this] {
                 StartCamera();
                 DeliverFrames(1);
                 ASSERT_OV_OK(Lend());
             },
         .action = [this] { return OVQBuf(camera, frame); },
         .again = [this] { EXPECT_OV_OK(OVQBuf(camera, frame)); }});
}

TEST_P(StreamFaultTest, ACopyThatFailsLeavesTheStreamRunning) {
    Run({.steps = {{"EventGetData", 1, Fate::Raised, ""},
                   {"DSGetBufferInfo", FactsOfAFirstFrame(), Fate::Swallowed,
                    "a fact may be missing"},
                   {"DSQueueBuffer", 1, Fate::Raised, ""}},
         .prepare =
             [this] {
                 StartCamera();
                 DeliverFrames(2);
             },
         .action = [this] { return CopyImage(); },
         .again = [this] { EXPECT_OV_OK(CopyImage()); }});
}

TEST_P(StreamFaultTest, AFaultWhileAllFramesAreLentLeavesNoneLent) {
    std::array<OV_FRAME_BUFFER*, kBuffers> frames{};
    uint32_t count = 0;
    const auto lendAll = [&] { return OVDQAllBufs(camera, frames.data(), kBuffers, &count, 1000); };
    Run({.steps = {{"DSGetInfo", 1, Fate::Raised, ""},
                   {"EventGetData", 1, Fate::Raised, ""},
                   {"DSGetBufferInfo", FactsOfAFirstFrame(), Fate::Swallowed,
                    "a fact may be missing"}},
         .prepare =
             [&] {
                 StartCamera();
                 DeliverFrames(1);
             },
         .action = lendAll,
         .check =
             [&](const Fault& fault) {
                 const bool ends = fault.expected.status != OV_STATUS_SUCCESS;
                 EXPECT_EQ(count, ends ? 0U : 1U);
                 EXPECT_EQ(frames[0] == nullptr, ends);
             },
         .again =
             [&] {
                 DeliverFrames(1);
                 EXPECT_OV_OK(OVQAllBufs(camera));
                 EXPECT_OV_OK(lendAll());
                 EXPECT_OV_OK(OVQAllBufs(camera));
             }});
}

TEST_P(StreamFaultTest, OtherCallsOnAStreamRaiseOrPassOver) {
    Run({.steps = {{"DSGetInfo", 1, Fate::Raised, ""}},
         .prepare = [this] { StartCamera(); },
         .action = [this] { return OVFlushQueue(camera); },
         .again = [this] { EXPECT_OV_OK(OVFlushQueue(camera)); }});
    Run({.steps = {{"DSGetInfo", 6, Fate::Swallowed, "without a minimum any number is taken"}},
         .prepare = [this] { OpenCamera(); },
         .action = [this] { return OVSetAcqusitionBufferNumber(camera, kBuffers); },
         .again = [this] { EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, 1)); }});
}

INSTANTIATE_TEST_SUITE_P(Producers, StreamFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
