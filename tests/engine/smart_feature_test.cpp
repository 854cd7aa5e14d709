// The registers by which IEEE 1394 cameras give access to their own features.

#include "GenApi/IRegister.h"
#include "GenApi/impl/Value2String.h"
#include "node_graph.h"
#include "value_graph.h"

namespace EngineTest {

namespace {

constexpr const char* kGuid = "00112233-4455-6677-8899-AABBCCDDEEFF";
constexpr int64_t kAddress = 0x100;

std::string SmartFeatureXml(const std::string& guid) {
    return "<SmartFeature Name=\"Smart\"><FeatureID>" + guid +
           "</FeatureID><Address>0x100</Address><pPort>Device</pPort></SmartFeature>";
}

std::string LockXml(const std::string& accessMode, int length = 8) {
    return "<AdvFeatureLock Name=\"Lock\"><Address>0x100</Address><Length>" +
           std::to_string(length) + "</Length><AccessMode>" + accessMode +
           "</AccessMode><pPort>Device</pPort><FeatureID>0xACDE48000012</FeatureID>"
           "<Timeout>0x1234</Timeout></AdvFeatureLock>";
}

}  // namespace

TEST(SmartFeature, AsksByItsGuidAndGivesTheAnswersAddress) {
    XmlNodeMap map(SmartFeatureXml(kGuid));
    map.Port().PutBytes(kAddress + 16, {0x01, 0x02, 0x03, 0x04, 0x0A, 0x0B, 0x0C, 0x0D});
    EXPECT_EQ(map.Get<IInteger>("Smart").GetValue(), 0x0A0B0C0D01020304);
    const std::vector<TestPort::Access> accesses{{true, kAddress, 16}, {false, kAddress, 24}};
    EXPECT_EQ(map.Port().GetAccesses(), accesses);
    EXPECT_THAT(map.Port().PeekBytes(kAddress, 16),
                testing::ElementsAre(0x00, 0x11, 0x22, 0x33,  // one number of four bytes
                                     0x66, 0x77, 0x44, 0x55,  // two of two, as one of four
                                     0xBB, 0xAA, 0x99, 0x88, 0xFF, 0xEE, 0xDD, 0xCC));
}

TEST(SmartFeature, IsAccessibleAsItsPortIs) {
    XmlNodeMap map(SmartFeatureXml(kGuid));
    EXPECT_EQ(map.Get("Smart").GetAccessMode(), RW);
    EXPECT_EQ(map.Get<IRegister>("Smart").GetLength(), 24);
    XmlNodeMap closed(SmartFeatureXml(kGuid));
    closed.Port().SetAccessMode(NA);
    EXPECT_EQ(closed.Get("Smart").GetAccessMode(), NA);
}

TEST(SmartFeature, CannotBeWritten) {
    XmlNodeMap map(SmartFeatureXml(kGuid));
    EXPECT_EQ(
        DescriptionOf<RuntimeException>([&] { map.Get<IInteger>("Smart").SetValue(1, false); }),
        "CSmartFeatureImpl::InternalSetValue : a smart feature cannot be written");
    EXPECT_EQ(map.Port().GetWrites(), 0U);
}

TEST(SmartFeature, NeedsAGuid) {
    for (const std::string bad :
         {"", "no", "00112233-4455-6677-8899-AABBCCDDEEF", "00112233-4455-6677-8899-AABBCCDDEEFF0",
          "00112233:4455-6677-8899-AABBCCDDEEFF"}) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { XmlNodeMap map(SmartFeatureXml(bad)); }),
                  "Error while parsing XML file : " + bad + " is not a valid GUID");
    }
    EXPECT_NO_THROW(XmlNodeMap map(SmartFeatureXml("{" + std::string(kGuid) + "}")));
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

TEST(AdvancedFeatureLock, AsksByIdentifierAndTimeBeforeEachRead) {
    XmlNodeMap map(LockXml("RW"));
    EXPECT_EQ(map.Get<IInteger>("Lock").GetValue(), static_cast<int64_t>(0xACDE480000120234));
    const std::vector<TestPort::Access> accesses{{true, kAddress, 8}, {false, kAddress, 8}};
    EXPECT_EQ(map.Port().GetAccesses(), accesses);
    EXPECT_THAT(map.Port().PeekBytes(kAddress, 8),
                testing::ElementsAre(0xAC, 0xDE, 0x48, 0x00, 0x00, 0x12, 0x02, 0x34));
    uint8_t bytes[8] = {};
    map.Get<IRegister>("Lock").Get(bytes, sizeof bytes);
    EXPECT_EQ(map.Port().GetAccesses().size(), 4U);
    EXPECT_EQ(bytes[0], 0xAC);
}

TEST(AdvancedFeatureLock, MustBeReadableToAnswer) {
    XmlNodeMap map(LockXml("WO"));
    EXPECT_EQ(DescriptionOf<AccessException>([&] { map.Get<IInteger>("Lock").GetValue(); }),
              "Node is not readable.");
    EXPECT_EQ(map.Port().GetAccesses().size(), 0U);
}

TEST(AdvancedFeatureLockDeathTest, IsNotForWriting) {
    XmlNodeMap map(LockXml("RW"));
    const uint8_t bytes[8] = {};
    EXPECT_DEATH(map.Get<IRegister>("Lock").Set(bytes, 8), "InternalSet must not be called");
    EXPECT_DEATH(map.Get<IInteger>("Lock").SetValue(1), "InternalSetValue must not be called");
}

TEST(AdvancedFeatureLockDeathTest, IsOfEightBytes) {
    XmlNodeMap map(LockXml("RW", 4));
    EXPECT_DEATH(map.Get<IInteger>("Lock").GetValue(), "m_Length.GetValue\\(\\) == 8");
}

}  // namespace EngineTest
