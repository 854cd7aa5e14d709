// Events of a camera, from its sensor to the application's callback.

#include "VirtualApiTest.h"

namespace {

constexpr EventIds kExposureEnd = {"ExposureEnd", OV_FEATURE_EventExposureEnd,
                                   OV_FEATURE_EventExposureEndTimestamp,
                                   OV_FEATURE_EventExposureEndFrameID};
constexpr EventIds kOvertrigger = {"FrameStartOvertrigger", OV_FEATURE_EventFrameStartOvertrigger,
                                   OV_FEATURE_EventFrameStartOvertriggerTimestamp,
                                   OV_FEATURE_EventFrameStartOvertriggerFrameID};
constexpr EventIds kBlockDiscard = {"BlockDiscard", OV_FEATURE_EventBlockDiscard,
                                    OV_FEATURE_EventBlockDiscardTimestamp,
                                    OV_FEATURE_EventBlockDiscardFrameID};

class VirtualEventTest : public VirtualApiTest {
protected:
    void Listen(EventEar& counter, OV_FEATURE_ID feature) const {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(
            OVRegisterFeatureCallback(camera, &counter, &EventEar::OnEvent, feature, &handle));
    }
    void StartWithCallback() {
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &frames, &FrameCounter::OnFrame));
        ASSERT_OV_OK(OVStreamOn(camera));
    }

    FrameCounter frames;
};

/// Each feature of an event reports the event.
class VirtualEventFeature : public VirtualEventTest,
                            public ::testing::WithParamInterface<OV_FEATURE_ID EventIds::*> {};
INSTANTIATE_TEST_SUITE_P(Features, VirtualEventFeature,
                         ::testing::Values(&EventIds::id, &EventIds::timestamp, &EventIds::frame));

TEST_P(VirtualEventFeature, TellsOfEachExposure) {
    EventEar counter(camera, kExposureEnd);
    Listen(counter, kExposureEnd.*GetParam());
    Notify("ExposureEnd");
    StartWithCallback();
    int64_t before = 0;
    for (int64_t frame = 0; frame < 3; ++frame) {
        const EventData data = counter.Next();
        EXPECT_EQ(data.feature, kExposureEnd.*GetParam());
        EXPECT_EQ(data.id, 0x9001);
        EXPECT_EQ(data.frame, frame);
        EXPECT_GT(data.timestamp, before);
        before = data.timestamp;
    }
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(VirtualEventTest, ComesOnlyWhenItsNotificationIsOn) {
    EventEar exposures(camera, kExposureEnd);
    EventEar triggers(camera, kOvertrigger);
    Listen(exposures, kExposureEnd.id);
    Listen(triggers, kOvertrigger.id);
    Notify("FrameStartOvertrigger");
    StartWithCallback();
    frames.WaitFor(3);
    EXPECT_OV_OK(OVStreamOff(camera));
    uint32_t waiting = 1;
    EXPECT_OV_OK(OVGetEventNumInQueue(camera, &waiting));
    EXPECT_EQ(waiting, 0U);
    EXPECT_EQ(exposures.GetCount(), 0U);
    EXPECT_EQ(triggers.GetCount(), 0U);
}

TEST_F(VirtualEventTest, TellsOfATriggerThatIsMissed) {
    EventEar counter(camera, kOvertrigger);
    Listen(counter, kOvertrigger.id);
    Notify("FrameStartOvertrigger");
    SetEntry(camera, OV_FEATURE_TriggerMode, "On");
    ASSERT_OV_OK(OVSetFloat(camera, OV_FEATURE_ExposureTime, 500000));
    StartWithCallback();
    while (counter.GetCount() == 0) {
        ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
    }
    const EventData data = counter.Next();
    EXPECT_EQ(data.id, 0x9002);
    EXPECT_GE(data.frame, 0);
    frames.WaitFor(1);
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(VirtualEventTest, TellsOfFramesThatNobodyTakes) {
    EventEar counter(camera, kBlockDiscard);
    Listen(counter, kBlockDiscard.frame);
    Notify("BlockDiscard");
    ASSERT_OV_OK(OVStreamOn(camera));
    const EventData first = counter.Next();
    EXPECT_EQ(first.id, 0x9003);
    EXPECT_GT(first.frame, 0);
    EXPECT_EQ(counter.Next().frame, first.frame + 1);
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(VirtualEventTest, HasNoDataBeforeTheFirst) {
    int64_t value = 0;
    EXPECT_EQ(OVGetInt(camera, kExposureEnd.frame, &value), OV_STATUS_NOT_IMPLEMENTED);
    EventEar counter(camera, kExposureEnd);
    Listen(counter, kExposureEnd.id);
    EXPECT_EQ(OVGetInt(camera, kExposureEnd.frame, &value), OV_STATUS_INVALID_ACCESS);
}

}  // namespace
