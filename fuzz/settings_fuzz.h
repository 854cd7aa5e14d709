#pragma once
/// What a text of settings can do to those who read it, and to the features that
/// it sets.

#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeaturePersistance.h"
#include "support/XmlNodeMap.h"

namespace SettingsFuzz {

using Bytes = std::span<const uint8_t>;

inline const std::string kMark = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n";
inline const std::string kBanner =
    "\n</" + std::string(51, '-') + "Features are as follows:" + std::string(51, '-') + ">\n";
inline const std::string kHeader = "FileVersion: 1.0\nDeviceModelName: Camera\n";
/// The longest name that is read whole.
inline const std::string kLongName = std::string(1023, 'n');

/// The text that an input stands for. Bytes that no text has stand for whole
/// pieces of it, so that a change of one byte leads from one form to another.
inline std::string TextOf(Bytes input) {
    static const std::string kPieces[] = {
        kHeader,     kBanner,   kMark,     "</",
        "\nLevel\t", "\nOne\t", kLongName, kHeader + kBanner + kMark};
    std::string text;
    for (const uint8_t byte : input) {
        if (byte >= 1 && byte <= std::size(kPieces)) {
            text += kPieces[byte - 1];
        } else {
            text += static_cast<char>(byte);
        }
    }
    return text;
}

/// A live description over memory that can be made as new.
class Module {
public:
    explicit Module(const std::string& body) {
        m_Nodes._LoadXMLFromString(EngineTest::XmlNodeMap::Describe(body).c_str());
        m_Nodes._Connect(&m_Port);
    }

    GenApi_3_0_ORVANE::CNodeMapRef& Nodes() { return m_Nodes; }
    void Reset() {
        m_Port.PutBytes(0, std::vector<uint8_t>(kMemory));
        m_Port.ForgetAccesses();
        m_Nodes._InvalidateNodes();
    }

private:
    static constexpr size_t kMemory = 0x100;

    EngineTest::TestPort m_Port{kMemory};
    GenApi_3_0_ORVANE::CNodeMapRef m_Nodes;
};

/// The feature of a local device or a stream.
inline const std::string kOneFeature = R"(
<Category Name="Root"><pFeature>One</pFeature></Category>
<IntReg Name="One"><Streamable>Yes</Streamable><Address>0</Address><Length>4</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Signed</Sign>
<Endianess>LittleEndian</Endianess></IntReg>)";

/// A feature of each kind that keeps a setting, a selector by number and one by
/// name, and one feature without memory behind it.
inline const std::string kRemoteFeatures = R"(
<Category Name="Root"><pFeature>Bank</pFeature><pFeature>Choice</pFeature>
<pFeature>Level</pFeature><pFeature>Switch</pFeature><pFeature>Text</pFeature>
<pFeature>Bits</pFeature><pFeature>Ratio</pFeature><pFeature>Gain</pFeature>
<pFeature>Step</pFeature><pFeature>Go</pFeature><pFeature>Nowhere</pFeature></Category>
<String Name="DeviceModelName"><Value>Camera</Value></String>
<Integer Name="Bank"><Streamable>Yes</Streamable><pValue>BankReg</pValue><Min>0</Min><Max>1</Max>
<pSelected>Level</pSelected></Integer>
<IntReg Name="BankReg"><Address>0x10</Address><Length>1</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>
<Enumeration Name="Choice"><Streamable>Yes</Streamable>
<EnumEntry Name="Low"><Value>0</Value></EnumEntry>
<EnumEntry Name="High"><Value>1</Value></EnumEntry>
<pValue>ChoiceReg</pValue><pSelected>Level</pSelected></Enumeration>
<IntReg Name="ChoiceReg"><Address>0x14</Address><Length>1</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>
<IntReg Name="Level"><Streamable>Yes</Streamable><Address>0x40</Address>
<pIndex Offset="4">Bank</pIndex><pIndex Offset="8">Choice</pIndex><Length>4</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Signed</Sign>
<Endianess>BigEndian</Endianess></IntReg>
<Boolean Name="Switch"><Streamable>Yes</Streamable><pValue>SwitchReg</pValue>
<OnValue>1</OnValue><OffValue>0</OffValue></Boolean>
<MaskedIntReg Name="SwitchReg"><Address>0x18</Address><Length>4</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>3</LSB><MSB>3</MSB>
<Endianess>LittleEndian</Endianess></MaskedIntReg>
<StringReg Name="Text"><Streamable>Yes</Streamable><Address>0x20</Address><Length>8</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
<MaskedIntReg Name="Bits"><Streamable>Yes</Streamable><Address>0x18</Address><Length>4</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>8</LSB><MSB>17</MSB><Sign>Signed</Sign>
<Endianess>LittleEndian</Endianess></MaskedIntReg>
<FloatReg Name="Ratio"><Streamable>Yes</Streamable><Address>0x28</Address><Length>8</Length>
<AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>LittleEndian</Endianess></FloatReg>
<Converter Name="Gain"><Streamable>Yes</Streamable><FormulaTo>FROM * 10</FormulaTo>
<FormulaFrom>TO / 10</FormulaFrom><pValue>GainReg</pValue></Converter>
<FloatReg Name="GainReg"><Address>0x30</Address><Length>8</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>LittleEndian</Endianess></FloatReg>
<IntConverter Name="Step"><Streamable>Yes</Streamable><FormulaTo>FROM / 4</FormulaTo>
<FormulaFrom>TO * 4</FormulaFrom><pValue>StepReg</pValue></IntConverter>
<IntReg Name="StepReg"><Address>0x38</Address><Length>2</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
<Command Name="Go"><pValue>GoReg</pValue><CommandValue>1</CommandValue></Command>
<IntReg Name="GoReg"><Address>0x3C</Address><Length>4</Length><AccessMode>WO</AccessMode>
<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>
<IntReg Name="Nowhere"><Address>0x1000</Address><Length>4</Length><AccessMode>RW</AccessMode>
<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>)";

/// The three node maps of a camera.
class Camera {
public:
    void Reset() {
        for (Module& module : m_Modules) {
            module.Reset();
        }
    }
    /// Of the remote device, the local device, the stream.
    GenApi_3_0_ORVANE::CNodeMapRef& Nodes(size_t i) { return m_Modules[i].Nodes(); }
    OVTLClass::CFeaturePersistance Persistance() { return {Nodes(0), Nodes(1), Nodes(2)}; }
    std::vector<std::string> Import(const std::string& text, bool verify) {
        std::istringstream source(text);
        return Persistance().ImportFeaturesFromStream(source, verify);
    }

private:
    Module m_Modules[3]{Module(kRemoteFeatures), Module(kOneFeature), Module(kOneFeature)};
};

inline Camera& TheCamera() {
    static Camera camera;
    return camera;
}

}  // namespace SettingsFuzz
