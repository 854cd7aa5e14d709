#pragma once
/// Three node maps whose settings go into one text and come back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeaturePersistance.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {

inline const std::string kHyphens(51, '-');
inline const std::string kMark = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n";

inline std::string Banner(const std::string& title) {
    return "\n</" + kHyphens + title + kHyphens + ">\n";
}
inline const std::string kRemoteBanner = Banner("Remote device features are as follows:");
inline const std::string kLocalBanner = Banner("Local device features are as follows:");
inline const std::string kStreamBanner = Banner("Stream features are as follows:");

inline const std::string kHeader = "FileVersion: 1.0\nDeviceModelName: Camera One\n";

/// A text with those entries for each of the three maps.
inline std::string TextWith(const std::string& remote, const std::string& local = "",
                            const std::string& stream = "", const std::string& header = kHeader) {
    return header + kRemoteBanner + kMark + remote + kLocalBanner + kMark + local + kStreamBanner +
           kMark + stream;
}

/// A live description.
class Module {
public:
    explicit Module(const std::string& body) {
        nodes._LoadXMLFromString(EngineTest::XmlNodeMap::Describe(body).c_str());
        nodes._Connect(&port);
    }

    int32_t At(int64_t address) { return port.Peek<int32_t>(address); }

    EngineTest::TestPort port;
    GenApi_3_0_ORVANE::CNodeMapRef nodes;
};

/// A streamable number of four bytes.
inline std::string Number(const std::string& name, int address, const std::string& more = "") {
    return DescriptionXml::RegXml{.name = name,
                                  .caching = "",
                                  .common = "<Streamable>Yes</Streamable>",
                                  .place = DescriptionXml::At(address) + more}();
}

/// What a camera has for its settings, where each is, and the category that
/// makes features of them.
namespace remote_camera {
constexpr int kOffset = 0x10;
constexpr int kBank = 0x14;
constexpr int kGainRaw = 0x18;
/// Four bytes for each bank.
constexpr int kLevel = 0x20;

inline const std::string kModel =
    "<String Name=\"DeviceModelName\"><Value>Camera One</Value></String>";
/// Whatever is written, "Gain" holds tenths.
inline const std::string kSettings =
    "<Category Name=\"Root\"><pFeature>Offset</pFeature>"
    "<pFeature>Bank</pFeature><pFeature>Level</pFeature><pFeature>Gain</pFeature></Category>" +
    Number("Offset", kOffset) +
    "<Integer Name=\"Bank\"><pValue>BankReg</pValue><Min>0</Min><Max>1</Max>"
    "<pSelected>Level</pSelected></Integer>" +
    "<IntReg Name=\"BankReg\"><Address>0x14</Address><Length>4</Length><AccessMode>RW</AccessMode>"
    "<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>" +
    Number("Level", kLevel, "<pIndex Offset=\"4\">Bank</pIndex>") +
    "<Converter Name=\"Gain\"><Streamable>Yes</Streamable><FormulaTo>FROM * 10</FormulaTo>"
    "<FormulaFrom>TO / 10</FormulaFrom><pValue>GainRaw</pValue></Converter>"
    "<IntReg Name=\"GainRaw\"><Address>0x18</Address><Length>4</Length><AccessMode>RW</AccessMode>"
    "<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>";
}  // namespace remote_camera

class PersistenceTest : public ::testing::Test {
protected:
    explicit PersistenceTest(const std::string& remoteBody = remote_camera::kModel +
                                                             remote_camera::kSettings)
        : remote(remoteBody) {}

    CFeaturePersistance Persistance() { return {remote.nodes, local.nodes, stream.nodes}; }

    std::string Export() {
        std::ostringstream text;
        Persistance().ExportFeaturesToStream(text);
        return text.str();
    }
    std::vector<std::string> Import(const std::string& text, bool verify = false) {
        std::istringstream source(text);
        return Persistance().ImportFeaturesFromStream(source, verify);
    }

    /// The text of the plain exception that an import throws.
    std::string RefusalOf(const std::string& text) {
        try {
            Import(text);
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(typeid(error), typeid(std::runtime_error)) << error.what();
            return error.what();
        }
        ADD_FAILURE() << "nothing was raised";
        return "";
    }

    Module remote;
    Module local{"<Category Name=\"Root\"><pFeature>Delay</pFeature></Category>" +
                 Number("Delay", 0x10)};
    Module stream{"<Category Name=\"Root\"><pFeature>Depth</pFeature></Category>" +
                  Number("Depth", 0x10)};
};

}  // namespace OVTLClass
