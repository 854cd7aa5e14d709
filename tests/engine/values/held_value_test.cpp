// Values that nodes hold themselves: written like any others, and kept.

#include "FactorySupport.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IString.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::string HeldXml(const std::string& tag, const std::string& content) {
    return "<" + tag + " Name=\"Node\">" + content + "</" + tag + ">";
}

std::string NumberedEntryXml(const std::string& name, int value, const std::string& common = "") {
    return "<EnumEntry Name=\"" + name + "\">" + common + Element("Value", std::to_string(value)) +
           "</EnumEntry>";
}

std::string ChoiceXml(const std::string& selected = "") {
    return HeldXml("Enumeration",
                   NumberedEntryXml("Off", 0) + NumberedEntryXml("On", 4) +
                       NumberedEntryXml("Gone", 5, "<pIsAvailable>No</pIsAvailable>") +
                       "<Value>0</Value>" + selected) +
           IntegerXml("No", "", "<Value>0</Value>");
}

/// A node of each kind, its value in the description and another one.
struct KindCase {
    const char* kind;
    std::string xml;
    const char* described;
    const char* written;
};
void PrintTo(const KindCase& kind, std::ostream* out) {
    *out << kind.kind;
}

class HeldValue : public testing::TestWithParam<KindCase> {
protected:
    HeldValue() { m_Nodes.Get<IValue>("Node").FromString(GetParam().written); }

    std::string Value(bool verify = false, bool ignoreCache = false) {
        return m_Nodes.Get<IValue>("Node").ToString(verify, ignoreCache).c_str();
    }

    XmlNodeMap m_Nodes{GetParam().xml};
};

}  // namespace

TEST_P(HeldValue, TakesWhatIsWritten) {
    EXPECT_EQ(m_Nodes.Get("Node").GetAccessMode(), RW);
    EXPECT_EQ(Value(), GetParam().written);
    EXPECT_EQ(Value(true, true), GetParam().written);
    EXPECT_TRUE(m_Nodes.Port().GetAccesses().empty());
}

TEST_P(HeldValue, OutlivesInvalidationAndPolling) {
    m_Nodes.Get("Node").InvalidateNode();
    EXPECT_EQ(Value(), GetParam().written);
    m_Nodes->InvalidateNodes();
    EXPECT_EQ(Value(), GetParam().written);
    m_Nodes->Poll(1000);
    EXPECT_EQ(Value(), GetParam().written);
}

TEST_P(HeldValue, OutlivesTheConnectionToADevice) {
    TestPort other;
    m_Nodes->Connect(&other);
    EXPECT_EQ(Value(), GetParam().written);
}

TEST_P(HeldValue, IsToldToClientsOnce) {
    NotingCallback::Calls calls;
    NotingCallback::On(m_Nodes.Get("Node"), calls);
    m_Nodes.Get<IValue>("Node").FromString(GetParam().described);
    EXPECT_THAT(calls, ElementsAre("Node inside", "Node outside"));
    EXPECT_EQ(Value(), GetParam().described);
}

TEST_P(HeldValue, IsNotWrittenWhereTheNodeIsReadOnly) {
    m_Nodes.Get("Node").ImposeAccessMode(RO);
    EXPECT_EQ(DescriptionOf<AccessException>(
                  [&] { m_Nodes.Get<IValue>("Node").FromString(GetParam().described); }),
              "Node is not writable");
    EXPECT_EQ(Value(), GetParam().written);
}

TEST_P(HeldValue, LeavesWhatTheDescriptionSays) {
    gcstring before;
    gcstring after;
    gcstring attribute;
    XmlNodeMap untouched(GetParam().xml);
    ASSERT_TRUE(untouched.Get("Node").GetProperty("Value", before, attribute));
    ASSERT_TRUE(m_Nodes.Get("Node").GetProperty("Value", after, attribute));
    EXPECT_EQ(after, before);
    const MapOwner copy(CNodeMapFactory::CreateNodeDataFromNodeMap(&m_Nodes.Map()).CreateNodeMap());
    EXPECT_EQ(dynamic_cast<IValue&>(*copy->GetNode("Node")).ToString(), GetParam().described);
}

INSTANTIATE_TEST_SUITE_P(
    Of, HeldValue,
    testing::Values(KindCase{"Integer", HeldXml("Integer", "<Value>1</Value>"), "1", "7"},
                    KindCase{"Float", HeldXml("Float", "<Value>1.5</Value>"), "1.5", "2.25"},
                    KindCase{"Boolean",
                             HeldXml("Boolean",
                                     "<Value>0</Value><OnValue>7</OnValue>"
                                     "<OffValue>5</OffValue>"),
                             "false", "true"},
                    KindCase{"Enumeration", ChoiceXml(), "Off", "On"},
                    KindCase{"String", HeldXml("String", "<Value>a</Value>"), "a", "longer"}),
    [](const auto& kind) { return std::string(kind.param.kind); });

TEST(HeldInteger, KeepsToItsLimitsAndSteps) {
    XmlNodeMap nodes(HeldXml("Integer", "<Value>2</Value><Min>2</Min><Max>10</Max><Inc>4</Inc>"));
    auto& node = nodes.Get<IInteger>("Node");
    const auto refusal = [&](int64_t value) {
        return DescriptionOf<OutOfRangeException>([&] { node.SetValue(value); });
    };
    EXPECT_EQ(refusal(1), "Value = 1 must be equal or greater than Min = 2.");
    EXPECT_EQ(refusal(14), "Value = 14 must be equal or smaller than Max = 10.");
    EXPECT_EQ(refusal(5),
              "The difference between Value = 5 and Min = 2 must be dividable without rest by Inc "
              "= 4.");
    EXPECT_EQ(node.GetValue(), 2);
    node.SetValue(10);
    EXPECT_EQ(node.GetValue(true, true), 10);
}

TEST(HeldFloat, KeepsToItsLimits) {
    XmlNodeMap nodes(HeldXml("Float", "<Value>0.5</Value><Min>0</Min><Max>1</Max>"));
    auto& node = nodes.Get<IFloat>("Node");
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { node.SetValue(1.5); }),
              "Value 1.500000 must be smaller than or equal 1.000000.");
    EXPECT_EQ(node.GetValue(), 0.5);
    node.SetValue(0.75);
    EXPECT_EQ(node.GetValue(true, true), 0.75);
    EXPECT_EQ(node.GetMin(), 0);
    EXPECT_EQ(node.GetMax(), 1);
}

TEST(HeldEnumeration, TakesNothingButEntriesThatAreThere) {
    XmlNodeMap nodes(ChoiceXml());
    auto& node = nodes.Get<IEnumeration>("Node");
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { node.SetIntValue(3); }),
              "Feature 'Node' : cannot convert value '3', the value is invalid.");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { node.SetIntValue(5); }),
              "Failed to write enumeration value. Enum entry is not writable");
    EXPECT_EQ(node.GetIntValue(true, true), 0);
    node.SetIntValue(4);
    EXPECT_EQ(node.GetIntValue(true, true), 4);
}

TEST(HeldCommand, IsExecutedAndDoneAtOnce) {
    XmlNodeMap nodes(HeldXml("Command", "<Value>0</Value><CommandValue>1</CommandValue>") +
                     RegXml{.name = "Counter", .polling = "<pInvalidator>Node</pInvalidator>"}());
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Counter"), calls);
    auto& counter = nodes.Get<IInteger>("Counter");
    counter.GetValue();
    auto& command = nodes.Get<ICommand>("Node");
    command.Execute();
    EXPECT_TRUE(command.IsDone());
    EXPECT_FALSE(counter.IsValueCacheValid());
    EXPECT_THAT(calls, ElementsAre("Counter inside", "Counter outside"));
}

// What depends on a held value.

TEST(HeldFlag, LocksAndUnlocksWhatDependsOnIt) {
    XmlNodeMap nodes(IntegerXml("TLParamsLocked", "", "<Value>0</Value><Min>0</Min><Max>1</Max>") +
                     RegXml{.name = "Width", .common = "<pIsLocked>TLParamsLocked</pIsLocked>"}());
    auto& width = nodes.Get<IInteger>("Width");
    auto& lock = nodes.Get<IInteger>("TLParamsLocked");
    EXPECT_EQ(width.GetAccessMode(), RW);
    NotingCallback::Calls calls;
    NotingCallback::On(nodes.Get("Width"), calls);
    lock.SetValue(1);
    EXPECT_THAT(calls, ElementsAre("Width inside", "Width outside"));
    EXPECT_EQ(width.GetAccessMode(), RO);
    EXPECT_EQ(DescriptionOf<AccessException>([&] { width.SetValue(8); }), "Node is not writable.");
    nodes->InvalidateNodes();
    EXPECT_EQ(width.GetAccessMode(), RO);
    lock.SetValue(0);
    EXPECT_EQ(width.GetAccessMode(), RW);
}

namespace {

/// "Gain" over a register for each of the entries of a selector that holds its
/// value, or over a register whose place a formula computes of that value.
class HeldSelector : public testing::TestWithParam<const char*> {
protected:
    HeldSelector() {
        m_Nodes.Port().Put<int32_t>(0x100, 10);
        m_Nodes.Port().Put<int32_t>(0x110, 20);
    }

    int64_t Gain() { return m_Nodes.Get<IInteger>("Gain").GetValue(); }

    XmlNodeMap m_Nodes{ChoiceXml("<pSelected>Gain</pSelected>") +
                       IntegerXml("Gain", "", "<pValue>GainReg</pValue>") +
                       "<IntSwissKnife Name=\"Place\"><pVariable Name=\"S\">Node</pVariable>"
                       "<Formula>S * 4</Formula></IntSwissKnife>"
                       "<IntReg Name=\"GainReg\"><Address>0x100</Address>" +
                       std::string(GetParam()) +
                       "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                       "<Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>"};
};

}  // namespace

TEST_P(HeldSelector, MovesToTheOtherRegister) {
    EXPECT_EQ(Gain(), 10);
    m_Nodes.Get<IValue>("Node").FromString("On");
    EXPECT_EQ(Gain(), 20);
    m_Nodes.Get<IInteger>("Gain").SetValue(21);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0x110), 21);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0x100), 10);
    m_Nodes.Get<IValue>("Node").FromString("Off");
    EXPECT_EQ(Gain(), 10);
}

TEST_P(HeldSelector, TellsTheClientsOfWhatItSelectsOnce) {
    NotingCallback::Calls calls;
    for (const char* const name : {"Gain", "GainReg", "Node"}) {
        NotingCallback::On(m_Nodes.Get(name), calls);
    }
    m_Nodes.Get<IValue>("Node").FromString("On");
    EXPECT_THAT(calls, UnorderedElementsAre("Gain inside", "Gain outside", "GainReg inside",
                                            "GainReg outside", "Node inside", "Node outside"));
}

INSTANTIATE_TEST_SUITE_P(By, HeldSelector,
                         testing::Values("<pIndex Offset=\"4\">Node</pIndex>",
                                         "<pAddress>Place</pAddress>"),
                         [](const auto& place) { return place.index == 0 ? "Index" : "Address"; });

TEST(Converter, WritesToAHeldValueAndFormulasFollow) {
    XmlNodeMap nodes(HeldXml("Float", "<Value>3</Value>") +
                     "<Converter Name=\"Conv\"><FormulaTo>FROM / 2</FormulaTo>"
                     "<FormulaFrom>TO * 2</FormulaFrom><pValue>Node</pValue></Converter>"
                     "<SwissKnife Name=\"Knife\"><pVariable Name=\"X\">Node</pVariable>"
                     "<Formula>X + 1</Formula></SwissKnife>");
    EXPECT_EQ(nodes.Get<IFloat>("Conv").GetValue(), 6);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 4);
    nodes.Get<IFloat>("Conv").SetValue(10);
    EXPECT_EQ(nodes.Get<IFloat>("Node").GetValue(), 5);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 6);
    nodes.Get<IFloat>("Node").SetValue(7);
    EXPECT_EQ(nodes.Get<IFloat>("Conv").GetValue(), 14);
    EXPECT_EQ(nodes.Get<IFloat>("Knife").GetValue(), 8);
}

TEST(HeldInteger, IsWrittenThroughAnIndex) {
    XmlNodeMap nodes(IntegerXml("Selector", "", "<Value>1</Value>") + IntegerXml("A") +
                     IntegerXml("B") +
                     IntegerXml("Node", "",
                                "<pIndex>Selector</pIndex><pValueIndexed Index=\"1\">A"
                                "</pValueIndexed><pValueDefault>B</pValueDefault>"));
    nodes.Get<IInteger>("Node").SetValue(5);
    EXPECT_EQ(nodes.Get<IInteger>("A").GetValue(), 5);
    EXPECT_EQ(nodes.Get<IInteger>("B").GetValue(), 1);
    nodes.Get<IInteger>("Selector").SetValue(2);
    EXPECT_EQ(nodes.Get<IInteger>("Node").GetValue(), 1);
    nodes.Get<IInteger>("Node").SetValue(6);
    EXPECT_EQ(nodes.Get<IInteger>("A").GetValue(), 5);
    EXPECT_EQ(nodes.Get<IInteger>("B").GetValue(), 6);
}

}  // namespace EngineTest
