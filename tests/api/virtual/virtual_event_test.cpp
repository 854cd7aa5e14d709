// An event that only cameras without a network have: they know what the host has no room for.

#include "cameras/CameraTest.h"
#include "cameras/EventEar.h"

namespace {

constexpr EventIds kBlockDiscard = {"BlockDiscard", OV_FEATURE_EventBlockDiscard,
                                    OV_FEATURE_EventBlockDiscardTimestamp,
                                    OV_FEATURE_EventBlockDiscardFrameID};

using VirtualEvents = CameraTest;

TEST_F(VirtualEvents, TellOfFramesThatNobodyTakes) {
    EventEar ear(camera, kBlockDiscard);
    ear.Listen(kBlockDiscard.frame);
    Notify(camera, "BlockDiscard");
    ASSERT_OV_OK(OVStreamOn(camera));
    const EventData first = ear.Next();
    EXPECT_EQ(first.id, 0x9003);
    EXPECT_GT(first.frame, 0);
    EXPECT_EQ(ear.Next().frame, first.frame + 1);
    EXPECT_OV_OK(OVStreamOff(camera));
}

}  // namespace
