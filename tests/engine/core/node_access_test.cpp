// What a client may do with a node, as its own state and that of others allow.

#include "NodeGraph.h"

namespace EngineTest {

namespace {

constexpr EAccessMode kModes[] = {NI, NA, WO, RO, RW};

}  // namespace

TEST(CombineAccess, GivesTheRightsThatBothLeave) {
    constexpr EAccessMode kCombined[5][5] = {
        //           NI  NA  WO  RO  RW
        /* NI */ {NI, NI, NI, NI, NI},
        /* NA */ {NI, NA, NA, NA, NA},
        /* WO */ {NI, NA, WO, NA, WO},
        /* RO */ {NI, NA, NA, RO, RO},
        /* RW */ {NI, NA, WO, RO, RW},
    };
    for (const EAccessMode peter : kModes) {
        for (const EAccessMode paul : kModes) {
            EXPECT_EQ(Combine(peter, paul), kCombined[peter][paul]) << peter << " and " << paul;
        }
    }
}

TEST(CombineCaching, GivesTheStricterMode) {
    constexpr ECachingMode kCombined[3][3] = {
        {NoCache, NoCache, NoCache},
        {NoCache, WriteThrough, WriteAround},
        {NoCache, WriteAround, WriteAround},
    };
    for (const ECachingMode peter : {NoCache, WriteThrough, WriteAround}) {
        for (const ECachingMode paul : {NoCache, WriteThrough, WriteAround}) {
            EXPECT_EQ(Combine(peter, paul), kCombined[peter][paul]) << peter << " and " << paul;
        }
    }
}

TEST(AccessModeText, IsTheShortName) {
    const char* const kTexts[] = {"NI", "NA", "WO", "RO", "RW", "_UndefinedAccessMode"};
    for (int mode = NI; mode <= _UndefinedAccesMode; ++mode) {
        EXPECT_STREQ(EAccessModeClass::ToString(static_cast<EAccessMode>(mode)), kTexts[mode]);
    }
}

namespace {

/// A register whose rights hang on three others.
struct ReferenceCase {
    const char* name;
    std::string ownMode;
    std::string reference;
    std::string referenceMode;
    int value;
    EAccessMode expected;
};

class ReferencedRights : public testing::TestWithParam<ReferenceCase> {};

std::string NameOfCase(const testing::TestParamInfo<ReferenceCase>& info) {
    return info.param.name;
}

}  // namespace

TEST_P(ReferencedRights, LowerTheMode) {
    const ReferenceCase& c = GetParam();
    XmlNodeMap nodes(RegXml{.name = "Reference", .address = 0, .access = c.referenceMode}() +
                     RegXml{.name = "Node",
                            .address = 4,
                            .access = c.ownMode,
                            .common = Element(c.reference, "Reference")}());
    nodes.Port().Put(0, c.value);
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ReferencedRights,
    testing::Values(ReferenceCase{"ImplementedLeavesAll", "RW", "pIsImplemented", "RO", 1, RW},
                    ReferenceCase{"NotImplemented", "RW", "pIsImplemented", "RO", 0, NI},
                    ReferenceCase{"UnreadableImplementation", "RW", "pIsImplemented", "WO", 1, NA},
                    ReferenceCase{"AvailableLeavesAll", "WO", "pIsAvailable", "RW", 1, WO},
                    ReferenceCase{"NotAvailable", "RO", "pIsAvailable", "RW", 0, NA},
                    ReferenceCase{"UnreadableAvailability", "RW", "pIsAvailable", "WO", 1, NA},
                    ReferenceCase{"UnlockedLeavesAll", "RW", "pIsLocked", "RO", 0, RW},
                    ReferenceCase{"LockedKeepsReading", "RW", "pIsLocked", "RO", 1, RO},
                    ReferenceCase{"LockedTakesWriteOnlyAway", "WO", "pIsLocked", "RO", 1, NA},
                    ReferenceCase{"LockLeavesReadOnlyAlone", "RO", "pIsLocked", "RO", 1, RO},
                    ReferenceCase{"UnreadableLock", "RW", "pIsLocked", "WO", 0, NA}),
    NameOfCase);

TEST(AccessMode, IsNotImplementedWhenANodeThatIsReadIsNot) {
    XmlNodeMap nodes(RegXml{.name = "No", .address = 0}() +
                     IntegerXml("Missing", Element("pIsImplemented", "No")) +
                     IntegerXml("Node", Element("pIsLocked", "Missing")));
    EXPECT_EQ(nodes.Get("Missing").GetAccessMode(), NI);
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), NI);
}

TEST(AccessMode, IsNotImplementedEvenWhenAnotherNodeIsOnlyNotAvailable) {
    XmlNodeMap nodes(
        RegXml{.name = "No", .address = 0}() +
        IntegerXml("Missing", Element("pIsImplemented", "No")) +
        IntegerXml("Away", Element("pIsAvailable", "No")) +
        IntegerXml("Node", Element("pIsAvailable", "Away") + Element("pIsLocked", "Missing")));
    EXPECT_EQ(nodes.Get("Away").GetAccessMode(), NA);
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), NI);
}

TEST(AccessMode, FollowsTheSourceOfTheValue) {
    XmlNodeMap nodes(RegXml{.name = "Source", .address = 0, .access = "WO"}() +
                     IntegerXml("Node", "", Element("pValue", "Source")));
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), WO);
}

TEST(AccessMode, OfAReadOnlySourceKnowsNoLock) {
    XmlNodeMap nodes(RegXml{.name = "Lock", .address = 0, .access = "WO"}() +
                     RegXml{.name = "Source", .address = 4, .access = "RO"}() +
                     IntegerXml("Node", Element("pIsLocked", "Lock"), Element("pValue", "Source")));
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), RO);
}

namespace {

/// References that descriptions cannot give: they hold constants.
class ConstantlyReferring : public CInteger {
public:
    void LockBy(bool value) { m_IsLocked = value; }
    void ImplementBy(bool value) { m_IsImplemented = value; }
    void AllowBy(bool value) { m_IsAvailable = value; }
    void BlockPollingBy(bool value) { m_BlockPolling = value; }
};

using SetReference = void (ConstantlyReferring::*)(bool);
class ConstantReference : public testing::TestWithParam<std::tuple<SetReference, bool>> {};

}  // namespace

TEST_P(ConstantReference, StandsOnNoReadableNode) {
    NodesByHand nodes;
    auto& node = nodes.Add<ConstantlyReferring>("Node");
    nodes.Set(node, CPropertyID::Value_ID, 1);
    const auto [reference, value] = GetParam();
    (node.*reference)(value);
    nodes.Complete();
    EXPECT_EQ(node.GetAccessMode(), NA);
    EXPECT_EQ(node.IsAccessModeCacheable(), Yes);
}

INSTANTIATE_TEST_SUITE_P(Of, ConstantReference,
                         testing::Combine(testing::Values(&ConstantlyReferring::LockBy,
                                                          &ConstantlyReferring::ImplementBy,
                                                          &ConstantlyReferring::AllowBy),
                                          testing::Bool()));

TEST(ConstantReference, BlocksNoPolling) {
    NodesByHand nodes;
    auto& node = nodes.Add<ConstantlyReferring>("Node");
    nodes.Set(node, CPropertyID::Value_ID, 1);
    nodes.Set(node, CPropertyID::PollingTime_ID, 10);
    node.BlockPollingBy(true);
    nodes.Complete();
    EXPECT_TRUE(node.Poll(10));
}

TEST(ImposedAccess, CombinesWithTheModeOfTheNode) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0, .access = "WO"}());
    INode& node = nodes.Get("Node");
    node.ImposeAccessMode(RO);
    EXPECT_EQ(node.GetAccessMode(), NA);
}

TEST(ImposedAccess, IsNotRememberedByTheCache) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    auto& node = nodes.Get<INodePrivate>("Node");
    node.ImposeAccessMode(RO);
    EXPECT_EQ(node.GetAccessMode(), RO);
    EXPECT_EQ(node.InternalGetAccessMode(), RW);
    node.ImposeAccessMode(RW);
    EXPECT_EQ(node.GetAccessMode(), RW);
}

TEST(ImposedAccess, ComesFromTheDescription) {
    XmlNodeMap nodes(
        RegXml{.name = "Node", .address = 0, .common = Element("ImposedAccessMode", "RO")}());
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), RO);
}

TEST(ImposedAccess, InvalidatesAndFiresCallbacks) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Node"), calls);
    nodes.Get("Node").ImposeAccessMode(RO);
    EXPECT_THAT(calls, testing::ElementsAre("Node inside", "Node outside"));
}

namespace {

/// A node whose availability another register tells.
std::string Switched(const std::string& caching) {
    return RegXml{.name = "Switch", .address = 0, .access = "RO", .caching = caching}() +
           RegXml{.name = "Node", .address = 4, .common = Element("pIsAvailable", "Switch")}();
}

}  // namespace

TEST(AccessModeCache, AnswersWithoutTheDevice) {
    XmlNodeMap nodes(Switched("WriteThrough"));
    INode& node = nodes.Get("Node");
    EXPECT_EQ(node.IsAccessModeCacheable(), Yes);
    EXPECT_EQ(node.GetAccessMode(), NA);
    nodes.Port().Put(0, 1);
    EXPECT_EQ(node.GetAccessMode(), NA);
    EXPECT_EQ(nodes.Port().GetReads(), 1U);
}

TEST(AccessModeCache, IsNotUsedWhenASwitchMayNotBeCached) {
    XmlNodeMap nodes(Switched("NoCache"));
    INode& node = nodes.Get("Node");
    EXPECT_EQ(node.IsAccessModeCacheable(), No);
    EXPECT_EQ(node.GetAccessMode(), NA);
    nodes.Port().Put(0, 1);
    EXPECT_EQ(node.GetAccessMode(), RW);
    nodes.Port().Put(0, 0);
    EXPECT_EQ(node.GetAccessMode(), NA);
    EXPECT_EQ(nodes.Port().GetReads(), 3U);
}

TEST(AccessModeCache, IsNotUsedWhenThatOfANodeThatIsReadIsNot) {
    XmlNodeMap nodes(Switched("NoCache") + IntegerXml("Shown", "", Element("pValue", "Node")));
    EXPECT_EQ(nodes.Get("Shown").IsAccessModeCacheable(), No);
    EXPECT_EQ(nodes.Get("Shown").GetAccessMode(), NA);
    nodes.Port().Put(0, 1);
    EXPECT_EQ(nodes.Get("Shown").GetAccessMode(), RW);
}

TEST(AccessModeCache, IsDroppedWithTheNode) {
    XmlNodeMap nodes(Switched("WriteAround"));
    INode& node = nodes.Get("Node");
    EXPECT_EQ(node.GetAccessMode(), NA);
    nodes.Port().Put(0, 1);
    nodes.Get("Switch").InvalidateNode();
    EXPECT_EQ(node.GetAccessMode(), RW);
    nodes.Port().Put(0, 0);
    node.InvalidateNode();
    EXPECT_EQ(node.GetAccessMode(), RW) << "no part of the value, the switch is as valid as it was";
    dynamic_cast<IInteger&>(nodes.Get("Switch")).GetValue(false, true);
    EXPECT_EQ(node.GetAccessMode(), NA);
}

TEST(AccessModeCache, IsFreeAgainAfterAFailure) {
    XmlNodeMap nodes(Switched("NoCache"));
    INode& node = nodes.Get("Node");
    nodes.Port().Put(0, 1);
    nodes.Port().FailAccess(1);
    EXPECT_THROW(node.GetAccessMode(), TimeoutException);
    EXPECT_EQ(node.GetAccessMode(), RW);
}

namespace {

/// Two nodes, each available when the other's value is not 0. Only
/// descriptions of the first schema version may hold such a cycle.
std::string Cycle() {
    return IntegerXml("Outer", Element("pIsAvailable", "Inner")) +
           IntegerXml("Inner", Element("pIsAvailable", "Outer"));
}

}  // namespace

TEST(AccessModeCycle, EndsInTheRightsOfTheNodeWhereItCloses) {
    EngineLog log;
    XmlNodeMap nodes(Cycle(), {.schemaMinor = 0});
    EXPECT_EQ(nodes.Get("Outer").GetAccessMode(), RW);
    EXPECT_EQ(nodes.Get("Inner").GetAccessMode(), RW);
    EXPECT_THAT(log.Lines("GenApi.Device.Access.Outer"),
                testing::Contains(EngineLog::Line{
                    LogWarning, "InternalGetAccessMode : ReadCycle detected at = 'Outer'"}));
}

TEST(AccessModeCycle, LeavesTheOuterNodeToItsOtherConditions) {
    XmlNodeMap nodes(
        RegXml{.name = "Lock", .address = 0}() +
            IntegerXml("Outer", Element("pIsAvailable", "Inner") + Element("pIsLocked", "Lock")) +
            IntegerXml("Inner", Element("pIsAvailable", "Outer")),
        {.schemaMinor = 0});
    nodes.Port().Put(0, 1);
    EXPECT_EQ(nodes.Get("Outer").GetAccessMode(), RO);
    EXPECT_EQ(nodes.Get("Outer").GetAccessMode(), RO);
}

TEST(AccessModeCycle, IsClearedWhenTheModeIsNotCacheable) {
    XmlNodeMap nodes(
        RegXml{.name = "Lock", .address = 0, .caching = "NoCache"}() +
            IntegerXml("Outer", Element("pIsAvailable", "Inner") + Element("pIsLocked", "Lock")) +
            IntegerXml("Inner", Element("pIsAvailable", "Outer")),
        {.schemaMinor = 0});
    INode& outer = nodes.Get("Outer");
    EXPECT_EQ(outer.GetAccessMode(), RW);
    nodes.Port().Put(0, 1);
    EXPECT_EQ(outer.GetAccessMode(), RO);
    nodes.Port().Put(0, 0);
    EXPECT_EQ(outer.GetAccessMode(), RW);
}

TEST(AccessModeCycle, OfOneNodeIsHarmless) {
    XmlNodeMap nodes(IntegerXml("Node", Element("pIsAvailable", "Node")), {.schemaMinor = 0});
    EXPECT_EQ(nodes.Get("Node").GetAccessMode(), RW);
    EXPECT_EQ(nodes.Get("Node").IsAccessModeCacheable(), Yes);
}

TEST(ReferenceOfAnotherKind, IsRefused) {
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    EXPECT_EQ(DescriptionOf<RuntimeException>(
                  [] { XmlNodeMap refused(IntegerXml("Node", Element("pIsLocked", "Device"))); }),
              "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, IEnumeration*, "
              "nor IBoolean*");
}

}  // namespace EngineTest
