// Stops beside fetches: every fetch leaves before its buffers go.

#include <atomic>

#include "GenTL/GenTL.h"
#include "Rounds.h"

namespace {

constexpr uint32_t kForEver = 60000;
constexpr int64_t kSizes[] = {16, 32, 48, 24};
constexpr uint64_t kNumbers[] = {5, 2, 4, 1};

/// One way to fetch frames and to return them.
struct FetchWay {
    const char* name;
    OV_STATUS (*fetch)(OV_DEV_HANDLE camera);
};

OV_STATUS CopyOne(OV_DEV_HANDLE camera) {
    std::vector<uint8_t> pixels(1 << 16);
    OV_FRAME_DATA data{};
    data.pImgBuf = pixels.data();
    return OVGetImage(camera, &data, kForEver);
}

OV_STATUS LendOne(OV_DEV_HANDLE camera) {
    OV_FRAME_BUFFER* frame = nullptr;
    const OV_STATUS status = OVDQBuf(camera, &frame, kForEver);
    // What comes of it depends on the stop; it never touches what the stop took.
    if (status == OV_STATUS_SUCCESS) {
        OVQBuf(camera, frame);
    }
    return status;
}

/// Two threads that want all frames may each have some of them and wait for those of
/// the other: none waits for long, and then gives back what it has.
OV_STATUS LendAll(OV_DEV_HANDLE camera) {
    constexpr uint32_t kNotLong = 50;
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 0;
    const OV_STATUS status = OVDQAllBufs(camera, frames, 8, &count, kNotLong);
    for (uint32_t i = 0; i < count; ++i) {
        OVQBuf(camera, frames[i]);
    }
    return status == OV_STATUS_TIMEOUT ? OV_STATUS_SUCCESS : status;
}

OV_STATUS FlushAndLendOne(OV_DEV_HANDLE camera) {
    EXPECT_OV_OK(OVFlushQueue(camera));
    return LendOne(camera);
}

constexpr FetchWay kWays[] = {
    {"Copy", &CopyOne}, {"Loan", &LendOne}, {"All", &LendAll}, {"Flush", &FlushAndLendOne}};

/// Fetches on a thread of its own until a stop ends it, and then says how.
class Fetcher {
public:
    Fetcher(OV_DEV_HANDLE camera, const FetchWay& way)
        : m_beside([this, camera, &way] {
              OV_STATUS status = way.fetch(camera);
              while (status == OV_STATUS_SUCCESS) {
                  ++m_frames;
                  status = way.fetch(camera);
              }
              return status;
          }) {}

    void WaitForFrames(unsigned frames) const {
        while (m_frames < frames) {
            std::this_thread::yield();
        }
    }

    /// Expects what a fetch beside a stop may come to: the wait was ended, or the
    /// stream was stopped already.
    void ExpectEnd() {
        const OV_STATUS status = m_beside.Join();
        EXPECT_TRUE(status == GenTL::GC_ERR_ABORT || status == OV_STATUS_INVALID_CALL) << status;
        if (status == OV_STATUS_INVALID_CALL) {
            EXPECT_NE(m_beside.GetText().find(" before start capture"), std::string::npos)
                << m_beside.GetText();
        }
    }

private:
    std::atomic<unsigned> m_frames{0};
    Beside m_beside;
};

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

INSTANTIATE_TEST_SUITE_P(Ways, FetchRoundsTest, testing::ValuesIn(kWays),
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
