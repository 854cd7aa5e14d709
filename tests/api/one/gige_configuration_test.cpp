// Cameras that are configured by their MAC address, without being opened.

#include <thread>

#include "GigETest.h"

using namespace gige;

namespace {

// What reaches the producer.

TEST_F(GigETest, ACameraIsConfiguredWithoutASearchBefore) {
    Init();
    ASSERT_OV_OK(OVGigEIpConfiguration(kMac, 7, "10.0.0.5", "255.0.0.0", "10.0.0.1", "left"));
    EXPECT_EQ(producer.ExtensionCall(),
              "IFIpConfiguration|TestCamera0_0|7|10.0.0.5|255.0.0.0|10.0.0.1|left");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 1U);
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 0U);
}

TEST_F(GigETest, PersistentModesPassTheAddressesOn) {
    Init();
    for (const OV_IP_CONFIGURE_MODE mode : {5, 7}) {
        ASSERT_OV_OK(OVGigEIpConfiguration(kMac, mode, "1.2.3", "no mask", "", ""));
        EXPECT_EQ(producer.ExtensionCall(),
                  "IFIpConfiguration|TestCamera0_0|" + std::to_string(mode) + "|1.2.3|no mask||");
    }
}

TEST_F(GigETest, OtherModesSendEmptyAddressesWhateverIsGiven) {
    Init();
    for (const OV_IP_CONFIGURE_MODE mode : {4, 6}) {
        const std::string sent =
            "IFIpConfiguration|TestCamera0_0|" + std::to_string(mode) + "||||id";
        ASSERT_OV_OK(OVGigEIpConfiguration(kMac, mode, nullptr, nullptr, nullptr, "id"));
        EXPECT_EQ(producer.ExtensionCall(), sent);
        ASSERT_OV_OK(OVGigEIpConfiguration(kMac, mode, "1.2.3.4", "5.6.7.8", "9.9.9.9", "id"));
        EXPECT_EQ(producer.ExtensionCall(), sent);
    }
}

TEST_F(GigETest, ANullUserIdIsAnEmptyOne) {
    Init();
    ASSERT_OV_OK(OVGigEIpConfiguration(kMac, 6, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(producer.ExtensionCall(), "IFIpConfiguration|TestCamera0_0|6||||");
}

TEST_F(GigETest, ForcedAddressesAreTheProducersToJudge) {
    Init();
    ASSERT_OV_OK(OVGigEForceIp(kMac, "999.1", "", "none"));
    EXPECT_EQ(producer.ExtensionCall(), "IFForceIp|TestCamera0_0|999.1||none");
}

TEST_F(GigETest, TheResetModeReachesTheProducer) {
    Init();
    for (const OV_RESET_MODE mode : {OV_RESET_MODE_1, OV_RESET_MODE_2}) {
        ASSERT_OV_OK(OVGigEResetDevice(kMac, mode));
        EXPECT_EQ(producer.ExtensionCall(), "IFResetDevice|TestCamera0_0|" + std::to_string(mode));
    }
}

TEST_F(GigETest, TheCameraIsFoundOnAnyInterface) {
    producer.SetInterfaceCount(2);
    producer.SetDeviceCount(1, 2);
    producer.SetDeviceNumber(1, 1, "MAC", 0x0A0B0C0D0E0F);
    Init();
    ASSERT_OV_OK(OVGigEResetDevice("0A-0B-0C-0D-0E-0F", 1));
    EXPECT_EQ(producer.ExtensionCall(), "IFResetDevice|TestCamera1_1|1");
}

TEST_F(GigETest, ACameraOnTwoInterfacesIsReachedThroughTheFirst) {
    producer.SetInterfaceCount(2);
    producer.SetDeviceNumber(1, 0, "MAC", 0x00AABBCC0064);
    Init();
    ASSERT_OV_OK(OVGigEResetDevice(kMac, 1));
    EXPECT_EQ(producer.ExtensionCall(), "IFResetDevice|TestCamera0_0|1");
}

TEST_F(GigETest, AnOpenCameraIsConfiguredTooAndStaysOpen) {
    Init();
    ASSERT_EQ(Update(), 1U);
    OV_DEV_HANDLE const camera = Open();
    ASSERT_OV_OK(OVGigEForceIp(kMac, "1.2.3.4", "5.6.7.8", "9.9.9.9"));
    int64_t width = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &width));
}

// The search.

TEST_F(GigETest, TheSearchGoesThroughTheWholeNetworkAndLeavesTheList) {
    Init();
    ASSERT_EQ(Update(), 1U);
    const int64_t local = producer.SearchMode(0);
    producer.SetDeviceCount(0, 2);
    ASSERT_OV_OK(OVGigEResetDevice("00-AA-BB-CC-00-65", 1));
    EXPECT_NE(producer.SearchMode(0), local);
    size_t size = 0;
    ASSERT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
    EXPECT_EQ(size, sizeof(OV_DEVICE_BASE_INFO)) << "the new camera isn't listed";
}

TEST_F(GigETest, ALowerCaseMacIsNotFound) {
    Init();
    ExpectFailure(OVGigEResetDevice("00-aa-bb-cc-00-64", 1), OV_STATUS_NOT_FOUND_DEVICE,
                  "Not Found Device");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 1U)
        << "it was searched for before it was given up";
}

TEST_F(GigETest, OnlyCamerasOfGigEVisionAreSearchedFor) {
    producer.SetProducerText("TLType", "U3V");
    Init();
    ExpectFailure(OVGigEResetDevice(kMac, 1), OV_STATUS_NOT_FOUND_DEVICE, "Not Found Device");
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 0U);
}

TEST_F(GigETest, ACameraThatVanishedIsNotFound) {
    Init();
    ASSERT_EQ(Update(), 1U);
    producer.LoseDevice(0, 0);
    ExpectFailure(OVGigEForceIp(kMac, "", "", ""), OV_STATUS_NOT_FOUND_DEVICE, "Not Found Device");
    producer.ReturnDevice(0, 0);
    EXPECT_OV_OK(OVGigEForceIp(kMac, "", "", ""));
}

TEST_F(GigETest, ASearchThatFailsGoesOnWithTheCamerasOfTheLast) {
    Init();
    ASSERT_EQ(Update(), 1U);
    producer.FailCall("IFUpdateDeviceList", 1, -1010);
    EXPECT_OV_OK(OVGigEResetDevice(kMac, 1));
}

TEST_F(GigETest, AResetOfAnUnknownModeFailsBeforeTheSearch) {
    Init();
    for (const OV_RESET_MODE mode : {-1, 0, 3}) {
        ExpectFailure(OVGigEResetDevice(kMac, mode), OV_STATUS_INVALID_PARAMETER, "Invalid Param");
    }
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 0U);
}

TEST_F(GigETest, ModesOutsideFourToSevenAreUndefined) {
    Init();
    for (const OV_IP_CONFIGURE_MODE mode : {-1, 0, 1, 2, 3, 8, 12}) {
        ExpectFailure(OVGigEIpConfiguration(kMac, mode, nullptr, nullptr, nullptr, nullptr),
                      OV_STATUS_INVALID_PARAMETER, "Ip configure mode is undefined");
    }
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), 0U);
}

TEST_F(GigETest, PersistentModesNeedAllThreeAddresses) {
    Init();
    for (const OV_IP_CONFIGURE_MODE mode : {5, 7}) {
        for (size_t missing = 0; missing < 3; ++missing) {
            const char* texts[] = {"10.0.0.5", "255.0.0.0", "10.0.0.1"};
            texts[missing] = nullptr;
            ExpectFailure(OVGigEIpConfiguration(kMac, mode, texts[0], texts[1], texts[2], "id"),
                          OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
        }
    }
    EXPECT_EQ(producer.CallCount("IFIpConfiguration"), 0U);
}

TEST_F(GigETest, CallsOnSeveralThreadsAllReachTheProducer) {
    constexpr int kCalls = 20;
    Init();
    const auto reset = [] {
        for (int i = 0; i < kCalls; ++i) {
            EXPECT_OV_OK(OVGigEResetDevice(kMac, 1));
        }
    };
    std::thread other(reset);
    reset();
    other.join();
    EXPECT_EQ(producer.SuccessCount("IFResetDevice"), 2U * kCalls);
}

// Check orders.

struct ConfigurationArguments {
    const char* mac = kMac;
    int32_t mode = 1;
    const char* ip = "10.0.0.5";
    const char* mask = "255.0.0.0";
    const char* gateway = "10.0.0.1";
};

struct ConfigurationCall {
    const char* name;
    /// I initialised, M address of the camera, O mode, A address, K mask,
    /// G gateway, F camera found, P the producer.
    const char* order;
    OV_STATUS (*run)(const ConfigurationArguments& a);
    const char* beneath;
    int32_t mode;
    int32_t badMode;
    const char* modeMessage;
};

const ConfigurationCall kConfigurationCalls[] = {
    {"OVGigEIpConfiguration", "IMOAKGFP",
     [](const ConfigurationArguments& a) {
         return OVGigEIpConfiguration(a.mac, a.mode, a.ip, a.mask, a.gateway, "id");
     },
     "IFIpConfiguration", 5, 3, "Ip configure mode is undefined"},
    {"OVGigEIpConfigurationWithoutAddress", "IMOFP",
     [](const ConfigurationArguments& a) {
         return OVGigEIpConfiguration(a.mac, a.mode, nullptr, nullptr, nullptr, nullptr);
     },
     "IFIpConfiguration", 6, 8, "Ip configure mode is undefined"},
    {"OVGigEForceIp", "IMAKGFP",
     [](const ConfigurationArguments& a) { return OVGigEForceIp(a.mac, a.ip, a.mask, a.gateway); },
     "IFForceIp", 0, 0, ""},
    {"OVGigEResetDevice", "IMOFP",
     [](const ConfigurationArguments& a) { return OVGigEResetDevice(a.mac, a.mode); },
     "IFResetDevice", 1, 3, "Invalid Param"},
};

class GigEChecks : public CheckOrderTest<ConfigurationCall, ConfigurationArguments> {
protected:
    ConfigurationArguments Right() override {
        StartAnew();
        ConfigurationArguments arguments;
        arguments.mode = GetParam().mode;
        return arguments;
    }

    void Spoil(ConfigurationArguments& arguments, char check) override {
        switch (check) {
            case 'I':
                OVCloseLib();
                break;
            case 'M':
                arguments.mac = nullptr;
                break;
            case 'O':
                arguments.mode = GetParam().badMode;
                break;
            case 'A':
                arguments.ip = nullptr;
                break;
            case 'K':
                arguments.mask = nullptr;
                break;
            case 'G':
                arguments.gateway = nullptr;
                break;
            case 'F':
                producer.LoseDevice(0, 0);
                break;
            default:
                producer.FailCall(GetParam().beneath, 0, kPlanned);
        }
    }

    Refusal RefusalOf(char check) const override {
        switch (check) {
            case 'I':
                return {OV_STATUS_NOT_INIT_API, "Not init API"};
            case 'O':
                return {OV_STATUS_INVALID_PARAMETER, GetParam().modeMessage};
            case 'F':
                return {OV_STATUS_NOT_FOUND_DEVICE, "Not Found Device"};
            case 'P':
                return {kPlanned, std::string("Planned failure of ") + GetParam().beneath};
            default:
                return {OV_STATUS_INVALID_PARAMETER, "NULL Pointer"};
        }
    }

private:
    static constexpr int32_t kPlanned = -1015;
};

TEST_P(GigEChecks, PassWhenAllIsRight) {
    EXPECT_OV_OK(GetParam().run(Right()));
}

TEST_P(GigEChecks, TheFirstOfTwoBadArgumentsDecides) {
    ExpectTheFirstOfTwoDecides();
}

INSTANTIATE_TEST_SUITE_P(All, GigEChecks, testing::ValuesIn(kConfigurationCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
