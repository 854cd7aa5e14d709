// Events of a camera, from its sensor to the application's callback.

#include "CameraTest.h"
#include "EventEar.h"
#include "support/FrameCounter.h"

namespace {

constexpr EventIds kExposureEnd = {"ExposureEnd", OV_FEATURE_EventExposureEnd,
                                   OV_FEATURE_EventExposureEndTimestamp,
                                   OV_FEATURE_EventExposureEndFrameID};
constexpr EventIds kOvertrigger = {"FrameStartOvertrigger", OV_FEATURE_EventFrameStartOvertrigger,
                                   OV_FEATURE_EventFrameStartOvertriggerTimestamp,
                                   OV_FEATURE_EventFrameStartOvertriggerFrameID};

class CameraEvents : public CameraTest {
protected:
    void StartWithCallback() {
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &frames, &FrameCounter::OnFrame));
        ASSERT_OV_OK(OVStreamOn(camera));
    }

    FrameCounter frames;
};

/// Each feature of an event reports the event.
class CameraEventFeature : public CameraEvents,
                           public ::testing::WithParamInterface<OV_FEATURE_ID EventIds::*> {};
INSTANTIATE_TEST_SUITE_P(Features, CameraEventFeature,
                         ::testing::Values(&EventIds::id, &EventIds::timestamp, &EventIds::frame));

TEST_P(CameraEventFeature, TellsOfEachExposure) {
    EventEar counter(camera, kExposureEnd);
    counter.Listen(kExposureEnd.*GetParam());
    Notify(camera, "ExposureEnd");
    StartWithCallback();
    EventData before;
    for (int i = 0; i < 3; ++i) {
        const EventData data = counter.Next();
        EXPECT_EQ(data.feature, kExposureEnd.*GetParam());
        EXPECT_EQ(data.id, 0x9001);
        EXPECT_EQ(data.frame, i == 0 ? data.frame : before.frame + 1);
        EXPECT_GT(data.timestamp, before.timestamp);
        before = data;
    }
    EXPECT_OV_OK(OVStreamOff(camera));
}

TEST_F(CameraEvents, ComesOnlyWhenItsNotificationIsOn) {
    EventEar exposures(camera, kExposureEnd);
    EventEar triggers(camera, kOvertrigger);
    exposures.Listen(kExposureEnd.id);
    triggers.Listen(kOvertrigger.id);
    Notify(camera, "FrameStartOvertrigger");
    StartWithCallback();
    frames.WaitFor(3);
    EXPECT_OV_OK(OVStreamOff(camera));
    uint32_t waiting = 1;
    EXPECT_OV_OK(OVGetEventNumInQueue(camera, &waiting));
    EXPECT_EQ(waiting, 0U);
    EXPECT_EQ(exposures.GetCount(), 0U);
    EXPECT_EQ(triggers.GetCount(), 0U);
}

TEST_F(CameraEvents, TellsOfATriggerThatIsMissed) {
    EventEar counter(camera, kOvertrigger);
    counter.Listen(kOvertrigger.id);
    Notify(camera, "FrameStartOvertrigger");
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

TEST_F(CameraEvents, HasNoDataBeforeTheFirst) {
    int64_t value = 0;
    EXPECT_EQ(OVGetInt(camera, kExposureEnd.frame, &value), OV_STATUS_NOT_IMPLEMENTED);
    EventEar counter(camera, kExposureEnd);
    counter.Listen(kExposureEnd.id);
    EXPECT_EQ(OVGetInt(camera, kExposureEnd.frame, &value), OV_STATUS_INVALID_ACCESS);
}

}  // namespace
