// Zipped descriptions.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ParserFixture.h"
#include "support/ZipWriter.h"
#include "zip/LateLibrary.h"

namespace NodeDataTest {
namespace {

using EngineTest::ZipOf;
using EngineTest::ZipWriter;

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
        ParseBlock(ContentType_ZippedXml, archive.data(), archive.size());
    }
    void ParseFile(const std::string& name) { Parser::ParseFile(ContentType_ZippedXml, name); }
    std::string FailureOfMemory(const std::string& archive) {
        return FailureText([&] { ParseMemory(archive); });
    }
    std::string FailureOfFile(const std::string& name) {
        return FailureText([&] { ParseFile(name); });
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

/// Where the directory's record of the first entry begins.
size_t DirectoryOf(const std::string& archive) {
    return archive.find("PK\x01\x02");
}

TEST_F(ParserZip, ReadsAnArchiveWithAComment) {
    const std::string comment = "made by a camera, not PK\x05\x06";
    std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    archive[archive.size() - 2] = static_cast<char>(comment.size());
    ParseMemory(archive + comment);
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, ReadsAnArchiveWithBytesAfterIt) {
    ParseMemory(ZipOf(m_Document, ZipWriter::Deflated) + std::string(1000, '\xFF'));
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, TakesSizesFromTheDirectoryAlone) {
    // Programs that write without going back leave them out before the data.
    std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    archive[6] = 8;
    archive.replace(14, 12, 12, '\0');
    ParseMemory(archive);
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserZip, TellsOfAnEncryptedEntry) {
    std::string archive = ZipOf(m_Document);
    archive[DirectoryOf(archive) + 8] = 1;
    ExpectFailure(archive, "Unzip failed in ParseXmlBuffer", "File unzip failed in ParseXmlFile.");
}

TEST_F(ParserZip, TellsOfAMethodThatIsNotKnown) {
    std::string archive = ZipOf(m_Document);
    constexpr size_t kMethodBesideData = 8;
    archive[kMethodBesideData] = archive[DirectoryOf(archive) + 10] = 98;
    ExpectFailure(archive, "Unzip failed in ParseXmlBuffer", "File unzip failed in ParseXmlFile.");
}

TEST_F(ParserZip, TellsOfADirectoryBeyondTheArchive) {
    std::string archive = ZipOf(m_Document);
    archive[archive.size() - 4] = '\x7F';
    ExpectFailure(archive, "Invalid ZIP string in ParseXmlBuffer",
                  "File open failed in ParseXmlFile.");
}

TEST_F(ParserZip, TellsOfAnEntryBeyondTheArchive) {
    std::string archive = ZipOf(m_Document);
    archive[DirectoryOf(archive) + 45] = '\x7F';
    ExpectFailure(archive, "Unzip failed in ParseXmlBuffer", "File unzip failed in ParseXmlFile.");
}

TEST_F(ParserZip, FailsCleanlyForEverySpoiltByte) {
    const std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    for (size_t place = 0; place < archive.size(); ++place) {
        for (const char value : {'\x00', '\x7F', '\xFF'}) {
            std::string spoilt = archive;
            spoilt[place] = value;
            std::string text;
            try {
                CNodeDataMapFactory::ReadXmlBuffer(ContentType_ZippedXml, spoilt.data(),
                                                   spoilt.size(), text);
                EXPECT_EQ(text, m_Document) << place;
            } catch (const GenICam_3_0_ORVANE::RuntimeException&) {
                EXPECT_EQ(text, "") << place;
            }
        }
    }
}

TEST_F(ParserZip, FailsCleanlyForEveryCutArchive) {
    const std::string archive = ZipOf(m_Document, ZipWriter::Deflated);
    for (size_t length = 0; length < archive.size(); ++length) {
        EXPECT_EQ(FailureOfMemory(archive.substr(0, length)),
                  "Invalid ZIP string in ParseXmlBuffer")
            << length;
    }
}

TEST(LateLibrary, CallsFunctionsOfWhatItLoaded) {
    const CLateLibrary library("libm.so.6");
    double (*power)(double, int) = nullptr;
    library.Find("ldexp", power);
    EXPECT_EQ(power(3, 2), 12);
}

TEST(LateLibrary, SaysWhichLibraryIsMissing) {
    EXPECT_EQ(FailureText([] { const CLateLibrary library("libnone.so.1"); }),
              "Library is missing or another one: libnone.so.1: cannot open shared object file: No "
              "such file or directory");
}

TEST(LateLibrary, SaysWhichFunctionIsMissing) {
    const CLateLibrary library("libm.so.6");
    void (*none)() = nullptr;
    const std::string text = FailureText([&] { library.Find("zip_none", none); });
    EXPECT_THAT(text, testing::StartsWith("Library is missing or another one: "));
    EXPECT_THAT(text, testing::EndsWith("undefined symbol: zip_none"));
}

}  // namespace
}  // namespace NodeDataTest
