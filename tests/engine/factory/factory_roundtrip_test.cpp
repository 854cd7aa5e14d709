// Live nodes tell all that they were told: data made of them is the data that
// they were made of.

#include <map>
#include <set>
#include <sstream>

#include "FactorySupport.h"
#include "GenApi/IRegister.h"
#include "support/Descriptions.h"

namespace EngineTest {

namespace {

/// The lines of each node, by the line that opens it; a live node gives its
/// properties in another order than a description.
using Told = std::map<std::string, std::multiset<std::string>>;

/// Comments are for readers of the description, and live nodes forget them.
Told Tell(CNodeMapFactory factory) {
    Told told;
    std::istringstream document(factory.ToXml().c_str());
    std::string node;
    bool isInExtension = false;  // whose lines may look like anything
    const auto holds = [](const std::string& line, const char* text) {
        return line.find(text) != std::string::npos;
    };
    for (std::string line; std::getline(document, line);) {
        if (!isInExtension && line.starts_with("    <") && holds(line, " Name=\"")) {
            node = line;
        }
        isInExtension =
            (isInExtension || holds(line, "<Extension>")) && !holds(line, "</Extension>");
        if (!holds(line, "<Comment>")) {
            told[node].insert(line);
        }
    }
    return told;
}

/// The attributes of the root element, in an order of their own.
std::multiset<std::string> RootOf(const Told& told) {
    std::multiset<std::string> attributes;
    for (const std::string& line : told.at("")) {
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            attributes.insert(word.substr(0, word.find('>')));
        }
    }
    return attributes;
}

void ExpectSame(Told before, Told after) {
    EXPECT_EQ(RootOf(before), RootOf(after));
    before.erase("");
    after.erase("");
    EXPECT_EQ(before.size(), after.size());
    for (const auto& [node, lines] : before) {
        EXPECT_EQ(after[node], lines) << node;
    }
}

void ExpectReturn(CNodeMapFactory factory) {
    const MapOwner map(factory.CreateNodeMap("Device", false));
    ExpectSame(Tell(factory), Tell(CNodeMapFactory::CreateNodeDataFromNodeMap(map.operator->())));
}

/// Every kind of property that a node may have, over a few registers.
std::string EveryProperty() {
    const std::string common =
        "<Extension></Extension><ToolTip>T &amp; t</ToolTip><Description>D</Description>"
        "<DisplayName>N</DisplayName><Visibility>Expert</Visibility><DocuURL>http://x</DocuURL>"
        "<IsDeprecated>Yes</IsDeprecated><EventID>9001</EventID>"
        "<pIsImplemented>One</pIsImplemented><pIsAvailable>One</pIsAvailable>"
        "<pIsLocked>Zero</pIsLocked><pBlockPolling>Zero</pBlockPolling>"
        "<ImposedAccessMode>RO</ImposedAccessMode><pError>Error</pError><pAlias>One</pAlias>"
        "<pCastAlias>One</pCastAlias>";
    return IntegerXml("One") + IntegerXml("Zero", "", "<Value>0</Value>") +
           "<Enumeration Name=\"Error\"><EnumEntry Name=\"None\"><Value>0</Value>"
           "<NumericValue>0.5</NumericValue><Symbolic>No</Symbolic>"
           "<IsSelfClearing>Yes</IsSelfClearing></EnumEntry>"
           "<Value>0</Value><PollingTime>50</PollingTime></Enumeration>"
           "<Integer Name=\"All\" NameSpace=\"Standard\" MergePriority=\"1\" ExposeStatic=\"No\">" +
           common +
           "<pInvalidator>One</pInvalidator><Streamable>Yes</Streamable>"
           "<pValue>R</pValue><pValueCopy>R2</pValueCopy><Min>-5</Min><pMax>R2</pMax><Inc>2</Inc>"
           "<Unit>mm</Unit><Representation>HexNumber</Representation>"
           "<pSelected>Indexed</pSelected></Integer>"
           "<Integer Name=\"Indexed\"><pIndex>R</pIndex><ValueIndexed Index=\"1\">11</ValueIndexed>"
           "<pValueIndexed Index=\"2\">R2</pValueIndexed><ValueDefault>7</ValueDefault></Integer>"
           "<Float Name=\"Real\"><Value>0.125</Value><Min>-1.5</Min><pMax>R</pMax>"
           "<Unit>s</Unit><Representation>Logarithmic</Representation>"
           "<DisplayNotation>Scientific</DisplayNotation><DisplayPrecision>3</DisplayPrecision>"
           "</Float>" +
           RegXml{.name = "R", .address = 0}() + RegXml{.name = "R2", .address = 4}() +
           "<IntReg Name=\"Placed\"><Address>0x10</Address><pAddress>R</pAddress>"
           "<pIndex Offset=\"8\">R</pIndex><pIndex pOffset=\"R\">R2</pIndex><pLength>One</pLength>"
           "<AccessMode>WO</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
           "<PollingTime>100</PollingTime><pInvalidator>R</pInvalidator><Sign>Signed</Sign>"
           "<Endianess>BigEndian</Endianess><Unit>V</Unit><Representation>Linear</Representation>"
           "</IntReg>"
           "<MaskedIntReg Name=\"Bits\"><Address>0</Address><Length>4</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>3</LSB><MSB>7</MSB>"
           "<Endianess>LittleEndian</Endianess></MaskedIntReg>"
           "<FloatReg Name=\"FloatReg\"><Address>8</Address><Length>4</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian</Endianess>"
           "<Unit>K</Unit><Representation>PureNumber</Representation>"
           "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>2</DisplayPrecision>"
           "</FloatReg>"
           "<StringReg Name=\"Text\"><Address>16</Address><Length>8</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>"
           "<Register Name=\"Bytes\"><Address>16</Address><Length>8</Length>"
           "<AccessMode>RO</AccessMode><pPort>Device</pPort></Register>"
           "<Boolean Name=\"Flag\"><pValue>R</pValue><OnValue>3</OnValue><OffValue>4</OffValue>"
           "</Boolean>"
           "<Boolean Name=\"Fixed\"><Value>1</Value></Boolean>"
           "<Command Name=\"Run\"><pValue>R</pValue><CommandValue>1</CommandValue></Command>"
           "<Command Name=\"RunBy\"><Value>1</Value><pCommandValue>R</pCommandValue></Command>"
           "<String Name=\"Word\"><Value>word</Value></String>"
           "<String Name=\"Shown\"><pValue>Text</pValue></String>"
           "<Category Name=\"Root\"><pFeature>All</pFeature><pFeature>Real</pFeature></Category>"
           "<SwissKnife Name=\"Knife\"><pVariable Name=\"X\">R</pVariable>"
           "<pVariable Name=\"Y.Min\">R2</pVariable><Formula>X+Y.Min</Formula><Unit>m</Unit>"
           "<Representation>Linear</Representation><DisplayNotation>Fixed</DisplayNotation>"
           "<DisplayPrecision>4</DisplayPrecision></SwissKnife>"
           "<IntSwissKnife Name=\"IntKnife\"><pVariable Name=\"X\">R</pVariable>"
           "<Constant Name=\"C\">3</Constant><Formula>X*C</Formula></IntSwissKnife>"
           "<Converter Name=\"Conv\"><pVariable Name=\"X\">R</pVariable>"
           "<FormulaTo>FROM*X</FormulaTo><FormulaFrom>TO/X</FormulaFrom><pValue>Real</pValue>"
           "<Unit>m</Unit><Slope>Varying</Slope><IsLinear>Yes</IsLinear></Converter>"
           "<IntConverter Name=\"IntConv\"><FormulaTo>FROM</FormulaTo>"
           "<FormulaFrom>TO</FormulaFrom><pValue>R</pValue><Slope>Increasing</Slope>"
           "</IntConverter>"
           "<ConfRom Name=\"Rom\"><Unit>5</Unit><Address>64</Address><Length>32</Length>"
           "<pPort>Device</pPort><IntKey Name=\"Vendor\">3</IntKey>"
           "<TextDesc Name=\"Model\">0x81</TextDesc></ConfRom>"
           "<SmartFeature Name=\"Smart\">"
           "<FeatureID>00112233-4455-6677-8899-AABBCCDDEEFF</FeatureID><Address>128</Address>"
           "<pPort>Device</pPort></SmartFeature>"
           "<AdvFeatureLock Name=\"Lock\"><Address>160</Address><Length>8</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><FeatureID>0x12</FeatureID>"
           "<Timeout>7</Timeout></AdvFeatureLock>"
           "<Port Name=\"Chunk\"><ChunkID>4711</ChunkID><SwapEndianess>Yes</SwapEndianess>"
           "<CacheChunkData>Yes</CacheChunkData></Port>"
           "<Port Name=\"Chunk2\"><pChunkID>Word</pChunkID></Port>";
}

class DescriptionsOfNodes : public testing::TestWithParam<fs::path> {};

}  // namespace

TEST(DataFromNodes, HasEveryPropertyThatTheNodesWereGiven) {
    ExpectReturn(CNodeMapFactory(Description(EveryProperty())));
}

TEST(DataFromNodes, GivesNodesThatReadTheSame) {
    CNodeMapFactory factory(Description(EveryProperty()));
    const MapOwner first(factory.CreateNodeMap());
    const MapOwner second(
        CNodeMapFactory::CreateNodeDataFromNodeMap(first.operator->()).CreateNodeMap());
    TestPort port;
    first->Connect(&port);
    second->Connect(&port);
    port.Put<int32_t>(0, 3);
    port.Put<int32_t>(4, 9);
    for (const char* const name : {"R", "R2", "Bits", "IntKnife", "IntConv", "Indexed"}) {
        EXPECT_EQ(first.ValueOf(name), second.ValueOf(name)) << name;
    }
    EXPECT_EQ(second.ValueOf("IntKnife"), 9);
}

TEST(DataFromNodes, TellsAPropertyByItsName) {
    XmlNodeMap map(
        "<SwissKnife Name=\"K\"><pVariable Name=\"X\">A</pVariable><Formula>X</Formula>"
        "</SwissKnife>" +
        RegXml{.name = "R", .address = 4}() + IntegerXml("A"));
    gcstring value;
    gcstring attribute;
    ASSERT_TRUE(map.Get("K").GetProperty("pVariable", value, attribute));
    EXPECT_EQ(value, "A");
    EXPECT_EQ(attribute, "X");
    ASSERT_TRUE(map.Get("R").GetProperty("Address", value, attribute));
    EXPECT_EQ(value, "4");
    ASSERT_TRUE(map.Get("R").GetProperty("Endianess", value, attribute));
    EXPECT_EQ(value, "LittleEndian");
    gcstring_vector names;
    map.Get("R").GetPropertyNames(names);
    EXPECT_TRUE(names.contains("Length"));
    EXPECT_TRUE(names.contains("pPort"));
}

TEST_P(DescriptionsOfNodes, ComeBackWhole) {
    ExpectReturn(CNodeMapFactory(ContentType_Xml, GetParam().c_str()));
}

INSTANTIATE_TEST_SUITE_P(Files, DescriptionsOfNodes,
                         testing::ValuesIn(Descriptions(OV_SOURCE_FOLDER)),
                         [](const auto& file) { return TestNameOf(file.param); });

}  // namespace EngineTest
