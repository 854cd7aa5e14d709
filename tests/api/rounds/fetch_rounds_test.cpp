// Stops beside fetches: every fetch leaves before its buffers go.

#include <atomic>

#include "Rounds.h"
#include "support/Fetcher.h"

namespace {

constexpr uint32_t kForEver = 60000;
constexpr int64_t kSizes[] = {16, 32, 48, 24};
constexpr uint64_t kNumbers[] = {5, 2, 4, 1};

class FetchRoundsTest : public RoundsTest, public testing::WithParamInterface<FetchWay> {
protected:
    /// Another size and another number of buffers each round.
    static void Reshape(OV_DEV_HANDLE camera, unsigned round) {
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, kSizes[round % std::size(kSizes)]));
        EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, kNumbers[round % std::size(kNumbers)]));
    }
};

TEST_P(FetchRoundsTest, AStopMeetsFetchesOfRunningFrames) {
    const OV_DEV_HANDLE camera = OpenRunning(custom, 0, 0);
    Run([&](unsigned round) {
        Reshape(camera, round);
        EXPECT_OV_OK(OVStreamOn(camera));
        Fetcher first(camera, GetParam());
        Fetcher second(camera, GetParam());
        first.WaitForFrames(1);
        EXPECT_OV_OK(OVStreamOff(camera));
        first.ExpectEnd();
        second.ExpectEnd();
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_P(FetchRoundsTest, AStopEndsFetchesThatWait) {
    const OV_DEV_HANDLE camera = Open(IdOf(0, 0));
    Run([&](unsigned round) {
        Reshape(camera, round);
        EXPECT_OV_OK(OVStreamOn(camera));
        HeldCall held(custom, "EventGetData");
        Fetcher first(camera, GetParam());
        Fetcher second(camera, GetParam());
        held.WaitFor(2);
        // Now and then the kill comes before the wait has begun, and is forgotten.
        if (round % 2 == 0) {
            custom.SkipCall("EventKill", 1);
        }
        if (round % 3 != 0) {
            held.Release();
        }
        const uint64_t kills = custom.CallCount("EventKill");
        Beside stop([&] { return OVStreamOff(camera); });
        EXPECT_EQ(custom.WaitForCalls("EventKill", kills + 1, kForEver), 0);
        held.Release();
        EXPECT_EQ(stop.Join(), OV_STATUS_SUCCESS) << stop.GetText();
        first.ExpectEnd();
        second.ExpectEnd();
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_P(FetchRoundsTest, AStartIsStoppedByAnotherThreadBesideFetches) {
    const OV_DEV_HANDLE camera = OpenRunning(custom, 0, 0);
    Run([&](unsigned round) {
        Reshape(camera, round);
        std::atomic<bool> ends{false};
        const auto fetchOn = [&] {
            while (!ends) {
                GetParam().fetch(camera);
            }
            return OV_STATUS_SUCCESS;
        };
        const auto startAndStop = [&] {
            EXPECT_OV_OK(OVStreamOn(camera));
            return OVStreamOff(camera);
        };
        Beside fetching(fetchOn);
        Beside first(startAndStop);
        Beside second(startAndStop);
        EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
        EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        ends = true;
        fetching.Join();
        EXPECT_OV_OK(OVStreamOff(camera));
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_P(FetchRoundsTest, ACloseEndsFetches) {
    Run([&](unsigned round) {
        const OV_DEV_HANDLE camera = Open(IdOf(0, 0));
        EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, kNumbers[round % std::size(kNumbers)]));
        EXPECT_OV_OK(OVStreamOn(camera));
        OV_STATUS ended = OV_STATUS_SUCCESS;
        const uint64_t waits = custom.CallCount("EventGetData");
        Beside fetching([&] { return ended = GetParam().fetch(camera); });
        EXPECT_EQ(custom.WaitForCalls("EventGetData", waits + 1, kForEver), 0);
        if (round % 2 == 0) {
            EXPECT_OV_OK(OVCloseDevice(camera));
        } else {
            EXPECT_OV_OK(OVCloseLib());
            EXPECT_OV_OK(OVInitLib());
            EXPECT_EQ(Update(), kCameras);
        }
        fetching.Join();
        EXPECT_EQ(ended, GenTL::GC_ERR_ABORT) << fetching.GetText();
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
    });
}

INSTANTIATE_TEST_SUITE_P(Ways, FetchRoundsTest, testing::ValuesIn(kFetchWays),
                         [](const auto& test) { return std::string(test.param.name); });

class LoanRoundsTest : public RoundsTest {};

TEST_F(LoanRoundsTest, ALoanFromBeforeIsRefusedHoweverTheStreamStartsAnew) {
    const OV_DEV_HANDLE camera = OpenRunning(custom, 0, 0);
    Run([&](unsigned round) {
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, kSizes[round % std::size(kSizes)]));
        EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, kNumbers[round % std::size(kNumbers)]));
        EXPECT_OV_OK(OVStreamOn(camera));
        OV_FRAME_BUFFER* before = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &before, kForEver));
        EXPECT_OV_OK(OVStreamOff(camera));
        ExpectFailure(OVQBuf(camera, before), OV_STATUS_INVALID_CALL,
                      "Can't call QBuf before start capture");
        ExpectFailure(OVQAllBufs(camera), OV_STATUS_INVALID_CALL,
                      "Can't call QAllBufs before start capture");
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, kSizes[(round + 1) % std::size(kSizes)]));
        EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, 1));
        EXPECT_OV_OK(OVStreamOn(camera));
        OV_FRAME_BUFFER* after = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &after, kForEver));
        EXPECT_NE(after, before);
        ExpectFailure(OVQBuf(camera, before), OV_STATUS_INVALID_PARAMETER,
                      "Invalid OV_FRAME_BUFFER* parameter");
        EXPECT_OV_OK(OVQBuf(camera, after));
        EXPECT_OV_OK(OVStreamOff(camera));
    });
    EXPECT_OV_OK(OVCloseDevice(camera));
}

}  // namespace
