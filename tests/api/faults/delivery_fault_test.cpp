// Faults on the delivery thread: each costs at most its own frame, and the thread
// goes on.

#include "FaultMatrix.h"
#include "support/FrameCounter.h"

namespace {

constexpr uint64_t kFrames = 3;

class DeliveryFaultTest : public FaultMatrix {
protected:
    void ExpectFramesDespite(const Step& step, unsigned nth, int32_t code) {
        SCOPED_TRACE(step.call + " " + std::to_string(nth) + " with " + std::to_string(code));
        CountCase();
        EXPECT_OV_OK(OVStreamOn(camera));
        Faulty().FailCall(step.call.c_str(), nth, code);
        const uint64_t before = counter.GetCount();
        Faulty().Trigger(0, 0, kFrames);
        counter.WaitFor(before + kFrames);
        EXPECT_OV_OK(OVStreamOff(camera));
        EXPECT_EQ(counter.GetCount(), before + kFrames);
        EXPECT_EQ(LastError::Get().status, OV_STATUS_SUCCESS) << "of another thread";
    }

    FrameCounter counter;
    OV_DEV_HANDLE camera = nullptr;
};

TEST_P(DeliveryFaultTest, TheThreadOutlivesEachFault) {
    const Steps steps = {
        {"EventGetData", 1, Fate::Swallowed, "the frame waits for the next look"},
        {"DSGetBufferInfo", FactsOfAFirstFrame(), Fate::Swallowed, "a fact may be missing"},
        {"DSQueueBuffer", 1, Fate::Swallowed, "four buffers are left"},
    };
    Init();
    ASSERT_EQ(Update(), 1U);
    camera = Open();
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
    for (const Step& step : steps) {
        for (unsigned nth = 1; nth <= step.count; ++nth) {
            for (const int32_t code : kFaultCodes) {
                ExpectFramesDespite(step, nth, code);
            }
        }
    }
    EXPECT_OV_OK(OVCloseDevice(camera));
    ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
}

INSTANTIATE_TEST_SUITE_P(Producers, DeliveryFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
