// Descriptions that name the wrong kind of node, or none: each ends in an
// exception, whatever part of it is wrong, and leaves the process alive.

#include <gtest/gtest.h>

#include "GenApi/IValue.h"
#include "GenApi/NodeMapFactory.h"
#include "support/XmlNodeMap.h"

namespace EngineTest {

namespace {

using namespace GenApi_3_0_ORVANE;
using GenICam_3_0_ORVANE::GenericException;

struct BadDescription {
    const char* name;
    const char* body;
};

const BadDescription kBadDescriptions[] = {
    {"ANumberUnderTheNameOfAnEntry",
     R"(<Integer Name="EnumEntry_E_A"><Value>1</Value></Integer>
        <Enumeration Name="E"><EnumEntry Name="A"><Value>0</Value></EnumEntry>
        <Value>0</Value></Enumeration>)"},
    {"AnEntryUnderTheNameOfANumber",
     R"(<Enumeration Name="E"><EnumEntry Name="A"><Value>0</Value></EnumEntry>
        <Value>0</Value></Enumeration>
        <Integer Name="EnumEntry_E_A"><Value>1</Value></Integer>)"},
    {"ARegisterWithoutPort",
     R"(<IntReg Name="R"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>
        <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>)"},
    {"AValueThatIsACategory",
     R"(<Category Name="C"/><Integer Name="I"><pValue>C</pValue></Integer>)"},
    {"APortThatIsANumber",
     R"(<Integer Name="I"><Value>1</Value></Integer>
        <IntReg Name="R"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>
        <pPort>I</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>)"},
    {"AVariableThatIsACategory",
     R"(<Category Name="C"/><IntSwissKnife Name="K"><pVariable Name="X">C</pVariable>
        <Formula>X</Formula></IntSwissKnife>)"},
    {"AnAddressThatIsAText",
     R"(<StringReg Name="S"><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode>
        <pPort>Device</pPort></StringReg>
        <IntReg Name="R"><pAddress>S</pAddress><Length>4</Length><AccessMode>RW</AccessMode>
        <pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>)"},
    {"ALockThatIsACategory",
     R"(<Category Name="C"/><Integer Name="I"><pIsLocked>C</pIsLocked><Value>1</Value></Integer>)"},
    {"ASelectedNodeThatIsMissing",
     R"(<Integer Name="I"><Value>1</Value><pSelected>Nothing</pSelected></Integer>)"},
    {"ACommandWithoutValue", R"(<Command Name="C"><CommandValue>1</CommandValue></Command>)"},
    {"AnEnumerationWithoutValue",
     R"(<Enumeration Name="E"><EnumEntry Name="A"><Value>0</Value></EnumEntry></Enumeration>)"},
    {"ABooleanOverACategory",
     R"(<Category Name="C"/><Boolean Name="B"><pValue>C</pValue></Boolean>)"},
    {"AFeatureOfACategoryThatIsMissing",
     R"(<Category Name="Root"><pFeature>Nothing</pFeature></Category>)"},
    {"ALengthOfZero",
     R"(<IntReg Name="R"><Address>0</Address><Length>0</Length><AccessMode>RW</AccessMode>
        <pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>)"},
    {"ALengthOfNine",
     R"(<IntReg Name="R"><Address>0</Address><Length>9</Length><AccessMode>RW</AccessMode>
        <pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>)"},
    {"AFloatOfThreeBytes",
     R"(<FloatReg Name="R"><Address>0</Address><Length>3</Length><AccessMode>RW</AccessMode>
        <pPort>Device</pPort><Endianess>LittleEndian</Endianess></FloatReg>)"},
    {"BitsBeyondTheRegister",
     R"(<MaskedIntReg Name="R"><Address>0</Address><Length>2</Length><AccessMode>RW</AccessMode>
        <pPort>Device</pPort><LSB>3</LSB><MSB>40</MSB><Sign>Unsigned</Sign>
        <Endianess>LittleEndian</Endianess></MaskedIntReg>)"},
    {"AFormulaThatIsNone", R"(<IntSwissKnife Name="K"><Formula>1 +* ((</Formula></IntSwissKnife>)"},
    {"AFormulaWithAnUnknownName",
     R"(<SwissKnife Name="K"><Formula>Nobody + 1</Formula></SwissKnife>)"},
};

class BadDescriptionTest : public testing::TestWithParam<BadDescription> {};

/// Whether anything between the text and the last value raised an exception.
bool IsRefusedSomewhere(const std::string& body) {
    try {
        XmlNodeMap map(body);
        node_vector nodes;
        map->GetNodes(nodes);
        for (INode* const node : nodes) {
            node->GetAccessMode();
            if (auto* const value = dynamic_cast<IValue*>(node)) {
                value->ToString();
            }
        }
        return false;
    } catch (const GenericException& failure) {
        EXPECT_STRNE(failure.GetDescription(), "");
        return true;
    }
}

TEST_P(BadDescriptionTest, IsRefused) {
    EXPECT_TRUE(IsRefusedSomewhere(GetParam().body));
}

INSTANTIATE_TEST_SUITE_P(All, BadDescriptionTest, testing::ValuesIn(kBadDescriptions),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace

}  // namespace EngineTest
