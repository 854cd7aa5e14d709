// Fetching a description: from registers, from a file, plain or packed.

#include <filesystem>

#include "SystemPortTest.h"
#include "TLClassXML/XMLLoader.h"

namespace OVTLClass {
namespace {

namespace fs = std::filesystem;

class Loader : public SystemPortTest {
protected:
    std::string Load() {
        const CXMLLoader loader(lib, Open());
        EXPECT_EQ(loader.GetUrlCount(), 1U);
        return loader.LoadXML();
    }
    std::string LoadFrom(const std::string& url) {
        SetUrl(url);
        return Load();
    }
};

TEST_F(Loader, ReadsThePlainFileThatTheUrlNames) {
    SetFile("Description.xml", "<a/>");
    EXPECT_EQ(Load(), "<a/>");
}

TEST_F(Loader, UnpacksAFileWhoseNameSaysSo) {
    SetFile("Description.zip", ZipEntry("<a/>").Build());
    EXPECT_EQ(Load(), "<a/>");
}

TEST_F(Loader, ReadsAsManyBytesAtTheAddressAsTheUrlSays) {
    SetFile("Other.xml", std::string(0x100, 'x') + std::string(0x200, 'y') + "z");
    EXPECT_EQ(LoadFrom("Local:Name.xml;10100;200"), std::string(0x200, 'y'));
}

TEST_F(Loader, UnpacksTheBytesThatTheUrlNames) {
    Bytes archive = ZipEntry("<a/>").Build();
    archive.resize(0x2000);
    SetFile("Other.xml", archive);
    EXPECT_EQ(LoadFrom("Local:Name.zip;10000;2000?SchemaVersion=1.1.0"), "<a/>");
}

TEST_F(Loader, KeepsPlainTextUnderAPackedName) {
    SetFile("Description.zip", "<a/>");
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(Load(), "<a/>");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Unable to uncompress XML data\n");
}

TEST_F(Loader, TakesAnArchiveUnderAPlainNameForText) {
    ZipEntry entry("<a/>");
    SetFile("Description.xml", entry.Build());
    EXPECT_EQ(Load(), "PK\3\4\x14");
}

TEST_F(Loader, EndsPlainTextAtItsFirstZeroByte) {
    SetFile("Description.xml", std::string("<a/>\0<b/>", 9));
    EXPECT_EQ(Load(), "<a/>");
}

TEST_F(Loader, GivesTheTextOfAFailureForAnArchiveThatIsBroken) {
    ZipEntry entry("<a/>");
    entry.packedSize = 0;
    entry.size = 0;
    SetFile("Description.zip", entry.Build());
    EXPECT_EQ(Load(), "Unable to uncompress ZIP file");
}

TEST_F(Loader, RaisesForAnArchiveThatEndsInItsHeader) {
    SetFile("Description.zip", "PK\3\4");
    EXPECT_UNEXPECTED(-1, "Uncompress zip file failed", Load());
}

TEST_F(Loader, RaisesWhenThereIsNoUrl) {
    EXPECT_UNEXPECTED(-1, "UrlNum <= 0", LoadFrom(""));
}

TEST_F(Loader, RaisesForAUrlOfTheNet) {
    EXPECT_UNEXPECTED(-1, "XML format error: http://www.example.com/Name.xml",
                      LoadFrom("http://www.example.com/Name.xml"));
}

TEST_F(Loader, RaisesWithTheUrlAsItArrived) {
    EXPECT_UNEXPECTED(-1, "XML format error: Local:Name.txt;1;2", LoadFrom("Local:Name.txt;1;2"));
}

TEST_F(Loader, AsksForTheUrlInTwoCalls) {
    Open();
    producer.ClearLog();
    const CXMLLoader loader(lib, port);
    loader.GetUrlCount();
    loader.LoadXML();
    EXPECT_THAT(producer.Log(), ::testing::ElementsAre("GCGetNumPortURLs", "GCGetPortURLInfo",
                                                       "GCGetPortURLInfo", "GCReadPort"));
}

TEST_F(Loader, RefusesALengthThatNoDescriptionHas) {
    for (const char* const length : {"10000001", "FFFFFFFFFFFFFFFF", "-1"}) {
        EXPECT_UNEXPECTED(-1, "Invalid XML format",
                          LoadFrom(std::string("Local:Name.xml;10000;") + length));
    }
    EXPECT_EQ(producer.CallCount("GCReadPort"), 0U);
}

TEST_F(Loader, RaisesTheProducersFailureBeyondTheRegisters) {
    const auto raised = Raised<CUnexpectedError>([&] { LoadFrom("Local:Name.xml;7FFF0000;10"); });
    EXPECT_EQ(raised.GetStatus(), GenTL::GC_ERR_INVALID_ADDRESS);
}

struct LoaderRefusal {
    const char* function;
    unsigned nth;
};

class LoaderRefused : public Loader, public ::testing::WithParamInterface<LoaderRefusal> {};

TEST_P(LoaderRefused, RaisesTheProducersFailure) {
    producer.FailCall(GetParam().function, GetParam().nth, GenTL::GC_ERR_BUSY);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_BUSY, "Planned failure of " + std::string(GetParam().function),
                      Load());
}

INSTANTIATE_TEST_SUITE_P(
    At, LoaderRefused,
    ::testing::Values(LoaderRefusal{"GCGetNumPortURLs", 1}, LoaderRefusal{"GCGetPortURLInfo", 1},
                      LoaderRefusal{"GCGetPortURLInfo", 2}, LoaderRefusal{"GCReadPort", 1}),
    [](const auto& at) { return at.param.function + std::to_string(at.param.nth); });

TEST_F(Loader, ReportsALostDeviceAsSuch) {
    producer.FailCall("GCReadPort", 1, GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_RAISES(CDeviceOfflineError, "Planned failure of GCReadPort", Load());
}

TEST_F(Loader, TakesAUrlThatIsShorterThanTold) {
    SetFile("Description.xml", "<a/>");
    producer.LieAboutSize("GCGetPortURLInfo", 50);
    EXPECT_EQ(Load(), "<a/>");
}

TEST_F(Loader, RaisesForAUrlThatIsLongerThanTold) {
    producer.LieAboutSize("GCGetPortURLInfo", -5);
    EXPECT_EQ(Raised<CUnexpectedError>([&] { Load(); }).GetStatus(),
              GenTL::GC_ERR_BUFFER_TOO_SMALL);
}

TEST_F(Loader, RaisesForAUrlOfASizeThatNoMemoryHolds) {
    producer.LieAboutSize("GCGetPortURLInfo", -1000);
    EXPECT_THROW(Load(), std::length_error);
}

/// Files are found below the working folder, whose own name may be in any case.
class FileLoader : public Loader {
protected:
    void SetUp() override {
        fs::create_directories(m_folder);
        fs::current_path(m_folder);
    }
    void TearDown() override {
        fs::current_path(m_before);
        fs::remove_all(m_folder);
    }
    static void Write(const char* name, const Bytes& content) {
        std::ofstream(name, std::ios::binary) << ToText(content);
    }

    const fs::path m_before = fs::current_path();
    const fs::path m_folder = fs::temp_directory_path() / ("ovloader" + std::to_string(getpid()));
};

TEST_F(FileLoader, ReadsAFileWithANameInCapitals) {
    Write("CAMERA.XML", ToBytes("<a/>"));
    EXPECT_EQ(LoadFrom("File:camera.xml?"), "<a/>");
    EXPECT_EQ(LoadFrom("file:///Camera.XML?"), "<a/>");
    EXPECT_EQ(producer.CallCount("GCReadPort"), 0U);
}

TEST_F(FileLoader, UnpacksAFileWhoseNameSaysSo) {
    Write("CAMERA.ZIP", ZipEntry("<a/>").Build());
    EXPECT_EQ(LoadFrom("File:CAMERA.ZIP?"), "<a/>");
}

TEST_F(FileLoader, DoesNotFindANameInSmallLetters) {
    Write("camera.xml", ToBytes("<a/>"));
    EXPECT_UNEXPECTED(-1, "Failed to read XML from file", LoadFrom("File:camera.xml?"));
}

TEST_F(FileLoader, RaisesForAFileThatIsNotThere) {
    EXPECT_UNEXPECTED(-1, "Failed to read XML from file", LoadFrom("File:///NOWHERE/CAMERA.XML?"));
}

TEST_F(FileLoader, RefusesAUrlWithoutTheClosingQuestionMark) {
    Write("CAMERA.XML", ToBytes("<a/>"));
    EXPECT_UNEXPECTED(-1, "XML format error: File:CAMERA.XML", LoadFrom("File:CAMERA.XML"));
}

TEST_F(FileLoader, EndsPlainTextAtItsFirstZeroByte) {
    Write("CAMERA.XML", ToBytes(std::string("<a/>\0<b/>", 9)));
    EXPECT_EQ(LoadFrom("File:CAMERA.XML?"), "<a/>");
}

TEST_F(FileLoader, GivesNothingForAnEmptyFile) {
    Write("CAMERA.XML", {});
    EXPECT_EQ(LoadFrom("File:CAMERA.XML?"), "");
}

}  // namespace
}  // namespace OVTLClass
