// Walks through the combinations of selectors.

#include "BagSupport.h"
#include "GenApi/Pointer.h"
#include "GenApi/SelectorSet.h"
#include "values/FloatImpl.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kHasBlue = 8;

const std::string kLimits = "<Min>0</Min><Max>2</Max>";

/// "Gain" for each of the channels "Red" and "Blue" and each of three banks.
/// "Blue" is there while the register "HasBlue" isn't 0.
class SelectedGain : public testing::Test {
protected:
    SelectedGain() {
        m_Device.Port().Put<int32_t>(kHasBlue, 1);
        m_Device.Port().Put<int32_t>(kBank, 1);
    }

    CSelectorSet SetOf(const char* name) { return CSelectorSet(&m_Device.Get(name)); }
    /// The values that a walk comes by.
    static std::vector<std::string> Walk(ISelectorDigit& set) {
        std::vector<std::string> texts;
        for (bool isSet = set.SetFirst(); isSet; isSet = set.SetNext()) {
            texts.emplace_back(set.ToString());
        }
        return texts;
    }
    std::vector<int64_t> WrittenAddresses() {
        std::vector<int64_t> addresses;
        for (const TestPort::Access& access : m_Device.Port().GetAccesses()) {
            if (access.isWrite) {
                addresses.push_back(access.address);
            }
        }
        return addresses;
    }

    Device m_Device{RootXml({"Gain"}) + SelectedXml("Gain", kGain, {{"Bank", 4}, {"Channel", 16}}) +
                    RegXml{.name = "HasBlue", .address = kHasBlue, .caching = "NoCache"}() +
                    IntSelectorXml("Bank", kBank, kLimits, {"Gain"}) +
                    EnumSelectorXml("Channel", kChannel,
                                    {{"Red"}, {"Blue", "<pIsAvailable>HasBlue</pIsAvailable>"}},
                                    {"Gain"})};
};

/// An integer selector over the register at 0.
std::string IntSelector(const std::string& limits) {
    return RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) +
           IntSelectorXml("Bank", kBank, limits, {"Gain"});
}

std::vector<std::string> NamesOf(CSelectorSet& set) {
    value_vector list;
    set.GetSelectorList(list);
    std::vector<std::string> names;
    for (IValue* const selector : list) {
        names.emplace_back(selector->GetNode()->GetName());
    }
    return names;
}

}  // namespace

TEST_F(SelectedGain, NamesItsSelectorsInOrderWithTheirValues) {
    EXPECT_EQ(SetOf("Gain").ToString(), "[Bank=1;Channel=Red]");
}

TEST_F(SelectedGain, RunsThroughTheFirstSelectorFastest) {
    CSelectorSet set = SetOf("Gain");
    EXPECT_THAT(Walk(set), ElementsAre("[Bank=0;Channel=Red]", "[Bank=1;Channel=Red]",
                                       "[Bank=2;Channel=Red]", "[Bank=0;Channel=Blue]",
                                       "[Bank=1;Channel=Blue]", "[Bank=2;Channel=Blue]"));
    EXPECT_EQ(set.ToString(), "[Bank=0;Channel=Red]") << "all have wrapped";
}

TEST_F(SelectedGain, WritesNothingWithoutATick) {
    CSelectorSet set = SetOf("Gain");
    EXPECT_TRUE(set.SetFirst());
    m_Device.Port().ForgetAccesses();
    EXPECT_FALSE(set.SetNext(false));
    EXPECT_THAT(WrittenAddresses(), IsEmpty());
    EXPECT_EQ(set.ToString(), "[Bank=0;Channel=Red]");
}

TEST_F(SelectedGain, SkipsEntriesThatAreNotAvailable) {
    m_Device.Port().Put<int32_t>(kHasBlue, 0);
    CSelectorSet set = SetOf("Gain");
    EXPECT_THAT(Walk(set), ElementsAre("[Bank=0;Channel=Red]", "[Bank=1;Channel=Red]",
                                       "[Bank=2;Channel=Red]"));
}

TEST_F(SelectedGain, NoticesAnEntryThatGoesDuringTheWalk) {
    CSelectorSet set = SetOf("Gain");
    set.SetFirst();
    m_Device.Port().Put<int32_t>(kHasBlue, 0);
    EXPECT_TRUE(set.SetNext());
    EXPECT_TRUE(set.SetNext());
    EXPECT_FALSE(set.SetNext());
}

TEST_F(SelectedGain, PutsSelectorsBackInReverseOrder) {
    CSelectorSet set = SetOf("Gain");
    Walk(set);
    m_Device.Port().ForgetAccesses();
    set.Restore();
    EXPECT_EQ(set.ToString(), "[Bank=1;Channel=Red]");
    EXPECT_THAT(WrittenAddresses(), ElementsAre(kChannel, kBank));
}

TEST_F(SelectedGain, HasNothingToPutBackBeforeTheWalk) {
    SetOf("Gain").Restore();
    EXPECT_THAT(WrittenAddresses(), IsEmpty());
}

TEST_F(SelectedGain, PutsTheOthersBackWhenOneSelectorFails) {
    CSelectorSet set = SetOf("Gain");
    set.SetFirst();
    m_Device.Port().FailAccess(1);
    EXPECT_THROW(set.Restore(), TimeoutException);
    EXPECT_EQ(m_Device.Port().Peek<int32_t>(kBank), 1);
}

TEST_F(SelectedGain, LeavesOutSelectorsThatCannotBeWritten) {
    m_Device.Get("Channel").ImposeAccessMode(RO);
    CSelectorSet set = SetOf("Gain");
    EXPECT_THAT(NamesOf(set), ElementsAre("Bank"));
}

TEST_F(SelectedGain, ListsSelectorsAnewOrInAddition) {
    CSelectorSet set = SetOf("Gain");
    value_vector list;
    set.GetSelectorList(list);
    EXPECT_EQ(list.size(), 2U);
    set.GetSelectorList(list, true);
    EXPECT_EQ(list.size(), 4U);
    set.GetSelectorList(list, false);
    EXPECT_EQ(list.size(), 2U);
}

TEST_F(SelectedGain, HasAnEmptySetWhereNothingSelects) {
    for (IBase* const base :
         {static_cast<IBase*>(&m_Device.Get("HasBlue")), static_cast<IBase*>(nullptr)}) {
        CSelectorSet set(base);
        EXPECT_TRUE(set.IsEmpty());
        EXPECT_EQ(set.ToString(), "[]");
        EXPECT_TRUE(set.SetFirst());
        EXPECT_FALSE(set.SetNext());
    }
    EXPECT_FALSE(SetOf("Gain").IsEmpty());
}

class SelectorAccess : public SelectedGain, public testing::WithParamInterface<const char*> {};

TEST_P(SelectorAccess, MustAllowReading) {
    CSelectorSet set = SetOf("Gain");
    m_Device.Get(GetParam()).ImposeAccessMode(WO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { set.SetFirst(); }),
              "Selector '" + std::string(GetParam()) + "' is not readable");
}

TEST_P(SelectorAccess, MustAllowWriting) {
    CSelectorSet set = SetOf("Gain");
    m_Device.Get(GetParam()).ImposeAccessMode(RO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { set.SetFirst(); }),
              "Selector '" + std::string(GetParam()) + "' is not writable");
}

INSTANTIATE_TEST_SUITE_P(Of, SelectorAccess, testing::Values("Bank", "Channel"),
                         [](const auto& test) { return std::string(test.param); });

TEST(SelectorSet, HasNoFirstCombinationWithoutAnAvailableEntry) {
    Device device(RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) +
                  RegXml{.name = "HasAny", .address = kHasBlue}() +
                  EnumSelectorXml("Channel", kChannel,
                                  {{"Red", "<pIsAvailable>HasAny</pIsAvailable>"}}, {"Gain"}));
    EXPECT_FALSE(CSelectorSet(&device.Get("Gain")).SetFirst());
}

struct SelectorSteps {
    const char* limits;
    std::vector<int64_t> values;
};
class IntegerSteps : public testing::TestWithParam<SelectorSteps> {};

TEST_P(IntegerSteps, GoFromTheMinimumToTheMaximum) {
    Device device(IntSelector(GetParam().limits));
    device.Port().Put<int32_t>(kBank, 4);
    CSelectorSet set(&device.Get("Gain"));
    std::vector<int64_t> values;
    for (bool isSet = set.SetFirst(); isSet; isSet = set.SetNext()) {
        values.push_back(device.Get<IInteger>("Bank").GetValue());
    }
    EXPECT_EQ(values, GetParam().values);
    set.Restore();
    EXPECT_EQ(device.Port().Peek<int32_t>(kBank), 4);
}

INSTANTIATE_TEST_SUITE_P(
    Of, IntegerSteps,
    testing::Values(SelectorSteps{"<Min>-1</Min><Max>1</Max>", {-1, 0, 1}},
                    SelectorSteps{"<Min>0</Min><Max>8</Max><Inc>3</Inc>", {0, 3, 6}},
                    SelectorSteps{"<Min>5</Min><Max>5</Max>", {5}},
                    SelectorSteps{"<Min>2147483647</Min><Max>9223372036854775807</Max>"
                                  "<Inc>9223372036854775807</Inc>",
                                  {2147483647}}));

namespace {

std::string Steady(const char* name, std::initializer_list<const char*> selected) {
    return NodeXml("Integer", name, "<Value>0</Value><Min>0</Min><Max>1</Max>" + Selects(selected));
}

}  // namespace

TEST(SelectorSet, FollowsSelectorsOfSelectorsByName) {
    Device device(RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) + Steady("Z", {"Gain"}) +
                  Steady("C", {"M"}) + Steady("M", {"Gain"}) + Steady("A", {"M"}));
    CSelectorSet set(&device.Get("Gain"));
    EXPECT_THAT(NamesOf(set), ElementsAre("M", "A", "C", "Z"));
}

TEST(SelectorSet, HoldsASelectorOnceThatSelectsAlongTwoWays) {
    Device device(RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) + Steady("B", {"Gain"}) +
                  Steady("A", {"B", "Gain"}));
    CSelectorSet set(&device.Get("Gain"));
    EXPECT_THAT(NamesOf(set), ElementsAre("A", "B"));
}

TEST(SelectorSet, EndsWhereSelectorsSelectEachOther) {
    NodesByHand nodes;
    CInteger& gain = nodes.AddValue("Gain");
    CInteger& a = nodes.AddValue("A");
    CInteger& b = nodes.AddValue("B");
    nodes.Link(gain, CPropertyID::pSelecting_ID, a);
    nodes.Link(a, CPropertyID::pSelecting_ID, b);
    nodes.Link(b, CPropertyID::pSelecting_ID, a);
    nodes.Complete();
    CSelectorSet set(&gain);
    EXPECT_THAT(NamesOf(set), ElementsAre("A", "B"));
}

TEST(SelectorSet, BearsAChainOfSelectorsThatNoStackWould) {
    constexpr int kCount = 30000;
    NodesByHand nodes;
    CInteger& gain = nodes.AddValue("Gain");
    CInteger* selected = &gain;
    for (int i = 0; i < kCount; ++i) {
        CInteger& selector = nodes.AddValue(("S" + std::to_string(i)).c_str());
        nodes.Link(*selected, CPropertyID::pSelecting_ID, selector);
        selected = &selector;
    }
    nodes.Complete();
    CSelectorSet set(&gain);
    value_vector list;
    set.GetSelectorList(list);
    EXPECT_EQ(list.size(), static_cast<size_t>(kCount));
}

TEST(SelectorSet, StepsABooleanThroughItsTwoValues) {
    Device device(RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) +
                  RegXml{.name = "FlagReg", .address = 0}() +
                  NodeXml("Boolean", "Flag", "<pValue>FlagReg</pValue>" + Selects({"Gain"})));
    device.Port().Put<int32_t>(0, 1);
    CSelectorSet set(&device.Get("Gain"));
    set.Restore();
    EXPECT_EQ(device.Port().GetAccesses().size(), 0U);
    EXPECT_TRUE(set.SetFirst());
    EXPECT_EQ(set.ToString(), "[Flag=false]");
    EXPECT_EQ(device.Port().Peek<int32_t>(0), 0);
    EXPECT_TRUE(set.SetNext());
    EXPECT_EQ(set.ToString(), "[Flag=true]");
    EXPECT_EQ(device.Port().Peek<int32_t>(0), 1);
    EXPECT_FALSE(set.SetNext());
    EXPECT_EQ(set.ToString(), "[Flag=false]");
    set.Restore();
    EXPECT_EQ(device.Port().Peek<int32_t>(0), 1);
    EXPECT_THAT(NamesOf(set), ElementsAre("Flag"));
}

TEST(SelectorSet, ChecksTheAccessToABooleanAtEachRound) {
    Device device(RootXml({"Gain"}) + SelectedXml("Gain", kGain, {}) +
                  RegXml{.name = "FlagReg", .address = 0}() +
                  NodeXml("Boolean", "Flag", "<pValue>FlagReg</pValue>" + Selects({"Gain"})));
    CSelectorSet set(&device.Get("Gain"));
    device.Get("Flag").ImposeAccessMode(RO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { set.SetFirst(); }),
              "Selector 'Flag' is not writable");
    device.Get("Flag").ImposeAccessMode(WO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { set.SetFirst(); }),
              "Selector 'Flag' is not readable");
}

TEST(SelectorSet, PassesBySelectorsOfOtherKinds) {
    const EngineLog log;
    NodesByHand nodes;
    CInteger& gain = nodes.AddValue("Gain");
    auto& selector = nodes.Add<CFloat>("Selector");
    nodes.Set(selector, CPropertyID::Value_ID, 1.5);
    nodes.Link(gain, CPropertyID::pSelecting_ID, selector);
    nodes.Complete();
    selector.ImposeAccessMode(RW);
    const CSelectorSet set(&gain);
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_THAT(log.Lines("GenApi.Device.Misc.Selector"),
                ElementsAre(EngineLog::Line{
                    LogWarning, "Node 'Selector' is passed by : unsupported selector interface"}));
}

TEST(SelectorSet, PassesBySelectorsAtFault) {
    const EngineLog log;
    XmlNodeMap nodes(IntegerXml("Bad", "", "<Value>0</Value>" + Selects({"Gain", "Bad"})) +
                     RegXml{.name = "Gain", .address = 0}());
    const CSelectorSet set(&nodes.Get("Gain"));
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_THAT(log.Lines("GenApi.Device.Misc.Bad"),
                ElementsAre(EngineLog::Line{
                    LogWarning,
                    "Node 'Bad' is passed by : ERROR : pSelected cycle detected : Bad -> Bad"}));
}

TEST(Pointer, HoldsANodeByItsInterface) {
    Device device(IntSelector(kLimits));
    const CPointer<IInteger> integer(&device.Get("Bank"));
    ASSERT_TRUE(integer.IsValid());
    EXPECT_EQ(integer->GetMax(), 2);
    EXPECT_EQ(&*integer, &device.Get<IInteger>("Bank"));
}

TEST(Pointer, HoldsNothingWithoutTheInterface) {
    Device device(IntSelector(kLimits));
    for (INode* const node : {&device.Get("Root"), static_cast<INode*>(nullptr)}) {
        const CPointer<IInteger, INode> integer(node);
        EXPECT_FALSE(integer.IsValid());
        EXPECT_EQ(static_cast<IInteger*>(integer), nullptr);
        EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { integer->GetMax(); }),
                  "NULL pointer dereferenced");
    }
}

}  // namespace EngineTest
