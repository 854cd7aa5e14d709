#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "HexBytes.h"
#include "ScriptedLink.h"
#include "gige/device/CameraDescription.h"
#include "gige/device/CameraRange.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using OvProducer::Failure;
using OvProducer::Port;

/// A camera of 64 KiB that can be read.
class CameraDescriptionTest : public testing::Test {
protected:
    CameraDescriptionTest() {
        m_link->Answer([this](const CommandPacket& command) {
            const MemoryRange range = ParseRange(command.payload).value();
            if (range.address + range.count > m_content.size()) {
                return std::vector<ScriptedReply>{
                    {0ms, AnswerOf(command, {}, Status::InvalidAddress)}};
            }
            m_bytesRead += range.count;
            const Bytes memory =
                BuildMemory({.address = range.address,
                             .bytes = ByteView(m_content).subspan(range.address, range.count)});
            return std::vector<ScriptedReply>{{0ms, AnswerOf(command, memory)}};
        });
        m_port.Registers().Add(0, std::make_unique<CameraRange>(m_memory));
    }

    void Put(uint32_t address, std::string_view text) {
        WriteText(std::span(m_content).subspan(address, text.size()), text);
    }
    void PutUrls(std::string_view first, std::string_view second) {
        WriteText(std::span(m_content).subspan(0x200, 512), first);
        WriteText(std::span(m_content).subspan(0x400, 512), second);
    }
    std::string ReadPort(const OvProducer::DescriptionUrl& url) const {
        std::string text(url.size, '\0');
        m_port.Read(url.address, std::as_writable_bytes(std::span(text)));
        return text;
    }
    void ExpectUnavailable(const std::string& text) {
        try {
            AddCameraDescription(m_memory, m_port);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_NOT_AVAILABLE);
            EXPECT_EQ(failure.what(), text);
        }
    }

    Bytes m_content = Bytes(65536);
    size_t m_bytesRead = 0;
    ScriptedLink* const m_link = new ScriptedLink;  // owned by the channel
    ControlChannel m_channel{std::unique_ptr<DatagramLink>(m_link), 1};
    CameraMemory m_memory{m_channel};
    Port m_port{{}};
};

TEST_F(CameraDescriptionTest, IsThatOfTheFirstPlace) {
    PutUrls("Local:first.xml; 0x8000;6", "Local:second.zip;9000;8");
    Put(0x8000, "<xml/>");
    Put(0x9000, "PK\3\4....");
    AddCameraDescription(m_memory, m_port);
    ASSERT_EQ(m_port.Urls().size(), 1U);
    EXPECT_EQ(m_port.UrlAt(0).url, "Local:first.xml;8000;6");
    EXPECT_EQ(m_port.UrlAt(0).fileName, "first.xml");
    EXPECT_EQ(ReadPort(m_port.UrlAt(0)), "<xml/>");
}

TEST_F(CameraDescriptionTest, IsThatOfTheSecondPlaceIfTheFirstCantBeRead) {
    Put(0x9000, "PK\3\4....");
    for (const char* first :
         {"", "Local:first.xml;20000;6", "Local:first.xml;8000;6", "http://a/first.xml",
          "File:/no/such/file.xml", "Local:first.xml;8000;FFFFFFFFFF"}) {
        Port port{{}};
        PutUrls(first, "Local:second.zip;9000;8");
        AddCameraDescription(m_memory, port);
        ASSERT_EQ(port.Urls().size(), 1U) << first;
        EXPECT_EQ(port.UrlAt(0).url, "Local:second.zip;9000;8") << first;
    }
}

TEST_F(CameraDescriptionTest, IsNotReadAsAWhole) {
    PutUrls("Local:first.xml;8000;8000", "");
    Put(0x8000, "<xml/>");
    AddCameraDescription(m_memory, m_port);
    EXPECT_EQ(m_bytesRead, 512U + 16U);
}

TEST_F(CameraDescriptionTest, MayBeginWithBlanksOrTheMarkOfItsEncoding) {
    for (const char* beginning : {"\r\n <xml/>", "\xEF\xBB\xBF<xml/>"}) {
        Port port{{}};
        PutUrls("Local:first.xml;8000;9", "");
        Put(0x8000, beginning);
        AddCameraDescription(m_memory, port);
        EXPECT_EQ(port.Urls().size(), 1U);
    }
}

TEST_F(CameraDescriptionTest, OfThisMachineIsServedByThePort) {
    const auto path = std::filesystem::path(testing::TempDir()) / "gige_description.xml";
    std::ofstream(path) << "<host/>";
    PutUrls("File://" + path.string(), "");
    AddCameraDescription(m_memory, m_port);
    ASSERT_EQ(m_port.Urls().size(), 1U);
    EXPECT_EQ(m_port.UrlAt(0).address, 0x1'0000'0000U);
    EXPECT_EQ(m_port.UrlAt(0).url.substr(0, 6), "Local:");
    EXPECT_EQ(ReadPort(m_port.UrlAt(0)), "<host/>");
    std::filesystem::remove(path);
}

TEST_F(CameraDescriptionTest, SaysOfBothPlacesWhyItCantBeHad) {
    PutUrls("Local:first.xml;8000;6", "http://a/second.xml");
    ExpectUnavailable(
        "The camera's description can't be had: \"Local:first.xml;8000;6\": neither an XML text "
        "nor a zip archive is there; \"http://a/second.xml\": descriptions on the web aren't "
        "fetched");
    PutUrls("Local:first.xml;FFFFFFFE;6", "nonsense");
    ExpectUnavailable(
        "The camera's description can't be had: \"Local:first.xml;FFFFFFFE;6\": it can't have 6 "
        "bytes there; \"nonsense\": that names no description");
    PutUrls("Local:first.xml;20000;6", "File:/no/such/file.xml");
    ExpectUnavailable(
        "The camera's description can't be had: \"Local:first.xml;20000;6\": The camera refused a "
        "read: no such register (0x8003); \"File:/no/such/file.xml\": this machine has no such "
        "description");
    EXPECT_TRUE(m_port.Urls().empty());
}

}  // namespace
