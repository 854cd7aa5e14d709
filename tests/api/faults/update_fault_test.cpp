// Faults of the two list updates: none of them is a failure of the update, and
// each leaves the lists as they were.

#include "FaultMatrix.h"
#include "UpdateSteps.h"

namespace {

using UpdateCall = OV_STATUS (*)(uint32_t*, uint32_t);

class UpdateFaultTest : public FaultMatrix {
protected:
    static unsigned CountOf(const Fault& fault, unsigned old, unsigned renewed, bool isLater) {
        switch (fault.step.fate) {
            case Fate::SwallowedListUntold:
                return old;
            case Fate::SwallowedListLater:
                return isLater ? renewed : old;
            default:
                return renewed;
        }
    }

    /// @param old      cameras before the update
    /// @param renewed  cameras after it
    void RunUpdate(const Steps& steps, UpdateCall update, const std::function<void()>& prepare,
                   unsigned old, unsigned renewed) {
        uint32_t count = 0;
        Fault last;
        Run({.steps = steps,
             .prepare = prepare,
             .action =
                 [&] {
                     count = 0xFFFFFFFF;
                     return update(&count, 1000);
                 },
             .check =
                 [&](const Fault& fault) {
                     last = fault;
                     EXPECT_EQ(count, CountOf(fault, old, renewed, false));
                 },
             .again =
                 [&] {
                     EXPECT_OV_OK(update(&count, 1000));
                     EXPECT_EQ(count, CountOf(last, old, renewed, true));
                 }});
    }
};

TEST_P(UpdateFaultTest, TheFirstUpdateSucceedsWithWhatIsLeft) {
    const Steps steps =
        InterfaceListSteps(IsGev()) + SearchModeSteps(IsGev()) + DeviceListSteps(IsGev(), 1);
    RunUpdate(
        steps, &OVUpdateDeviceList, [this] { Init(); }, 0, 1);
}

TEST_P(UpdateFaultTest, TheFirstUpdateOfAllSucceedsWithWhatIsLeft) {
    const Steps steps =
        InterfaceListSteps(IsGev()) + SearchModeSteps(IsGev()) + DeviceListSteps(IsGev(), 1);
    RunUpdate(
        steps, &OVUpdateAllDeviceList, [this] { Init(); }, 0, 1);
}

TEST_P(UpdateFaultTest, AnUpdateWithAnotherCameraKeepsTheOldListOnAFault) {
    const Steps steps =
        QuietInterfaceListSteps(IsGev()) + SearchModeSteps(IsGev()) + DeviceListSteps(IsGev(), 2);
    RunUpdate(
        steps, &OVUpdateAllDeviceList,
        [this] {
            Init();
            ASSERT_EQ(Update(), 1U);
            Faulty().SetDeviceCount(0, 2);
        },
        1, 2);
}

TEST_P(UpdateFaultTest, AQuietUpdateKeepsTheListOnAFault) {
    RunUpdate(
        QuietUpdateSteps(IsGev(), 1), &OVUpdateDeviceList,
        [this] {
            Init();
            ASSERT_EQ(Update(), 1U);
        },
        1, 1);
}

INSTANTIATE_TEST_SUITE_P(Producers, UpdateFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
