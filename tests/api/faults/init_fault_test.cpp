// Faults of the initialisation.

#include "FaultMatrix.h"

namespace {

class InitFaultTest : public FaultMatrix {};

TEST_P(InitFaultTest, OneProducerThatFailsTakesAllDown) {
    Steps steps = Steps{{"GCInitLib", 1, Fate::Raised, ""},
                        {"GCGetInfo", 16, Fate::Swallowed, "a fact may be missing"},
                        {"TLOpen", 1, Fate::Raised, ""}} +
                  DescriptionSteps(Fate::Raised);
    if (IsGev()) {
        steps.push_back({"GCReadPort", 1, Fate::Swallowed, "the version may be missing"});
    }
    Run({.steps = steps,
         .prepare = [] {},
         .action = &OVInitLib,
         .check =
             [this](const Fault& fault) {
                 if (fault.expected.status != OV_STATUS_SUCCESS) {
                     ExpectClosed({"Library", "System"});
                 }
             },
         .again =
             [this] {
                 Init();
                 EXPECT_EQ(OVCloseDevice(nullptr), OV_STATUS_INVALID_HANDLE);
             }});
}

INSTANTIATE_TEST_SUITE_P(Producers, InitFaultTest, testing::ValuesIn(kAllKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
