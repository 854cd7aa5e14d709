// Zipped descriptions.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "parser_fixture.h"

namespace NodeDataTest {
namespace {

/// The check sum of zip archives.
uint32_t Crc32(const std::string& data) {
    uint32_t crc = 0xFFFFFFFF;
    for (const char byte : data) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

void AppendLittleEndian(std::string& to, size_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        to += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

/// Writes archives byte by byte, so that tests can spoil each of them.
class ZipWriter {
public:
    enum Method { Stored = 0, Deflated = 8 };

    /// @param claimedSize  what the archive says of the unpacked size; by
    ///                     default the truth
    /// @param crcError     is added to the check sum
    void Add(const std::string& name, const std::string& content, Method method = Stored,
             size_t claimedSize = std::string::npos, uint32_t crcError = 0) {
        const std::string packed = method == Stored ? content : Deflate(content);
        const size_t size = claimedSize == std::string::npos ? content.size() : claimedSize;
        std::string header;
        AppendLittleEndian(header, 20, 2);
        AppendLittleEndian(header, 0, 2);
        AppendLittleEndian(header, method, 2);
        AppendLittleEndian(header, 0x00210000, 4);
        AppendLittleEndian(header, Crc32(content) ^ crcError, 4);
        AppendLittleEndian(header, packed.size(), 4);
        AppendLittleEndian(header, size, 4);
        AppendLittleEndian(header, name.size(), 2);
        AppendLittleEndian(header, 0, 2);
        m_Directory += "PK\x01\x02";
        AppendLittleEndian(m_Directory, 20, 2);
        m_Directory += header + std::string(10, '\0');
        AppendLittleEndian(m_Directory, m_Entries.size(), 4);
        m_Directory += name;
        m_Entries += "PK\x03\x04" + header + name + packed;
        ++m_Count;
    }

    std::string Finish() const {
        std::string end = "PK\x05\x06" + std::string(4, '\0');
        AppendLittleEndian(end, m_Count, 2);
        AppendLittleEndian(end, m_Count, 2);
        AppendLittleEndian(end, m_Directory.size(), 4);
        AppendLittleEndian(end, m_Entries.size(), 4);
        AppendLittleEndian(end, 0, 2);
        return m_Entries + m_Directory + end;
    }

private:
    /// A deflated stream of one block that is not compressed.
    static std::string Deflate(const std::string& content) {
        std::string packed(1, '\x01');
        AppendLittleEndian(packed, content.size(), 2);
        AppendLittleEndian(packed, ~content.size(), 2);
        return packed + content;
    }

    std::string m_Entries;
    std::string m_Directory;
    size_t m_Count = 0;
};

std::string ZipOf(const std::string& content, ZipWriter::Method method = ZipWriter::Stored) {
    ZipWriter writer;
    writer.Add("description.xml", content, method);
    return writer.Finish();
}

class ParserZip : public Parser {
protected:
    ~ParserZip() override {
        std::error_code ignored;
        std::filesystem::remove(FileName(), ignored);
    }
    static std::string FileName() {
        return testing::TempDir() + "/parser_zip_" + std::to_string(::getpid()) + ".zip";
    }
    static std::string WriteFile(const std::string& archive) {
        std::ofstream(FileName(), std::ios::binary) << archive;
        return FileName();
    }
    void ParseMemory(const std::string& archive) {
        CNodeDataMapFactory::ParseXmlBuffer(&m_Map, ContentType_ZippedXml, archive.data(),
                                            archive.size(), false);
    }
    void ParseFile(const std::string& name) {
        CNodeDataMapFactory::ParseXmlFile(&m_Map, ContentType_ZippedXml, name, false);
    }
    std::string FailureOfMemory(const std::string& archive) {
        return FailureOf([&] { ParseMemory(archive); });
    }
    std::string FailureOfFile(const std::string& name) {
        return FailureOf([&] { ParseFile(name); });
    }
    /// Both ways in, with their messages.
    void ExpectFailure(const std::string& archive, const std::string& inMemory,
                       const std::string& inFile) {
        EXPECT_EQ(FailureOfMemory(archive), inMemory);
        EXPECT_EQ(FailureOfFile(WriteFile(archive)), inFile + " Filename = '" + FileName() + "'");
    }

    const std::string m_Document = Describe("<Node Name=\"A\"/>");
};

TEST_F(ParserZip, ReadsAStoredEntry) {
    ParseMemory(ZipOf(m_Document));
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, ReadsADeflatedEntry) {
    ParseMemory(ZipOf(m_Document, ZipWriter::Deflated));
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, ReadsAFile) {
    ParseFile(WriteFile(ZipOf(m_Document, ZipWriter::Deflated)));
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, ExpandsVariablesInTheNameOfAFile) {
    WriteFile(ZipOf(m_Document));
    const std::filesystem::path file = FileName();
    ::setenv("OV_PARSER_ZIP_TEST", file.parent_path().c_str(), 1);
    ParseFile("$(OV_PARSER_ZIP_TEST)/" + file.filename().string());
    EXPECT_TRUE(IsDefined("A"));
    EXPECT_EQ(FailureOfFile("$(OV_PARSER_ZIP_TEST)/no such.zip"),
              "File open failed in ParseXmlFile. Filename = '" + file.parent_path().string() +
                  "/no such.zip'");
    ::unsetenv("OV_PARSER_ZIP_TEST");
}

TEST_F(ParserZip, ReadsTheFirstEntryWhateverItsName) {
    ZipWriter writer;
    writer.Add("any", m_Document);
    writer.Add("description.xml", "no XML");
    ParseMemory(writer.Finish());
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, TellsOfAFirstEntryThatIsNoXml) {
    ZipWriter writer;
    writer.Add("readme.txt", "\nno XML");
    writer.Add("description.xml", m_Document);
    EXPECT_EQ(FailureOfMemory(writer.Finish()), ErrorAt(2, 0, "syntax error"));
}

TEST_F(ParserZip, CutsTheTextAtAZeroByte) {
    ParseMemory(ZipOf(m_Document + std::string(1, '\0') + "<rest"));
    EXPECT_TRUE(IsDefined("A"));
    EXPECT_EQ(FailureOfMemory(ZipOf("<a>" + std::string(1, '\0') + "</a>")),
              ErrorAt(1, 0, "unexpected element encountered"));
    EXPECT_EQ(FailureOfMemory(ZipOf(std::string(1, '\0') + m_Document)),
              ErrorAt(1, 0, "no element found"));
}

TEST_F(ParserZip, TellsOfAnEmptyEntry) {
    EXPECT_EQ(FailureOfMemory(ZipOf("")), ErrorAt(1, 0, "no element found"));
}

TEST_F(ParserZip, TellsOfWhatIsNoArchive) {
    for (const std::string& data :
         {std::string(), std::string("no archive"), m_Document, ZipOf(m_Document).substr(0, 60)}) {
        ExpectFailure(data, "Invalid ZIP string in ParseXmlBuffer",
                      "File open failed in ParseXmlFile.");
    }
}

TEST_F(ParserZip, TellsOfAMissingFileAndOfAFolder) {
    for (const std::string& name : {FileName(), testing::TempDir()}) {
        EXPECT_EQ(FailureOfFile(name),
                  "File open failed in ParseXmlFile. Filename = '" + name + "'");
    }
}

TEST_F(ParserZip, TellsOfAnArchiveWithoutEntries) {
    ExpectFailure(ZipWriter().Finish(), "Zip stat failed in ParseXmlBuffer",
                  "File stat failed in ParseXmlFile.");
}

TEST_F(ParserZip, TellsOfAWrongCheckSum) {
    for (const auto method : {ZipWriter::Stored, ZipWriter::Deflated}) {
        ZipWriter writer;
        writer.Add("a.xml", m_Document, method, std::string::npos, 1);
        ExpectFailure(writer.Finish(), "Unzip failed in ParseXmlBuffer",
                      "File unzip failed in ParseXmlFile.");
    }
}

TEST_F(ParserZip, TellsOfAWrongSize) {
    const std::vector<size_t> sizes{1, m_Document.size() - 1, m_Document.size() + 1, 0xFFFFFFF0};
    for (const size_t size : sizes) {
        ZipWriter writer;
        writer.Add("a.xml", m_Document, ZipWriter::Deflated, size);
        ExpectFailure(writer.Finish(), "Unzip failed in ParseXmlBuffer",
                      "File unzip failed in ParseXmlFile.");
    }
}

TEST_F(ParserZip, TellsOfASpoiltStream) {
    std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    archive[30 + std::string("description.xml").size()] = '\x07';  // no kind of block
    ExpectFailure(archive, "Unzip failed in ParseXmlBuffer", "File unzip failed in ParseXmlFile.");
}

TEST_F(ParserZip, FailsCleanlyForEveryCutArchive) {
    const std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    for (size_t length = 0; length < archive.size(); ++length) {
        EXPECT_EQ(FailureOfMemory(archive.substr(0, length)),
                  "Invalid ZIP string in ParseXmlBuffer")
            << length;
    }
}

}  // namespace
}  // namespace NodeDataTest
