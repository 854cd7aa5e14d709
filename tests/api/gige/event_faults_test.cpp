// Events over a network that loses, doubles and forges messages.

#include "GigeCameraTest.h"
#include "cameras/EventEar.h"
#include "support/FrameCounter.h"

namespace {

using OvSimulator::Count;

class GigeEventFaults : public GigeCameraTest {
protected:
    int64_t MessageNumber(const char* name) const {
        OV_NODE_HANDLE node = 0;
        EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_HOST_DEVICE, name, &node));
        int64_t value = 0;
        EXPECT_OV_OK(OvNodeGetInteger(node, &value));
        return value;
    }

    FrameCounter frames;
};

TEST_F(GigeEventFaults, LeaveEachEventToBeHeardOnceAndInItsOrder) {
    OvSimulator::Faults faults;
    faults.message = {.lost = 0.05, .doubled = 0.3, .ignored = 0.05, .foreign = 0.3};
    OpenFaulty(faults);
    EventEar ear(camera,
                 {"ExposureEnd", OV_FEATURE_EventExposureEnd, OV_FEATURE_EventExposureEndTimestamp,
                  OV_FEATURE_EventExposureEndFrameID});
    ear.Listen(OV_FEATURE_EventExposureEnd);
    Notify(camera, "ExposureEnd");
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &frames, &FrameCounter::OnFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    for (int64_t frame = 0; frame < 30; ++frame) {
        EXPECT_EQ(ear.Next().frame, frame);
    }
    EXPECT_OV_OK(OVStreamOff(camera));
    EXPECT_GT(Counted(Count::LostMessages), 0U);
    EXPECT_GT(MessageNumber("MessageRepeatCount"), 0);
    EXPECT_GT(MessageNumber("MessageForeignCount"), 0);
}

}  // namespace
