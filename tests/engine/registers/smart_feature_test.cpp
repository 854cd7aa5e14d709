// The registers that tell where an IEEE 1394 camera keeps its smart features.

#include "GenApi/IRegister.h"
#include "NodeGraph.h"
#include "text/Value2String.h"

namespace EngineTest {

namespace {

constexpr const char* kSmartGuid = "00112233-4455-6677-8899-AABBCCDDEEFF";
constexpr int64_t kSmartAddress = 0x100;

std::string SmartFeatureXml(const std::string& guid) {
    return "<SmartFeature Name=\"Smart\"><FeatureID>" + guid +
           "</FeatureID><Address>0x100</Address><pPort>Device</pPort></SmartFeature>";
}

}  // namespace

TEST(SmartFeature, AsksByItsGuidAndGivesTheAnswersAddress) {
    XmlNodeMap map(SmartFeatureXml(kSmartGuid));
    map.Port().PutBytes(kSmartAddress + 16, {0x01, 0x02, 0x03, 0x04, 0x0A, 0x0B, 0x0C, 0x0D});
    EXPECT_EQ(map.Get<IInteger>("Smart").GetValue(), 0x0A0B0C0D01020304);
    const std::vector<TestPort::Access> accesses{{true, kSmartAddress, 16},
                                                 {false, kSmartAddress, 24}};
    EXPECT_EQ(map.Port().GetAccesses(), accesses);
    EXPECT_THAT(map.Port().PeekBytes(kSmartAddress, 16),
                testing::ElementsAre(0x00, 0x11, 0x22, 0x33,  // one number of four bytes
                                     0x66, 0x77, 0x44, 0x55,  // two of two, as one of four
                                     0xBB, 0xAA, 0x99, 0x88, 0xFF, 0xEE, 0xDD, 0xCC));
}

TEST(SmartFeature, IsAccessibleAsItsPortIs) {
    XmlNodeMap map(SmartFeatureXml(kSmartGuid));
    EXPECT_EQ(map.Get("Smart").GetAccessMode(), RW);
    EXPECT_EQ(map.Get<IRegister>("Smart").GetLength(), 24);
    XmlNodeMap closed(SmartFeatureXml(kSmartGuid));
    closed.Port().SetAccessMode(NA);
    EXPECT_EQ(closed.Get("Smart").GetAccessMode(), NA);
}

TEST(SmartFeature, AsksTheCameraAnewWhenTheCacheMayNotAnswer) {
    XmlNodeMap map(SmartFeatureXml(kSmartGuid));
    auto& smart = map.Get<IInteger>("Smart");
    smart.GetValue();
    smart.GetValue();
    EXPECT_EQ(map.Port().GetAccesses().size(), 2U);
    map.Port().PutBytes(kSmartAddress + 16, {0, 0, 0, 5, 0, 0, 0, 0});
    EXPECT_EQ(smart.GetValue(false, true), 5);
    EXPECT_EQ(map.Port().GetAccesses().size(), 4U);
}

TEST(SmartFeature, IsAnIntegerWithoutLimits) {
    XmlNodeMap map(SmartFeatureXml(kSmartGuid));
    auto& smart = map.Get<IInteger>("Smart");
    EXPECT_EQ(map.Get("Smart").GetPrincipalInterfaceType(), intfIInteger);
    EXPECT_EQ(smart.GetMin(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(smart.GetMax(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(smart.GetInc(), 1);
}

TEST(SmartFeature, CannotBeWritten) {
    XmlNodeMap map(SmartFeatureXml(kSmartGuid));
    auto& smart = map.Get<IInteger>("Smart");
    for (const bool verify : {true, false}) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { smart.SetValue(1, verify); }),
                  "CSmartFeatureImpl::InternalSetValue : a smart feature cannot be written");
    }
    EXPECT_EQ(map.Port().GetWrites(), 0U);
}

TEST(SmartFeature, NeedsAGuid) {
    for (const std::string bad :
         {"", "no", "00112233-4455-6677-8899-AABBCCDDEEF", "00112233-4455-6677-8899-AABBCCDDEEFF0",
          "00112233:4455-6677-8899-AABBCCDDEEFF"}) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { XmlNodeMap map(SmartFeatureXml(bad)); }),
                  "Error while parsing XML file : " + bad + " is not a valid GUID");
    }
    EXPECT_NO_THROW(XmlNodeMap map(SmartFeatureXml("{" + std::string(kSmartGuid) + "}")));
}

TEST(Guid, KeepsTheFormOfRegistries) {
    GUID guid{};
    ASSERT_TRUE(String2Value("{00112233-4455-6677-8899-aabbccddeeff}", &guid));
    EXPECT_EQ(guid.Data1, 0x00112233U);
    EXPECT_EQ(guid.Data2, 0x4455U);
    EXPECT_EQ(guid.Data3, 0x6677U);
    EXPECT_EQ(guid.Data4[0], 0x88U);
    EXPECT_EQ(guid.Data4[7], 0xFFU);
    gcstring text;
    Value2String(guid, text);
    EXPECT_EQ(text, "{00112233-4455-6677-8899-AABBCCDDEEFF}");
    const GUID before = guid;
    EXPECT_FALSE(String2Value("{00112233-4455}", &guid));
    EXPECT_EQ(guid, before);
}

}  // namespace EngineTest
