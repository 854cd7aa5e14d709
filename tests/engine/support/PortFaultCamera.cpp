// The camera of the fault tests.

#include "GenApi/ICommand.h"
#include "GenApi/NodeMapFactory.h"
#include "PortFault.h"

namespace EngineTest {

namespace {

constexpr size_t kMemorySize = 0x200;

/// A number that the device holds at the start.
struct StartValue {
    int64_t address;
    int32_t value;
};

constexpr StartValue kStartValues[] = {
    {0x00, 1},      // Implemented
    {0x04, 1},      // Available
    {0x10, 1},      // Index
    {0x18, 1000},   // Max
    {0x1C, 5},      // Inc
    {0x20, 4},      // Length
    {0x24, 0x100},  // Address
    {0x34, 7},      // CommandValue
    {0x40, 10},     // Plain
    {0x80, 20},     // Base
    {0x84, 20},     // Copy
    {0x88, 30},     // First
    {0x98, 1},      // Choice
    {0x100, 40},    // Offset by nothing
    {0x104, 45},    // Moving
};

std::string Rights() {
    return "<pIsImplemented>Implemented</pIsImplemented><pIsAvailable>Available</pIsAvailable>"
           "<pIsLocked>Locked</pIsLocked><pError>Error</pError>";
}

/// A register of four bytes that may not be cached: its value can change at any
/// time.
std::string Switch(const char* name, int address) {
    return RegXml{.name = name, .address = address, .caching = "NoCache"}();
}

std::string Switches() {
    return Switch("Implemented", 0x00) + Switch("Available", 0x04) + Switch("Locked", 0x08) +
           Switch("ErrorReg", 0x0C) + RegXml{.name = "Index", .address = 0x10}() +
           RegXml{.name = "Min", .address = 0x14}() + RegXml{.name = "Max", .address = 0x18}() +
           Switch("Inc", 0x1C) + Switch("Length", 0x20) + Switch("Address", 0x24) +
           Switch("Blocked", 0x28) + Switch("CommandValue", 0x34) +
           R"(<Enumeration Name="Error">
              <EnumEntry Name="None"><Value>0</Value></EnumEntry>
              <EnumEntry Name="Bad"><Value>1</Value></EnumEntry>
              <pValue>ErrorReg</pValue></Enumeration>)";
}

std::string CameraRegisters() {
    return RegXml{.name = "Plain", .address = 0x40, .common = Rights()}() +
           RegXml{
               .name = "Around", .address = 0x44, .caching = "WriteAround", .common = Rights()}() +
           RegXml{.name = "Uncached", .address = 0x48, .caching = "NoCache"}() +
           RegXml{.name = "Polled",
                  .address = 0x4C,
                  .common = Element("pBlockPolling", "Blocked"),
                  .polling = "<PollingTime>10</PollingTime>"}() +
           R"(<IntReg Name="Moving"><pAddress>Address</pAddress><pIndex Offset="4">Index</pIndex>
              <pIndex pOffset="Min">Inc</pIndex><pLength>Length</pLength>
              <AccessMode>RW</AccessMode><pPort>Device</pPort>
              <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
              <MaskedIntReg Name="LowBits">)" +
           Rights() +
           R"(<Address>0x50</Address><Length>4</Length>
              <AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>0</LSB><MSB>7</MSB>
              <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></MaskedIntReg>
              <MaskedIntReg Name="HighBits"><Address>0x54</Address><Length>4</Length>
              <AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>
              <LSB>8</LSB><MSB>15</MSB>
              <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></MaskedIntReg>
              <FloatReg Name="Single">)" +
           Rights() +
           R"(<Address>0x58</Address><Length>4</Length>
              <AccessMode>RW</AccessMode><pPort>Device</pPort>
              <Endianess>LittleEndian</Endianess></FloatReg>
              <FloatReg Name="Double"><Address>0x60</Address><Length>8</Length>
              <AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>
              <Endianess>BigEndian</Endianess></FloatReg>
              <StringReg Name="Text">)" +
           Rights() +
           R"(<Address>0x68</Address><Length>16</Length>
              <AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
              <Register Name="Raw">)" +
           Rights() +
           R"(<Address>0x78</Address><pLength>Length</pLength>
              <AccessMode>RW</AccessMode><pPort>Device</pPort></Register>)";
}

std::string Integers() {
    return RegXml{.name = "Base", .address = 0x80}() + RegXml{.name = "Copy", .address = 0x84}() +
           RegXml{.name = "First", .address = 0x88, .common = Element("pIsLocked", "Locked")}() +
           RegXml{.name = "Second", .address = 0x8C}() +
           RegXml{.name = "Third", .address = 0x90}() + R"(<Integer Name="Both">)" + Rights() +
           R"(<pValueCopy>Copy</pValueCopy><pValue>Base</pValue>
              <pMin>Min</pMin><pMax>Max</pMax><pInc>Inc</pInc></Integer>
              <Integer Name="Indexed"><pIndex>Index</pIndex>
              <pValueIndexed Index="1">First</pValueIndexed>
              <pValueIndexed Index="2">Second</pValueIndexed>
              <pValueDefault>Third</pValueDefault></Integer>
              <Integer Name="Sum"><pValue>Both</pValue></Integer>
              <Boolean Name="Flag">)" +
           Rights() +
           R"(<pValue>FlagReg</pValue><OnValue>3</OnValue><OffValue>0</OffValue></Boolean>
              <Command Name="Start">)" +
           Rights() +
           R"(<pValue>StartReg</pValue><pCommandValue>CommandValue</pCommandValue></Command>
              <Enumeration Name="Choice">)" +
           Rights() +
           R"(<EnumEntry Name="Off"><Value>0</Value></EnumEntry>
              <EnumEntry Name="On"><pIsAvailable>Available</pIsAvailable><Value>1</Value>
              </EnumEntry>
              <EnumEntry Name="Once"><Value>2</Value><IsSelfClearing>Yes</IsSelfClearing>
              </EnumEntry>
              <pValue>ChoiceReg</pValue></Enumeration>
              <Integer Name="Nearest"><pValue>Choice</pValue></Integer>)" +
           RegXml{.name = "FlagReg", .address = 0x94}() +
           RegXml{.name = "ChoiceReg", .address = 0x98}() + Switch("StartReg", 0x9C);
}

std::string Computed() {
    return R"(<Float Name="Real">)" + Rights() +
           R"(<pValue>Single</pValue><pMin>Min</pMin><pMax>Max</pMax></Float>
              <Float Name="RealOfInteger"><pValue>Both</pValue></Float>
              <Integer Name="IntegerOfReal"><pValue>Real</pValue></Integer>
              <SwissKnife Name="Knife"><pIsAvailable>Available</pIsAvailable>
              <pVariable Name="A">Double</pVariable>
              <pVariable Name="B.Max">Both</pVariable><Formula>A + B.Max</Formula></SwissKnife>
              <IntSwissKnife Name="IntKnife"><pVariable Name="A">Both</pVariable>
              <pVariable Name="M.Inc">Both</pVariable>
              <pVariable Name="R.AccessMode">Plain</pVariable>
              <Formula>A * M.Inc + R.AccessMode</Formula></IntSwissKnife>
              <Converter Name="Converted">)" +
           Rights() +
           R"(<pVariable Name="K">Inc</pVariable><FormulaTo>FROM * K</FormulaTo>
              <FormulaFrom>TO / K</FormulaFrom><pValue>Double</pValue>
              <Slope>Automatic</Slope></Converter>
              <IntConverter Name="IntConverted"><pVariable Name="K">Inc</pVariable>
              <FormulaTo>FROM * K</FormulaTo><FormulaFrom>TO / K</FormulaFrom>
              <pValue>Both</pValue><Slope>Automatic</Slope></IntConverter>
              <String Name="Word">)" +
           Rights() +
           R"(<pValue>Text</pValue></String>
              <Category Name="Root"><pIsImplemented>Implemented</pIsImplemented>
              <pFeature>Plain</pFeature><pFeature>Both</pFeature></Category>)";
}

CNodeMapFactory& Factory() {
    static CNodeMapFactory factory(
        XmlNodeMap::Describe(Switches() + CameraRegisters() + Integers() + Computed()).c_str());
    return factory;
}

}  // namespace

FaultCamera::FaultCamera(bool isWarm)
    : m_Memory(kMemorySize), m_Map(Factory().CreateNodeMap("Device", false)) {
    for (const StartValue& start : kStartValues) {
        m_Memory.Put(start.address, start.value);
    }
    m_Map->Connect(&m_Port);
    if (isWarm) {
        ReadAll(false);
    }
    node_vector nodes;
    m_Map->GetNodes(nodes);
    for (INode* const node : nodes) {
        NotingCallback::On(*node, m_Calls);
    }
}

std::vector<uint8_t> FaultCamera::Memory() {
    return m_Memory.PeekBytes(0, kMemorySize);
}

std::vector<std::string> FaultCamera::ReadAll(bool ignoreCache) {
    std::vector<std::string> values;
    node_vector nodes;
    m_Map->GetNodes(nodes);
    for (INode* const node : nodes) {
        auto* const value = dynamic_cast<IValue*>(node);
        // To look at a command is to ask the device whether it is done.
        const bool isCommand = dynamic_cast<ICommand*>(node) != nullptr;
        if (value != nullptr && !isCommand && IsReadable(node->GetAccessMode())) {
            const gcstring text = value->ToString(false, ignoreCache);
            values.push_back(std::string(node->GetName()) + " = " + text.c_str());
        }
    }
    return values;
}

void FaultCamera::ExpectAtRest() {
    auto& map = dynamic_cast<INodeMapPrivate&>(*m_Map);
    EXPECT_TRUE(map.GetBathometer().IsZero());
    EXPECT_EQ(map.GetEntryPoint(), "");
    EXPECT_TRUE(IsFreeForOthers(map.GetLock()));
}

void FaultCamera::ExpectTruth() {
    const std::vector<std::string> answers = ReadAll(false);
    EXPECT_EQ(answers, ReadAll(true));
}

}  // namespace EngineTest
