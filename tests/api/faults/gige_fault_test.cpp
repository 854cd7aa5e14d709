// Faults of the calls that configure GigE Vision cameras: the search passes its
// faults over, the call itself raises.

#include <algorithm>

#include "FaultMatrix.h"
#include "UpdateSteps.h"

namespace {

constexpr const char* kMac = "00-AA-BB-CC-00-64";
constexpr const char* kIp = "10.1.2.3";
constexpr const char* kMask = "255.255.255.0";
constexpr const char* kGateway = "10.1.2.254";

/// One of the three calls by MAC address.
struct GigECall {
    const char* extension;  ///< the producer's function
    OV_STATUS (*call)();
};
constexpr GigECall kCalls[] = {
    {"IFIpConfiguration",
     [] {
         return OVGigEIpConfiguration(kMac, OV_IP_CONFIGURE_PERSISTENT_LLA, kIp, kMask, kGateway,
                                      "user");
     }},
    {"IFForceIp", [] { return OVGigEForceIp(kMac, kIp, kMask, kGateway); }},
    {"IFResetDevice", [] { return OVGigEResetDevice(kMac, OV_RESET_MODE_1); }},
};

class GigEFaultTest : public FaultMatrix {
protected:
    void InitWithList() {
        Init();
        ASSERT_EQ(Update(), 1U);
    }

    void RunOn(const GigECall& gige, const Steps& search, const std::function<void()>& prepare) {
        Fault last;
        Run({.steps = search + Steps{{gige.extension, 1, Fate::Raised, ""}},
             .prepare = prepare,
             .action = gige.call,
             .check =
                 [&](const Fault& fault) {
                     last = fault;
                     EXPECT_EQ(Faulty().SuccessCount(gige.extension),
                               fault.expected.status == OV_STATUS_SUCCESS ? 1U : 0U);
                 },
             .again =
                 [&] {
                     // A camera whose news were lost comes with the next session.
                     if (last.expected.status == OV_STATUS_NOT_FOUND_DEVICE) {
                         CloseLib();
                         Init();
                     }
                     EXPECT_OV_OK(gige.call());
                 }});
    }
};

TEST_P(GigEFaultTest, AQuietSearchPassesItsFaultsOver) {
    for (const GigECall& gige : kCalls) {
        SCOPED_TRACE(gige.extension);
        RunOn(gige, QuietUpdateSteps(true, 1), [this] { InitWithList(); });
    }
}

/// What a first search loses of the camera, it doesn't find it by.
Steps FirstSearchSteps() {
    Steps search = InterfaceListSteps(true) + SearchModeSteps(true) + DeviceListSteps(true, 1);
    for (Step& step : search) {
        const bool isListLost =
            step.fate == Fate::SwallowedListUntold || step.fate == Fate::SwallowedListLater;
        if (isListLost || step.call == "IFGetDeviceID") {
            step.fate = Fate::CameraNotFound;
        }
    }
    return search;
}

/// Splits the last step of that function, so that `count` calls behind the first
/// `skipped` leave the camera without its MAC address.
void LoseMacAt(Steps& steps, const std::string& call, unsigned skipped, unsigned count) {
    const auto last = std::find_if(steps.rbegin(), steps.rend(),
                                   [&call](const Step& step) { return step.call == call; });
    Step lost{call, count, Fate::CameraNotFound, "the camera's MAC address is missing"};
    Step rest = *last;
    rest.count -= skipped + count;
    last->count = skipped;
    steps.insert(last.base(), {lost, rest});
}

TEST_P(GigEFaultTest, AFirstSearchFindsNoCameraThatItLost) {
    Steps search = FirstSearchSteps();
    // The type makes it a GigE Vision camera; the address is the first of four.
    LoseMacAt(search, "IFGetDeviceInfo", 6, 2);
    LoseMacAt(search, "GCReadPort", 0, 4);
    RunOn(kCalls[1], search, [this] { Init(); });
}

TEST_P(GigEFaultTest, ThePersistentAddressIsReadWholeOrNotAtAll) {
    OV_DEV_HANDLE camera = nullptr;
    char ip[16] = "";
    char mask[16] = "";
    char gateway[16] = "";
    const auto read = [&] {
        size_t sizes[] = {sizeof ip, sizeof mask, sizeof gateway};
        return OVGetDevicePersistentIpAddress(camera, ip, &sizes[0], mask, &sizes[1], gateway,
                                              &sizes[2]);
    };
    Run({.steps = {{"GCReadPort", 3, Fate::Raised, ""}},
         .prepare =
             [&] {
                 InitWithList();
                 camera = Open();
                 ip[0] = mask[0] = gateway[0] = '\0';
             },
         .action = read,
         .check =
             [&](const Fault&) {
                 EXPECT_STREQ(ip, "");
                 EXPECT_STREQ(mask, "");
                 EXPECT_STREQ(gateway, "");
             },
         .again = [&] { EXPECT_OV_OK(read()); }});
}

TEST_P(GigEFaultTest, ThePersistentAddressIsWrittenUpToTheFault) {
    OV_DEV_HANDLE camera = nullptr;
    const auto write = [&] { return OVSetDevicePersistentIpAddress(camera, kIp, kMask, kGateway); };
    Run({.steps = {{"GCWritePort", 3, Fate::Raised, ""}},
         .prepare =
             [&] {
                 InitWithList();
                 camera = Open();
             },
         .action = write,
         .check =
             [&](const Fault& fault) {
                 uint32_t written[3] = {};
                 Faulty().ReadMemory(0, 0, 0x540, written, sizeof written);
                 for (unsigned i = 0; i < std::size(written); ++i) {
                     EXPECT_EQ(written[i] != 0, i + 1 < fault.nth) << i;
                 }
             },
         .again = [&] { EXPECT_OV_OK(write()); }});
}

INSTANTIATE_TEST_SUITE_P(Producers, GigEFaultTest, testing::Values(kAllKinds[0]),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
