// The narrow front of a node map: plain values, and one family of exceptions.

#include <array>
#include <functional>

#include "Base/GCException.h"
#include "FeatureNodes.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/EventCallback.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kControlNodes =
    UncachedRegXml("Raw", 0) + UncachedRegXml("ReadOnly", 4, "RO") +
    UncachedRegXml("WriteOnly", 8, "WO") + UncachedRegXml("State", 12) +
    UncachedRegXml("EnumReg", 16) + UncachedRegXml("Switch", 20) + UncachedRegXml("Trigger", 24) +
    R"(<Integer Name="Width"><DisplayName>Width of the image</DisplayName><pValue>Raw</pValue>
         <Min>0</Min><Max>100</Max><Inc>4</Inc></Integer>
       <Integer Name="Absent"><pIsImplemented>State</pIsImplemented><Value>1</Value></Integer>
       <Integer Name="Away"><pIsAvailable>State</pIsAvailable><Value>1</Value></Integer>
       <Float Name="Gain"><pValue>Knife</pValue><Min>0.5</Min><Max>2.5</Max><Unit>dB</Unit></Float>
       <Converter Name="Knife"><FormulaTo>FROM * 4</FormulaTo><FormulaFrom>TO / 4</FormulaFrom>
         <pValue>Raw</pValue></Converter>
       <Float Name="Steps"><pValue>Knife</pValue><Min>0</Min><Max>10</Max><Inc>0.25</Inc></Float>
       <Enumeration Name="Mode">
         <EnumEntry Name="Off"><Value>0</Value></EnumEntry>
         <EnumEntry Name="Missing"><pIsImplemented>State</pIsImplemented><Value>1</Value></EnumEntry>
         <EnumEntry Name="Locked"><pIsAvailable>State</pIsAvailable><Value>2</Value></EnumEntry>
         <EnumEntry Name="On"><Value>3</Value></EnumEntry>
         <pValue>EnumReg</pValue></Enumeration>
       <Boolean Name="Active"><pValue>Switch</pValue></Boolean>
       <StringReg Name="Name"><Address>32</Address><Length>8</Length><AccessMode>RW</AccessMode>
         <pPort>Device</pPort></StringReg>
       <Register Name="Table"><Address>64</Address><Length>16</Length><AccessMode>RW</AccessMode>
         <pPort>Device</pPort></Register>
       <Command Name="Run"><pValue>Trigger</pValue><CommandValue>7</CommandValue></Command>
       <Category Name="Root"><pFeature>Control</pFeature><pFeature>EventControl</pFeature>
         <pFeature>Both</pFeature></Category>
       <Category Name="Control"><pFeature>Width</pFeature><pFeature>Gain</pFeature></Category>
       <Category Name="EventControl"><pFeature>EndData</pFeature><pFeature>Both</pFeature></Category>
       <Integer Name="Both"><Value>1</Value></Integer>
       <Category Name="EndData"><pFeature>EndFrame</pFeature></Category>
       <Integer Name="EndFrame"><Value>1</Value></Integer>
       <Integer Name="Orphan"><Value>1</Value></Integer>)";

/// The nodes above, on memory.
class Control : public ::testing::Test {
protected:
    void SetState(int32_t state) { nodes.Port().Put<int32_t>(12, state); }
    CFeatureControl& control() { return nodes.Control(); }

    FeatureNodes nodes{kControlNodes};
};

TEST_F(Control, TellsWhetherAFeatureExistsAndIsImplemented) {
    EXPECT_TRUE(control().DoExist("Width"));
    EXPECT_TRUE(control().DoIsImplemented("Width"));
    EXPECT_TRUE(control().DoExist("Absent"));
    EXPECT_FALSE(control().DoIsImplemented("Absent"));
    EXPECT_TRUE(control().DoIsImplemented("Away"));
    EXPECT_FALSE(control().DoExist("Unknown"));
    EXPECT_FALSE(control().DoIsImplemented("Unknown"));
}

struct Rights {
    const char* name;
    bool readable;
    bool writable;
};

class ControlRights : public Control, public ::testing::WithParamInterface<Rights> {};

TEST_P(ControlRights, FollowTheAccessMode) {
    EXPECT_EQ(control().DoIsReadable(GetParam().name), GetParam().readable);
    EXPECT_EQ(control().DoIsWritable(GetParam().name), GetParam().writable);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ControlRights,
    ::testing::Values(Rights{"Width", true, true}, Rights{"ReadOnly", true, false},
                      Rights{"WriteOnly", false, true}, Rights{"Absent", false, false},
                      Rights{"Away", false, false}, Rights{"Device", false, false}),
    [](const auto& rights) { return std::string(rights.param.name); });

TEST_F(Control, RaisesForAnUnknownName) {
    const std::string text = "The feature \"Unknown\" is not implemented";
    EXPECT_RAISES(CNotImplementedError, text, control().DoIsReadable("Unknown"));
    EXPECT_RAISES(CNotImplementedError, text, control().DoIsWritable("Unknown"));
    EXPECT_RAISES(CNotImplementedError, text, control().DoGetInt("Unknown"));
    EXPECT_RAISES(CNotImplementedError, text, control().DoSetFloat("Unknown", 1));
    EXPECT_RAISES(CNotImplementedError, text, control().DoGetFeatureDisplayName("Unknown"));
    EXPECT_RAISES(CNotImplementedError, text, control().DoSendCommand("Unknown"));
}

TEST_F(Control, RaisesForAFeatureThatIsNotImplementedLikeForAnUnknownOne) {
    EXPECT_RAISES(CNotImplementedError, "The feature \"Absent\" is not implemented",
                  control().DoGetInt("Absent"));
}

/// A feature of each type that can only be written.
const std::string kWriteOnlyNodes = UncachedRegXml("Raw", 0, "WO") +
                                    R"(<Integer Name="Width"><pValue>Raw</pValue></Integer>
       <Float Name="Gain"><pValue>Raw</pValue></Float>
       <Boolean Name="Active"><pValue>Raw</pValue></Boolean>
       <Enumeration Name="Mode"><EnumEntry Name="Off"><Value>0</Value></EnumEntry>
         <pValue>Raw</pValue></Enumeration>
       <StringReg Name="Name"><Address>32</Address><Length>8</Length><AccessMode>WO</AccessMode>
         <pPort>Device</pPort></StringReg>
       <Register Name="Table"><Address>64</Address><Length>16</Length><AccessMode>WO</AccessMode>
         <pPort>Device</pPort></Register>)";

TEST(ControlOfWriteOnlyFeatures, RefusesReadsInTheEnginesWordsAndNamesTheRead) {
    FeatureNodes nodes(kWriteOnlyNodes);
    const CFeatureControl& control = nodes.Control();
    std::array<uint8_t, 16> bytes{};
    const auto expectRefused = [](const char* function, const std::function<void()>& read) {
        const auto refused = Raised<CInvalidAccessError>(read);
        EXPECT_EQ(refused.GetDescription(), "Node is not readable.");
        EXPECT_EQ(refused.GetFunction(), function);
    };
    expectRefused("DoGetInt", [&] { control.DoGetInt("Width"); });
    expectRefused("DoReadInt", [&] { control.DoReadInt("Width"); });
    expectRefused("DoGetFloat", [&] { control.DoGetFloat("Gain"); });
    expectRefused("DoGetBool", [&] { control.DoGetBool("Active"); });
    expectRefused("DoGetEnum", [&] { control.DoGetEnum("Mode"); });
    expectRefused("DoGetString", [&] { control.DoGetString("Name"); });
    expectRefused("DoReadString", [&] { control.DoReadString("Name"); });
    expectRefused("DoGetBuffer", [&] { control.DoGetBuffer("Table", bytes.size(), bytes.data()); });
    try {
        nodes.Node<GenApi_3_0_ORVANE::IInteger>("Width").GetValue();
        ADD_FAILURE() << "the engine has no words";
    } catch (const GenICam_3_0_ORVANE::AccessException& words) {
        EXPECT_STREQ(words.GetDescription(), "Node is not readable.");
    }
}

TEST(ControlOfWriteOnlyFeatures, FindsAnotherTypeBeforeItRefusesTheRead) {
    FeatureNodes nodes(kWriteOnlyNodes);
    EXPECT_UNEXPECTED(-1, "Dynamic_cast failed", nodes.Control().DoGetInt("Gain"));
}

TEST(ControlOfWriteOnlyFeatures, AnswersWhatIsNoRead) {
    FeatureNodes nodes(kWriteOnlyNodes);
    EXPECT_EQ(nodes.Control().DoGetBufferLength("Table"), 16U);
    EXPECT_EQ(nodes.Control().DoGetEnumEntryNums("Mode"), 1U);
    EXPECT_EQ(nodes.Control().DoGetMaxStringLength("Name"), 8);
    nodes.Control().DoSetInt("Width", 48);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 48);
}

TEST_F(Control, RaisesForAFeatureOfAnotherType) {
    const char* const text = "Dynamic_cast failed";
    EXPECT_UNEXPECTED(-1, text, control().DoGetInt("Gain"));
    EXPECT_UNEXPECTED(-1, text, control().DoGetFloat("Width"));
    EXPECT_UNEXPECTED(-1, text, control().DoGetEnum("Width"));
    EXPECT_UNEXPECTED(-1, text, control().DoGetBool("Width"));
    EXPECT_UNEXPECTED(-1, text, control().DoGetString("Width"));
    EXPECT_UNEXPECTED(-1, text, control().DoGetBufferLength("Width"));
    EXPECT_UNEXPECTED(-1, text, control().DoSendCommand("Width"));
}

TEST_F(Control, GivesTheDisplayName) {
    EXPECT_EQ(control().DoGetFeatureDisplayName("Width"), "Width of the image");
    EXPECT_EQ(control().DoGetFeatureDisplayName("Gain"), "Gain");
}

TEST_F(Control, ReadsAndWritesIntegers) {
    control().DoSetInt("Width", 48);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 48);
    EXPECT_EQ(control().DoGetInt("Width"), 48);
    const FEATURE_INT_RANGE range = control().DoGetIntRange("Width");
    EXPECT_EQ(range.min, 0);
    EXPECT_EQ(range.max, 100);
    EXPECT_EQ(range.inc, 4);
}

TEST_F(Control, ReadsAndWritesFloats) {
    control().DoSetFloat("Gain", 1.5);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), 6);
    EXPECT_DOUBLE_EQ(control().DoGetFloat("Gain"), 1.5);
    const FEATURE_FLOAT_RANGE range = control().DoGetFloatRange("Gain");
    EXPECT_DOUBLE_EQ(range.min, 0.5);
    EXPECT_DOUBLE_EQ(range.max, 2.5);
    EXPECT_EQ(range.unit, "dB");
    EXPECT_FALSE(range.hasInc);
    EXPECT_DOUBLE_EQ(range.inc, 0);
}

TEST_F(Control, GivesTheIncrementOfAFloatThatHasOne) {
    const FEATURE_FLOAT_RANGE range = control().DoGetFloatRange("Steps");
    EXPECT_TRUE(range.hasInc);
    EXPECT_DOUBLE_EQ(range.inc, 0.25);
    EXPECT_EQ(range.unit, "");
}

TEST_F(Control, ReadsAndWritesEnumerationsByNumber) {
    control().DoSetEnum("Mode", 3);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(16), 3);
    EXPECT_EQ(control().DoGetEnum("Mode"), 3);
    EXPECT_EQ(control().DoGetEnumEntryValue("Mode", "On"), 3);
    EXPECT_EQ(control().DoGetEnumEntryValue("Mode", "Locked"), 2);
}

TEST_F(Control, RaisesForAnEntryThatDoesNotExist) {
    EXPECT_RAISES(CInvalidParameterError,
                  "The enumeration feature \"Mode\" does not contain the entry \"None\"",
                  control().DoGetEnumEntryValue("Mode", "None"));
}

std::vector<std::pair<int64_t, std::string>> EntriesOf(const CFeatureControl& control) {
    std::vector<FEATURE_ENUM_ENTRY_INFORMATION> entries;
    control.DoGetEnumDescription("Mode", entries);
    std::vector<std::pair<int64_t, std::string>> list;
    for (const auto& entry : entries) {
        list.emplace_back(entry.value, entry.symbolic);
        EXPECT_EQ(std::string(entry.reserved, sizeof entry.reserved), std::string(32, '\0'));
    }
    return list;
}

TEST_F(Control, LeavesEntriesOutThatCannotBeChosen) {
    EXPECT_EQ(control().DoGetEnumEntryNums("Mode"), 2U);
    EXPECT_THAT(EntriesOf(control()), ElementsAre(std::pair(0, "Off"), std::pair(3, "On")));
}

TEST_F(Control, CountsEntriesOnceTheyCanBeChosen) {
    SetState(1);
    EXPECT_EQ(control().DoGetEnumEntryNums("Mode"), 4U);
    EXPECT_THAT(EntriesOf(control()), ElementsAre(std::pair(0, "Off"), std::pair(1, "Missing"),
                                                  std::pair(2, "Locked"), std::pair(3, "On")));
}

TEST_F(Control, AppendsEntriesToAList) {
    std::vector<FEATURE_ENUM_ENTRY_INFORMATION> entries(1);
    control().DoGetEnumDescription("Mode", entries);
    EXPECT_EQ(entries.size(), 3U);
}

TEST_F(Control, ReadsAndWritesBooleans) {
    control().DoSetBool("Active", true);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(20), 1);
    EXPECT_TRUE(control().DoGetBool("Active"));
    control().DoSetBool("Active", false);
    EXPECT_FALSE(control().DoGetBool("Active"));
}

TEST_F(Control, ReadsAndWritesTexts) {
    control().DoSetString("Name", "Left");
    EXPECT_EQ(control().DoGetString("Name"), "Left");
    EXPECT_EQ(control().DoGetMaxStringLength("Name"), 8);
}

TEST_F(Control, RunsCommands) {
    control().DoSendCommand("Run");
    EXPECT_EQ(nodes.Port().Peek<int32_t>(24), 7);
}

TEST_F(Control, ReadsARegisterIntoABufferOfItsLength) {
    const std::array<uint8_t, 16> written = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    control().DoSetBuffer("Table", written.size(), written.data());
    std::array<uint8_t, 16> read{};
    EXPECT_EQ(control().DoGetBufferLength("Table"), read.size());
    control().DoGetBuffer("Table", read.size(), read.data());
    EXPECT_EQ(read, written);
}

TEST_F(Control, LeavesTheRestOfALargerBufferAlone) {
    std::array<uint8_t, 20> buffer{};
    buffer.fill(0xEE);
    control().DoGetBuffer("Table", buffer.size(), buffer.data());
    EXPECT_EQ(buffer[15], 0);
    EXPECT_EQ(buffer[16], 0xEE);
}

TEST_F(Control, RaisesForABufferTooSmall) {
    std::array<uint8_t, 15> buffer{};
    EXPECT_RAISES(CNeedMoreBufferError, "Need more buffer",
                  control().DoGetBuffer("Table", buffer.size(), buffer.data()));
    EXPECT_EQ(nodes.Port().GetReads(), 0U);
}

TEST_F(Control, RaisesWithoutABuffer) {
    EXPECT_RAISES(CInvalidParameterError, "pBuffer can't be NULL",
                  control().DoGetBuffer("Table", 16, nullptr));
    EXPECT_RAISES(CInvalidParameterError, "pBuffer can't be NULL",
                  control().DoSetBuffer("Table", 16, nullptr));
    EXPECT_RAISES(CInvalidParameterError, "pBuffer can't be NULL",
                  control().DoGetBuffer("Unknown", 16, nullptr));
}

/// The engine's own text of a failure.
template <class Call>
std::string EngineText(const Call& call) {
    try {
        call();
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        return error.GetDescription();
    }
    return "nothing was raised";
}

TEST_F(Control, GivesTheEnginesTextForAValueOutOfRange) {
    auto& width = nodes.Node<GenApi_3_0_ORVANE::IInteger>("Width");
    const std::string text = EngineText([&] { width.SetValue(101); });
    const auto error = Raised<COutOfRangeError>([&] { control().DoSetInt("Width", 101); });
    EXPECT_EQ(error.GetDescription(), text);
    EXPECT_EQ(error.GetFunction(), "DoSetInt");
    EXPECT_THAT(error.GetFile(), ::testing::EndsWith("FeatureControl.cpp"));
    EXPECT_RAISES(COutOfRangeError, EngineText([&] { width.SetValue(3); }),
                  control().DoSetInt("Width", 3));
    auto& gain = nodes.Node<GenApi_3_0_ORVANE::IFloat>("Gain");
    EXPECT_RAISES(COutOfRangeError, EngineText([&] { gain.SetValue(9); }),
                  control().DoSetFloat("Gain", 9));
}

TEST_F(Control, GivesTheEnginesTextForAnEntryThatCannotBeSet) {
    auto& mode = nodes.Node<GenApi_3_0_ORVANE::IEnumeration>("Mode");
    EXPECT_RAISES(CInvalidParameterError, EngineText([&] { mode.SetIntValue(17); }),
                  control().DoSetEnum("Mode", 17));
}

TEST_F(Control, GivesTheEnginesTextForADeniedAccess) {
    auto& readOnly = nodes.Node<GenApi_3_0_ORVANE::IInteger>("ReadOnly");
    auto& writeOnly = nodes.Node<GenApi_3_0_ORVANE::IInteger>("WriteOnly");
    EXPECT_RAISES(CInvalidAccessError, EngineText([&] { readOnly.SetValue(1); }),
                  control().DoSetInt("ReadOnly", 1));
    EXPECT_RAISES(CInvalidAccessError, EngineText([&] { writeOnly.GetValue(); }),
                  control().DoGetInt("WriteOnly"));
}

TEST_F(Control, TakesEveryOtherFailureOfTheEngineForUnexpected) {
    nodes.Port().FailAccess(1);
    EXPECT_UNEXPECTED(-1, "Access failed", control().DoGetInt("Width"));
    nodes.Port().FailAccess(1);
    EXPECT_UNEXPECTED(-1, "Access failed", control().DoSetInt("Width", 4));
}

/// Notes the nodes that it is called with, in a list that its clones share.
class NotingCallback : public IFeatureCallback {
public:
    explicit NotingCallback(std::vector<std::string>& names) : m_names(names) {}
    IFeatureCallback* Clone() const override { return new NotingCallback(m_names); }
    void operator()(GenApi_3_0_ORVANE::INode* node) override {
        m_names.emplace_back(node->GetName().c_str());
    }

private:
    std::vector<std::string>& m_names;
};

/// Callbacks on the nodes above.
class ControlCallbacks : public Control {
protected:
    intptr_t Register(const char* name) {
        auto* const handle = control().DoRegisterFeatureCallback(name, NotingCallback(called));
        return reinterpret_cast<intptr_t>(handle);
    }

    std::vector<std::string> called;
};

TEST_F(ControlCallbacks, AreCalledOnceForAChange) {
    Register("Width");
    control().DoSetInt("Width", 8);
    EXPECT_THAT(called, ElementsAre("Width"));
}

TEST_F(ControlCallbacks, OutliveTheCallbackThatWasGiven) {
    Register("Width");
    Register("Width");
    control().DoSetInt("Width", 8);
    EXPECT_THAT(called, ElementsAre("Width", "Width"));
}

TEST_F(ControlCallbacks, AreNotRegisteredWithAnUnknownFeature) {
    EXPECT_RAISES(CNotImplementedError, "The feature \"Unknown\" is not implemented",
                  Register("Unknown"));
}

TEST_F(ControlCallbacks, AreKnownByFeatureAndHandle) {
    auto* const handle = control().DoRegisterFeatureCallback("Width", NotingCallback(called));
    EXPECT_TRUE(control().CheckExist("Width", handle));
    EXPECT_FALSE(control().CheckExist("Gain", handle));
    EXPECT_FALSE(control().CheckExist("Width", nullptr));
    control().DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(handle));
    EXPECT_FALSE(control().CheckExist("Width", handle));
}

TEST_F(ControlCallbacks, AreNotCalledOnceUnregistered) {
    const intptr_t first = Register("Width");
    Register("Gain");
    control().DoUnregisterFeatureCallback(first);
    control().DoSetFloat("Gain", 1);
    EXPECT_THAT(called, ElementsAre("Gain"));
}

TEST_F(ControlCallbacks, StayWhenAnUnknownHandleIsUnregistered) {
    Register("Width");
    const LogCapture log;
    control().DoUnregisterFeatureCallback(0);
    control().DoUnregisterFeatureCallback(0x1234);
    control().DoSetInt("Width", 8);
    EXPECT_THAT(called, ElementsAre("Width"));
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(ControlCallbacks, MayBeUnregisteredTwice) {
    const intptr_t handle = Register("Width");
    Register("Gain");
    const LogCapture log;
    control().DoUnregisterFeatureCallback(handle);
    EXPECT_NO_THROW(control().DoUnregisterFeatureCallback(handle));
    EXPECT_THAT(log.Lines(), IsEmpty());
    control().DoSetFloat("Gain", 1);
    EXPECT_THAT(called, ElementsAre("Gain")) << "another's stays";
}

TEST_F(ControlCallbacks, GoAllAtOnce) {
    Register("Width");
    Register("Gain");
    control().DoUnregisterAllFeatureCallback();
    control().DoSetInt("Width", 8);
    EXPECT_THAT(called, IsEmpty());
}

TEST_F(Control, TellsTheFeaturesOfEvents) {
    EXPECT_TRUE(control().CheckEventNode("EndData"));
    EXPECT_TRUE(control().CheckEventNode("EndFrame"));
    EXPECT_FALSE(control().CheckEventNode("Width"));
    EXPECT_FALSE(control().CheckEventNode("EventControl"));
    EXPECT_FALSE(control().CheckEventNode("Orphan"));
    EXPECT_FALSE(control().CheckEventNode("Root"));
    EXPECT_FALSE(control().CheckEventNode("Unknown"));
}

TEST_F(Control, EndsTheSearchForEventsAtTheRoot) {
    EXPECT_FALSE(control().CheckEventNode("Both"));
}

}  // namespace
}  // namespace OVTLClass
