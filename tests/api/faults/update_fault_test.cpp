// Faults of the two list updates: none of them is a failure of the update, and
// each leaves the lists as they were.

#include "FaultMatrix.h"

namespace {

using UpdateCall = OV_STATUS (*)(uint32_t*, uint32_t);

class UpdateFaultTest : public FaultMatrix {
protected:
    /// The system module's part, with the opening of a new interface.
    Steps InterfaceListSteps() const {
        const char* const untold = "the interface is left out until the producer tells a change";
        const auto lost = Fate::SwallowedListUntold;
        Steps steps{
            {"TLUpdateInterfaceList", 1, Fate::SwallowedListLater, "an update may fail"},
            {"TLGetNumInterfaces", 1, lost, "an update may fail"},
            {"TLGetInterfaceID", 2, lost, "nothing opens by a blank ID"},
            {"TLGetInterfaceInfo", 4, Fate::Swallowed, "a fact may be missing"},
            {"TLGetInterfaceInfo", 2, IsGev() ? lost : Fate::Swallowed,
             "without its type it is no GigE Vision interface"},
        };
        if (IsGev()) {
            steps = steps + Steps{
                                {"GCReadPort", 2, lost, "the records don't match"},
                                {"GCWritePort", 1, lost, "the records don't match"},
                                {"GCReadPort", 12, Fate::Swallowed, "an address may be missing"},
                            };
        }
        steps = steps + Steps{{"TLOpenInterface", 1, lost, untold}} +
                DescriptionSteps(lost, untold) +
                Steps{{"GCReadPort", 1, Fate::Swallowed, "the description may be missing"}};
        if (IsGev()) {
            steps.push_back({"GCReadPort", 5, Fate::Swallowed, "an address may be missing"});
        }
        return steps;
    }

    Steps SearchModeSteps() const {
        return IsGev() ? Steps{{"GCWritePort", 1, Fate::Swallowed, "the mode is a wish"}} : Steps{};
    }

    /// An interface's part, with `count` cameras.
    Steps DeviceListSteps(unsigned count) const {
        const auto lost = Fate::SwallowedListUntold;
        const char* const mismatch = "the records don't match";
        Steps steps{{"IFUpdateDeviceList", 1, Fate::SwallowedListLater, "an update may fail"},
                    {"IFGetNumDevices", 1, lost, "an update may fail"}};
        for (unsigned i = 0; i < count; ++i) {
            steps =
                steps + Steps{{"IFGetDeviceID", 2, Fate::Swallowed, "the camera's ID may be blank"},
                              {"IFGetDeviceInfo", 11, Fate::Swallowed, "a fact may be missing"}};
        }
        steps.push_back({"GCReadPort", 1, lost, mismatch});
        for (unsigned i = 0; i < count; ++i) {
            steps = steps + Steps{{"GCReadPort", 1, lost, mismatch},
                                  {"GCWritePort", 1, lost, mismatch},
                                  {"GCReadPort", 9, Fate::Swallowed, "a text may be missing"}};
        }
        if (!IsGev()) {
            return steps;
        }
        steps.push_back({"GCReadPort", 1, lost, mismatch});
        for (unsigned i = 0; i < count; ++i) {
            steps = steps + Steps{{"GCReadPort", 1, lost, mismatch},
                                  {"GCWritePort", 1, lost, mismatch},
                                  {"GCReadPort", 12, Fate::Swallowed, "an address may be missing"}};
        }
        return steps;
    }

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
    const Steps steps = InterfaceListSteps() + SearchModeSteps() + DeviceListSteps(1);
    RunUpdate(
        steps, &OVUpdateDeviceList, [this] { Init(); }, 0, 1);
}

TEST_P(UpdateFaultTest, TheFirstUpdateOfAllSucceedsWithWhatIsLeft) {
    const Steps steps = InterfaceListSteps() + SearchModeSteps() + DeviceListSteps(1);
    RunUpdate(
        steps, &OVUpdateAllDeviceList, [this] { Init(); }, 0, 1);
}

TEST_P(UpdateFaultTest, AnUpdateWithAnotherCameraKeepsTheOldListOnAFault) {
    const Steps steps =
        Steps{{"TLUpdateInterfaceList", 1, Fate::Swallowed, "nothing changed there"}} +
        SearchModeSteps() + DeviceListSteps(2);
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
    const Steps steps =
        Steps{{"TLUpdateInterfaceList", 1, Fate::Swallowed, "nothing changed there"}} +
        SearchModeSteps() +
        Steps{{"IFUpdateDeviceList", 1, Fate::Swallowed, "nothing changed there"}};
    RunUpdate(
        steps, &OVUpdateDeviceList,
        [this] {
            Init();
            ASSERT_EQ(Update(), 1U);
        },
        1, 1);
}

INSTANTIATE_TEST_SUITE_P(Producers, UpdateFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
