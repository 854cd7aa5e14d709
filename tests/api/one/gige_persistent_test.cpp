// The address that an open camera keeps.

#include <array>

#include "GigETest.h"
#include "support/FeatureCalls.h"

using namespace gige;

namespace {

constexpr size_t kFeatures = 3;
const char* const kNames[kFeatures] = {"GevPersistentIPAddress", "GevPersistentSubnetMask",
                                       "GevPersistentDefaultGateway"};
constexpr uint64_t kPresent = 0x1000;  ///< a register for each feature: is it implemented
constexpr uint64_t kValues = 0x1010;   ///< and one with its value
constexpr uint64_t kLocked = 0x1020;   ///< and one that locks it

std::string Register(const std::string& name, uint64_t address, const std::string& more) {
    return DescriptionXml::RegXml{.name = name,
                                  .address = static_cast<int64_t>(address),
                                  .caching = "NoCache",
                                  .common = more,
                                  .sign = "Unsigned"}();
}

/// A camera of which each feature can be taken away by a register.
std::string Description() {
    std::string text = "<Category Name=\"Root\"/>";
    for (size_t i = 0; i < kFeatures; ++i) {
        const std::string name = kNames[i];
        std::string state = "<pIsImplemented>";
        state.append(name).append("Present</pIsImplemented><pIsLocked>");
        state.append(name).append("Locked</pIsLocked>");
        text += Register(name, kValues + 4 * i, state);
        text += Register(name + "Present", kPresent + 4 * i, "");
        text += Register(name + "Locked", kLocked + 4 * i, "");
    }
    return DescribeCamera(text);
}

class PersistentTest : public GigETest {
protected:
    void SetUp() override { Prepare(); }

    /// An open camera with all three features.
    void Prepare() {
        StartAnew();
        const std::string description = Description();
        producer.SetDescription("Remote", "Kept.xml", description.data(), description.size());
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        for (size_t i = 0; i < kFeatures; ++i) {
            Put(kPresent, i, 1);
        }
        Put(kValues, 0, 0xC0A80A05);
        Put(kValues, 1, 0xFFFFFF00);
        Put(kValues, 2, 0x01020304);
    }

    void Put(uint64_t base, size_t feature, uint32_t value) const {
        producer.WriteMemory(0, 0, base + 4 * feature, &value, sizeof value);
    }
    uint32_t Value(size_t feature) const {
        uint32_t value = 0;
        producer.ReadMemory(0, 0, kValues + 4 * feature, &value, sizeof value);
        return value;
    }

    OV_DEV_HANDLE camera = nullptr;
};

struct Texts {
    std::array<std::array<char, 32>, kFeatures> text{};
    std::array<size_t, kFeatures> size{32, 32, 32};

    Texts() {
        for (auto& field : text) {
            field.fill('#');
        }
    }
    OV_STATUS Read(OV_DEV_HANDLE camera) {
        return OVGetDevicePersistentIpAddress(camera, text[0].data(), &size[0], text[1].data(),
                                              &size[1], text[2].data(), &size[2]);
    }
};

// Reading.

TEST_F(PersistentTest, TheThreeAddressesComeAsDottedTexts) {
    Texts texts;
    ASSERT_OV_OK(texts.Read(camera));
    EXPECT_STREQ(texts.text[0].data(), "192.168.10.5");
    EXPECT_STREQ(texts.text[1].data(), "255.255.255.0");
    EXPECT_STREQ(texts.text[2].data(), "1.2.3.4");
    EXPECT_EQ(texts.size, (std::array<size_t, kFeatures>{13, 14, 8}));
    EXPECT_EQ(texts.text[0][13], '#') << "beyond the size";
}

TEST_F(PersistentTest, NullTextsAskForTheSizesAlone) {
    std::array<size_t, kFeatures> size{};
    ASSERT_OV_OK(OVGetDevicePersistentIpAddress(camera, nullptr, &size[0], nullptr, &size[1],
                                                nullptr, &size[2]));
    EXPECT_EQ(size, (std::array<size_t, kFeatures>{13, 14, 8}));
}

TEST_F(PersistentTest, ANullTextBesideOthersGetsItsSize) {
    Texts texts;
    texts.size[1] = 0;
    ASSERT_OV_OK(OVGetDevicePersistentIpAddress(camera, texts.text[0].data(), &texts.size[0],
                                                nullptr, &texts.size[1], texts.text[2].data(),
                                                &texts.size[2]));
    EXPECT_STREQ(texts.text[0].data(), "192.168.10.5");
    EXPECT_STREQ(texts.text[2].data(), "1.2.3.4");
    EXPECT_EQ(texts.size, (std::array<size_t, kFeatures>{13, 14, 8}));
}

TEST_F(PersistentTest, ExactSizesAreEnough) {
    Texts texts;
    texts.size = {13, 14, 8};
    EXPECT_OV_OK(texts.Read(camera));
}

TEST_F(PersistentTest, ATextThatDoesNotFitLeavesAllAsTheyWere) {
    const char* const words[kFeatures] = {"IP", "subnet mask", "default gateway"};
    const std::array<size_t, kFeatures> needed{13, 14, 8};
    for (size_t i = 0; i < kFeatures; ++i) {
        Texts texts;
        texts.size[i] = needed[i] - 1;
        const auto sizes = texts.size;
        ExpectFailure(texts.Read(camera), OV_STATUS_NEED_MORE_BUFFER,
                      std::string("Need more buffer to get device persistent ") + words[i]);
        EXPECT_EQ(texts.size, sizes);
        for (const auto& text : texts.text) {
            EXPECT_EQ(text[0], '#');
        }
    }
}

TEST_F(PersistentTest, SizesOfNullTextsStandEvenWhenAnotherTextDoesNotFit) {
    Texts texts;
    texts.size = {0, 0, 1};
    ExpectFailure(
        OVGetDevicePersistentIpAddress(camera, nullptr, &texts.size[0], nullptr, &texts.size[1],
                                       texts.text[2].data(), &texts.size[2]),
        OV_STATUS_NEED_MORE_BUFFER, "Need more buffer to get device persistent default gateway");
    EXPECT_EQ(texts.size, (std::array<size_t, kFeatures>{13, 14, 1}));
}

// Writing.

TEST_F(PersistentTest, WrittenAddressesReachTheCamera) {
    ASSERT_OV_OK(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.0.0", "10.0.0.254"));
    EXPECT_EQ(Value(0), 0x0A010203U);
    EXPECT_EQ(Value(1), 0xFF000000U);
    EXPECT_EQ(Value(2), 0x0A0000FEU);
    Texts texts;
    ASSERT_OV_OK(texts.Read(camera));
    EXPECT_STREQ(texts.text[0].data(), "10.1.2.3");
}

TEST_F(PersistentTest, AGatewayOfZerosIsInvalid) {
    ExpectFailure(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.0.0", "0.0.0.0"),
                  OV_STATUS_INVALID_PARAMETER, "Invalid GateWay");
    EXPECT_EQ(Value(0), 0xC0A80A05U);
}

TEST_F(PersistentTest, AMaskMayHaveGaps) {
    EXPECT_OV_OK(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.255.0", "10.0.0.1"));
    EXPECT_EQ(Value(1), 0xFF00FF00U);
}

TEST_F(PersistentTest, AFailureInTheMiddleLeavesTheEarlierOnesWritten) {
    Put(kLocked, 1, 1);
    EXPECT_EQ(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.0.0", "10.0.0.1"),
              OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(Value(0), 0x0A010203U);
    EXPECT_EQ(Value(1), 0xFFFFFF00U);
    EXPECT_EQ(Value(2), 0x01020304U);
}

TEST_F(PersistentTest, ALostCameraIsToldByBoth) {
    producer.LoseDevice(0, 0);
    Texts texts;
    EXPECT_EQ(texts.Read(camera), OV_STATUS_OFFLINE);
    EXPECT_EQ(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.0.0", "10.0.0.1"),
              OV_STATUS_OFFLINE);
}

// Check orders.

struct PersistentArguments {
    OV_DEV_HANDLE camera = nullptr;
    /// Texts to write; when reading, null takes a size away.
    std::array<const char*, kFeatures> texts{"10.1.2.3", "255.0.0.0", "10.0.0.1"};
    bool isRoomTooSmall[kFeatures] = {};
};

struct PersistentCall {
    const char* name;
    /// I initialised, H handle; A, K, G pointers of address, mask, gateway;
    /// 1, 2, 3 features; a, k, g address, mask, gateway.
    const char* order;
    OV_STATUS (*run)(const PersistentArguments& a);
    const char* refusal;
};

OV_STATUS Read(const PersistentArguments& a) {
    Texts texts;
    std::array<size_t*, kFeatures> sizes{};
    for (size_t i = 0; i < kFeatures; ++i) {
        sizes[i] = a.texts[i] == nullptr ? nullptr : &texts.size[i];
        texts.size[i] = a.isRoomTooSmall[i] ? 1 : texts.size[i];
    }
    return OVGetDevicePersistentIpAddress(a.camera, texts.text[0].data(), sizes[0],
                                          texts.text[1].data(), sizes[1], texts.text[2].data(),
                                          sizes[2]);
}

const PersistentCall kPersistentCalls[] = {
    {"OVGetDevicePersistentIpAddress", "IHAKG123akg", &Read, "Not implemented "},
    {"OVSetDevicePersistentIpAddress", "IHAKG123agk",
     [](const PersistentArguments& a) {
         return OVSetDevicePersistentIpAddress(a.camera, a.texts[0], a.texts[1], a.texts[2]);
     },
     "Not Implemented "},
};

class PersistentChecks
    : public CheckOrderTest<PersistentCall, PersistentArguments, PersistentTest> {
protected:
    PersistentArguments Right() override {
        Prepare();
        PersistentArguments arguments;
        arguments.camera = camera;
        return arguments;
    }

    void Spoil(PersistentArguments& arguments, char check) override {
        const size_t feature = FeatureOf(check);
        switch (check) {
            case 'I':
                OVCloseLib();
                break;
            case 'H':
                arguments.camera = nullptr;
                break;
            case 'A':
            case 'K':
            case 'G':
                arguments.texts[feature] = nullptr;
                break;
            case '1':
            case '2':
            case '3':
                Put(kPresent, feature, 0);
                break;
            default:
                arguments.texts[feature] = "0.0.0.0";
                arguments.isRoomTooSmall[feature] = true;
        }
    }

    Refusal RefusalOf(char check) const override {
        switch (check) {
            case 'I':
                return {OV_STATUS_NOT_INIT_API, "Not init API"};
            case 'H':
                return {OV_STATUS_INVALID_HANDLE, "Invalid device handle"};
            case 'A':
            case 'K':
            case 'G':
                return {OV_STATUS_INVALID_PARAMETER, "NULL Pointer"};
            case '1':
            case '2':
            case '3':
                return {OV_STATUS_NOT_IMPLEMENTED,
                        std::string(GetParam().refusal) + kNames[FeatureOf(check)]};
            default:
                return RefusalOfValue(FeatureOf(check));
        }
    }

private:
    static size_t FeatureOf(char check) {
        const size_t at = std::string("AKG123akg").find(check);
        return at == std::string::npos ? 0 : at % kFeatures;
    }

    Refusal RefusalOfValue(size_t feature) const {
        static const char* const kWords[] = {"IP", "subnet mask", "default gateway"};
        static const char* const kInvalid[] = {"Invalid IP", "Invalid SubNetMask",
                                               "Invalid GateWay"};
        if (GetParam().run == &Read) {
            return {OV_STATUS_NEED_MORE_BUFFER,
                    std::string("Need more buffer to get device persistent ") + kWords[feature]};
        }
        return {OV_STATUS_INVALID_PARAMETER, kInvalid[feature]};
    }
};

TEST_P(PersistentChecks, PassWhenAllIsRight) {
    EXPECT_OV_OK(GetParam().run(Right()));
}

TEST_P(PersistentChecks, TheFirstOfTwoBadArgumentsDecides) {
    ExpectTheFirstOfTwoDecides();
}

INSTANTIATE_TEST_SUITE_P(All, PersistentChecks, testing::ValuesIn(kPersistentCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
