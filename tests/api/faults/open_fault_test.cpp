// Faults of the opening: what was opened before is closed again.

#include "FaultMatrix.h"
#include "UpdateSteps.h"

namespace {

constexpr const char* kAddress = "10.1.2.3";
constexpr int64_t kAddressNumber = 0x0A010203;

Steps OpenSteps(Fate fate, Fate blankId, const std::string& why = {}) {
    return Steps{{"IFOpenDevice", 1, fate, why}} + DescriptionSteps(fate, why) +
           Steps{{"DevGetPort", 1, fate, why}} + DescriptionSteps(fate, why) +
           Steps{{"DevGetNumDataStreams", 1, fate, why},
                 {"DevGetDataStreamID", 2, blankId, "the ID stays blank"},
                 {"DevOpenDataStream", 1, fate, why}} +
           DescriptionSteps(fate, why) +
           Steps{{"DSGetInfo", 1, Fate::Swallowed, "a producer may need no number of buffers"}};
}

class OpenFaultTest : public FaultMatrix {
protected:
    void RunOpen(const Steps& steps, const std::function<void()>& prepare,
                 const std::function<OV_STATUS()>& open) {
        Run({.steps = steps,
             .prepare =
                 [&] {
                     handle = nullptr;
                     prepare();
                 },
             .action = open,
             .check =
                 [this](const Fault& fault) {
                     if (fault.expected.status != OV_STATUS_SUCCESS) {
                         EXPECT_EQ(handle, nullptr);
                         ExpectClosed({"Device", "Stream", "Event"});
                     }
                 },
             .again =
                 [&] {
                     if (handle != nullptr) {
                         EXPECT_OV_OK(OVCloseDevice(handle));
                     }
                     EXPECT_OV_OK(open());
                     EXPECT_OV_OK(OVCloseDevice(handle));
                     ExpectClosed({"Device", "Stream", "Event"});
                 }});
    }

    OV_STATUS OpenBy(OV_OPEN_MODE mode, std::string content) {
        OV_OPEN_PARAM param{};
        param.pszContent = content.data();
        param.openMode = mode;
        param.accessMode = OV_ACCESS_CONTROL;
        return OVOpenDevice(&param, &handle);
    }

    void InitWithList() {
        Init();
        ASSERT_EQ(Update(), 1U);
    }

    OV_DEV_HANDLE handle = nullptr;
};

TEST_P(OpenFaultTest, OpenDeviceByIndexUndoesEverything) {
    RunOpen(
        OpenSteps(Fate::Raised, Fate::BlankStreamId), [this] { InitWithList(); },
        [this] { return OVOpenDeviceByIndex(1, &handle); });
}

TEST_P(OpenFaultTest, OpenDeviceByUserIdUndoesEverything) {
    RunOpen(
        OpenSteps(Fate::Raised, Fate::BlankStreamId),
        [this] {
            Faulty().SetDeviceText(0, 0, "UserID", "the one");
            InitWithList();
        },
        [this] { return OpenBy(OV_OPEN_USERID, "the one"); });
}

TEST_P(OpenFaultTest, OpenDeviceByAnUnknownAddressTriesElsewhere) {
    if (!IsGev()) {
        GTEST_SKIP() << "cameras of this producer have no address";
    }
    const Steps search = QuietUpdateSteps(true, 0);
    const Steps steps =
        search + OpenSteps(Fate::TriesElsewhere, Fate::TriesElsewhere, "no adapter is left");
    RunOpen(
        steps,
        [this] {
            // Searches of the adapters' own subnets don't find it.
            Faulty().SetDeviceNumber(0, 0, "IP", kAddressNumber);
            Faulty().SetForeign(0, 0, 1);
            Init();
            ASSERT_EQ(Update(), 0U);
        },
        [this] { return OpenBy(OV_OPEN_IP, kAddress); });
}

INSTANTIATE_TEST_SUITE_P(Producers, OpenFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
