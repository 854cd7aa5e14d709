// Frames over a network that loses packets.

#include <algorithm>

#include "GigeCameraTest.h"
#include "cameras/FrameTaking.h"

namespace {

using OvSimulator::Count;

class GigeStreamFaults : public GigeCameraTest {
protected:
    /// Opens a camera of which packets are lost, with frames of some two hundred.
    void OpenLossy(double share) {
        OvSimulator::Faults faults;
        faults.stream.lost = share;
        OpenFaulty(faults);
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 640));
        EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Height, 480));
        SetStream("StreamFindPacketSize", 0);
    }
    static size_t CountIncomplete(const std::vector<TakenFrame>& frames) {
        return static_cast<size_t>(std::count_if(
            frames.begin(), frames.end(),
            [](const TakenFrame& frame) { return frame.status == OV_FRAME_STATUS_INCOMPLETE; }));
    }
};

class GigeStreamFaultsWay : public GigeStreamFaults,
                            public testing::WithParamInterface<TakingWay> {};
INSTANTIATE_TEST_SUITE_P(Ways, GigeStreamFaultsWay, testing::ValuesIn(kTakingWays),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(GigeStreamFaultsWay, AreMendedByPacketsThatComeAgain) {
    OpenLossy(0.01);
    const std::vector<TakenFrame> frames = GetParam().take(camera, 20);
    EXPECT_EQ(CountIncomplete(frames), 0U);
    EXPECT_GT(Counted(Count::LostPackets), 20U);
    EXPECT_GT(StreamNumber("StreamPacketAnsweredCount"), 20);
}

TEST_F(GigeStreamFaults, AreMarkedWhereNothingIsAskedForAgain) {
    OpenLossy(0.002);
    SetStream("StreamResend", 0);
    const std::vector<TakenFrame> frames = kTakingWays[1].take(camera, 40);
    const size_t incomplete = CountIncomplete(frames);
    EXPECT_GT(incomplete, 0U);
    EXPECT_LT(incomplete, frames.size());
    EXPECT_LE(incomplete, Counted(Count::DamagedBlocks));
    EXPECT_EQ(Counted(Count::ResendCommands), 0U);
}

TEST_F(GigeStreamFaults, AreLeftOutWhereTheUserWantsThat) {
    OpenLossy(0.002);
    SetStream("StreamResend", 0);
    SetStream("StreamDeliverIncomplete", 0);
    const std::vector<TakenFrame> frames = kTakingWays[2].take(camera, 20);
    EXPECT_EQ(frames.size(), 20U);
    EXPECT_EQ(CountIncomplete(frames), 0U);
}

}  // namespace
