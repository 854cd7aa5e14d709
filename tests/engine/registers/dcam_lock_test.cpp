// The register by which an IEEE 1394 camera gives access to its own features.

#include "GenApi/IRegister.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

constexpr int64_t kAddress = 0x100;
const std::vector<TestPort::Access> kQuestionAndAnswer{{true, kAddress, 8}, {false, kAddress, 8}};

struct LockXml {
    std::string accessMode = "RW";
    std::string length = "<Length>8</Length>";
    std::string common = {};

    std::string operator()() const {
        return "<AdvFeatureLock Name=\"Lock\">" + common + "<Address>0x100</Address>" + length +
               Element("AccessMode", accessMode) +
               "<pPort>Device</pPort><FeatureID>0xACDE48000012</FeatureID>"
               "<Timeout>0x1234</Timeout></AdvFeatureLock>";
    }
};

int64_t ValueOf(XmlNodeMap& map) {
    return map.Get<IInteger>("Lock").GetValue();
}

}  // namespace

TEST(AdvancedFeatureLock, AsksByIdentifierAndTimeBeforeEachRead) {
    XmlNodeMap map(LockXml{}());
    EXPECT_EQ(ValueOf(map), static_cast<int64_t>(0xACDE480000120234));
    EXPECT_EQ(map.Port().GetAccesses(), kQuestionAndAnswer);
    EXPECT_THAT(map.Port().PeekBytes(kAddress, 8),
                testing::ElementsAre(0xAC, 0xDE, 0x48, 0x00, 0x00, 0x12, 0x02, 0x34));
    map.Port().ForgetAccesses();
    uint8_t bytes[8] = {};
    map.Get<IRegister>("Lock").Get(bytes, sizeof bytes);
    EXPECT_THAT(bytes, testing::ElementsAre(0xAC, 0xDE, 0x48, 0x00, 0x00, 0x12, 0x02, 0x34));
    EXPECT_EQ(map.Port().GetAccesses(), kQuestionAndAnswer);
}

TEST(AdvancedFeatureLock, GivesTheFirstBytesOfTheAnswerToWhoWantsFewer) {
    XmlNodeMap map(LockXml{}());
    uint8_t bytes[2] = {};
    map.Get<IRegister>("Lock").Get(bytes, sizeof bytes);
    EXPECT_THAT(bytes, testing::ElementsAre(0xAC, 0xDE));
    const std::vector<TestPort::Access> accesses{{true, kAddress, 8}, {false, kAddress, 2}};
    EXPECT_EQ(map.Port().GetAccesses(), accesses);
}

TEST(AdvancedFeatureLock, IsAnIntegerWithoutLimits) {
    XmlNodeMap map(LockXml{}());
    auto& lock = map.Get<IInteger>("Lock");
    EXPECT_EQ(map.Get("Lock").GetPrincipalInterfaceType(), intfIInteger);
    EXPECT_EQ(lock.GetMin(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(lock.GetMax(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(lock.GetInc(), 1);
    EXPECT_EQ(lock.GetIncMode(), fixedIncrement);
    EXPECT_EQ(lock.GetRepresentation(), PureNumber);
    EXPECT_EQ(lock.GetUnit(), "");
}

TEST(AdvancedFeatureLock, MustBeReadableToBeAsked) {
    XmlNodeMap map(LockXml{.accessMode = "WO"}());
    EXPECT_EQ(DescriptionOf<AccessException>([&] { ValueOf(map); }), "Node is not readable.");
    EXPECT_EQ(map.Port().GetAccesses().size(), 0U);
}

TEST(AdvancedFeatureLock, TellsWhenTheQuestionTookItsReadability) {
    // The fifth byte of the question is zero, which takes the feature away.
    XmlNodeMap map(LockXml{.common = "<pIsAvailable>Granted</pIsAvailable>"}() +
                   "<IntReg Name=\"Granted\"><Address>0x104</Address><Length>1</Length>"
                   "<AccessMode>RO</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
                   "<Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>");
    map.Port().PutBytes(0x104, {1});
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { ValueOf(map); }),
              "Can't read from Register 0x100. Access mode is NA");
}

TEST(AdvancedFeatureLock, AsksNothingForABufferThatCannotTakeTheAnswer) {
    XmlNodeMap map(LockXml{}());
    auto& lock = map.Get<IRegister>("Lock");
    uint8_t bytes[9] = {};
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { lock.Get(bytes, 9); }),
              "CRegisterImpl::InternalGet : more data requested than hold by the register");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { lock.Get(nullptr, 8); }),
              "CRegisterImpl::InternalGet : pBuffer must not be NULL");
    EXPECT_EQ(map.Port().GetAccesses().size(), 0U);
}

TEST(AdvancedFeatureLock, LeavesNoQuestionBehindWhereOthersRead) {
    XmlNodeMap map(LockXml{}() + RegXml{.name = "Other", .address = kAddress}());
    map.Port().FailAccess(2);
    EXPECT_THROW(ValueOf(map), TimeoutException);
    map.Port().Put<int32_t>(kAddress, 7);
    EXPECT_EQ(map.Get<IInteger>("Other").GetValue(), 7);
}

TEST(AdvancedFeatureLock, SurvivesADeviceThatTellsAnotherLength) {
    XmlNodeMap map(LockXml{.length = "<pLength>Length</pLength>"}() +
                   RegXml{.name = "Length", .address = 0x200, .caching = "NoCache"}());
    map.Port().Put<int32_t>(0x200, 4);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { ValueOf(map); }), "m_Length.GetValue() == 8");
    EXPECT_EQ(map.Port().GetWrites(), 0U);
    map.Port().Put<int32_t>(0x200, 8);
    EXPECT_EQ(ValueOf(map), static_cast<int64_t>(0xACDE480000120234));
}

TEST(AdvancedFeatureLock, IsDescribedWithEightBytes) {
    XmlNodeMap map(LockXml{.length = "<Length>4</Length>"}());
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { ValueOf(map); }), "m_Length.GetValue() == 8");
    EXPECT_EQ(map.Port().GetWrites(), 0U);
}

TEST(AdvancedFeatureLock, IsNotForWriting) {
    XmlNodeMap map(LockXml{}());
    const uint8_t bytes[8] = {};
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { map.Get<IRegister>("Lock").Set(bytes, 8); }),
        "CDcamAccessCtrlRegImpl::InternalSet must not be called");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { map.Get<IInteger>("Lock").SetValue(1); }),
              "CDcamAccessCtrlRegImpl::InternalSetValue must not be called");
    EXPECT_EQ(map.Port().GetWrites(), 0U);
}

}  // namespace EngineTest
