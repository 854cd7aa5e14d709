#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "HexBytes.h"
#include "framework/Zip.h"
#include "gige/device/DescriptionText.h"
#include "gige/device/ResetCommand.h"

namespace {

using namespace OvGige;

std::string Description(const std::string& nodes) {
    return "<?xml version=\"1.0\"?><RegisterDescription xmlns=\"http://x\">"
           "<Port Name=\"Device\"/><Port Name=\"Chunk\"><ChunkID>1</ChunkID></Port>" +
           nodes + "</RegisterDescription>";
}

constexpr const char* kCommand =
    "<Command Name=\"DeviceReset\"><pValue>Reg</pValue><CommandValue>1</CommandValue></Command>";

std::string Register(const std::string& properties) {
    return "<IntReg Name=\"Reg\">" + properties + "</IntReg>";
}

constexpr const char* kUsual =
    "<Address>0xA000</Address><Length>4</Length><pPort>Device</pPort>"
    "<Endianess>BigEndian</Endianess>";

TEST(ResetCommandText, HasAConstantRegister) {
    EXPECT_EQ(FindResetCommand(Description(kCommand + Register(kUsual))),
              (ResetCommand{0xA000, FromHex("00 00 00 01")}));
}

TEST(ResetCommandText, MayBeInAGroup) {
    EXPECT_EQ(FindResetCommand(Description("<Group Comment=\"All\">" +
                                           (kCommand + Register(kUsual)) + "</Group>")),
              (ResetCommand{0xA000, FromHex("00 00 00 01")}));
}

TEST(ResetCommandText, MayHaveItsValueThroughOtherNodes) {
    const std::string nodes =
        "<Command Name=\"DeviceReset\"><pValue>Value</pValue><CommandValue> 0x0102 "
        "</CommandValue></Command><Integer Name=\"Value\"><pValue>Reg</pValue></Integer>" +
        Register(
            "<Address>4096</Address><Address>0x10</Address><Length>2</Length>"
            "<pPort>Device</pPort><Endianess>LittleEndian</Endianess>");
    EXPECT_EQ(FindResetCommand(Description(nodes)), (ResetCommand{0x1010, FromHex("02 01")}));
}

TEST(ResetCommandText, IsNothingThatHasToBeEvaluated) {
    const std::string variable = "<Length>4</Length><pPort>Device</pPort>";
    for (const std::string& nodes :
         {std::string(), std::string(kCommand), std::string(kCommand) + Register(variable),
          kCommand + Register("<pAddress>A</pAddress>" + variable),
          kCommand + Register("<Address>1</Address><pIndex>A</pIndex>" + variable),
          kCommand + Register("<Address>1</Address><IntSwissKnife Name=\"S\"/>" + variable),
          kCommand + Register("<Address>1</Address><pLength>A</pLength><pPort>Device</pPort>"),
          kCommand + Register("<Address>1</Address><Length>4</Length><pPort>Chunk</pPort>"),
          kCommand + Register("<Address>1</Address><Length>16</Length><pPort>Device</pPort>"),
          std::string("<Command Name=\"DeviceReset\"><pValue>Reg</pValue>"
                      "<pCommandValue>V</pCommandValue></Command>") +
              Register(kUsual),
          std::string("<Command Name=\"DeviceReset\"><pValue>Value</pValue><CommandValue>1"
                      "</CommandValue></Command><Integer Name=\"Value\"><pValue>Value</pValue>"
                      "</Integer>"),
          std::string("not XML <")}) {
        EXPECT_FALSE(FindResetCommand(Description(nodes))) << nodes;
    }
}

class DescriptionTextTest : public testing::Test {
protected:
    std::string ReadBack(const std::vector<std::byte>& file) {
        OvProducer::Port port{OvProducer::PortFacts{}};
        port.AddFile("Camera.zip", file, 0x1000);
        return ReadDescription(port);
    }
};

TEST_F(DescriptionTextTest, IsUnpacked) {
    const std::string text(100'000, 'x');
    EXPECT_EQ(ReadBack(OvProducer::MakeZip("Camera.xml", text)), text);
}

TEST_F(DescriptionTextTest, NeedsNoSizesInTheArchivesHeader) {
    auto file = OvProducer::MakeZip("Camera.xml", "<RegisterDescription/>");
    std::fill_n(file.begin() + 18, 8, std::byte{0});
    EXPECT_EQ(ReadBack(file), "<RegisterDescription/>");
}

TEST_F(DescriptionTextTest, MayBeStoredAsItIs) {
    const std::string text = "<RegisterDescription/>";
    const auto* const first = reinterpret_cast<const std::byte*>(text.data());
    EXPECT_EQ(ReadBack({first, first + text.size()}), text);
    auto file = FromHex(
        "50 4B 03 04 0A 00 00 00 00 00 00 00 00 00 00 00 00 00 03 00 00 00 03 00 00 00 01 00 00 00"
        "61 41 42 43");
    EXPECT_EQ(ReadBack(file), "ABC");
}

TEST_F(DescriptionTextTest, IsNothingThatIsCutOrBroken) {
    auto file = OvProducer::MakeZip("Camera.xml", std::string(1000, 'x'));
    file.resize(45);
    EXPECT_THROW(ReadBack(file), OvProducer::Failure);
    file.resize(20);
    EXPECT_THROW(ReadBack(file), OvProducer::Failure);
    EXPECT_THROW(
        ReadBack(FromHex("50 4B 03 04 0A 00 00 00 00 00 00 00 00 00 00 00 00 00 FF 00 00 00 FF 00 "
                         "00 00 01 00 00 00 61 41")),
        OvProducer::Failure);
}

}  // namespace
