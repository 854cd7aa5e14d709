// The forms of the URL of a description.

#include "TLClassXML/XMLUrl.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

struct LocalCase {
    const char* url;
    const char* fileName;
    uint64_t address;
    uint64_t length;
};

void PrintTo(const LocalCase& form, std::ostream* out) {
    *out << form.url;
}

class LocalUrl : public ::testing::TestWithParam<LocalCase> {};

TEST_P(LocalUrl, IsTakenApart) {
    const XML_URL_INFO info = AnalyzeXmlUrl(GetParam().url);
    EXPECT_EQ(info.location, XmlLocation::Local);
    EXPECT_EQ(info.local.fileName, GetParam().fileName);
    EXPECT_EQ(info.local.address, GetParam().address);
    EXPECT_EQ(info.local.length, GetParam().length);
    EXPECT_EQ(info.file.path, "");
}

INSTANTIATE_TEST_SUITE_P(
    Forms, LocalUrl,
    ::testing::Values(
        LocalCase{"Local:Camera.xml;10000;2000", "CAMERA.XML", 0x10000, 0x2000},
        LocalCase{"Local:Camera.zip;10000;2000", "CAMERA.ZIP", 0x10000, 0x2000},
        LocalCase{"LOCAL:Camera.Zip;aBcD;Ef", "CAMERA.ZIP", 0xABCD, 0xEF},
        LocalCase{"local:camera.xml;1;2?SchemaVersion=1.1.0", "CAMERA.XML", 1, 2},
        LocalCase{"Local:///Camera.xml;10000;2000", "CAMERA.XML", 0x10000, 0x2000},
        LocalCase{"local:///Camera.zip;10000;2000?SchemaVersion=1.0.0", "CAMERA.ZIP", 0x10000,
                  0x2000},
        LocalCase{"Local:/Camera.xml;1;2", "/CAMERA.XML", 1, 2},
        LocalCase{"Local:.xml;1;2", ".XML", 1, 2}, LocalCase{"Local:a b.xml;1;2", "A B.XML", 1, 2},
        LocalCase{"Local:Camera.xml;0x10;0X20", "CAMERA.XML", 0x10, 0x20},
        LocalCase{"Local:Camera.xml; 10; 20", "CAMERA.XML", 0x10, 0x20},
        LocalCase{"Local:Camera.xml;;", "CAMERA.XML", 0, 0},
        LocalCase{"Local:Camera.xml;z;y", "CAMERA.XML", 0, 0},
        LocalCase{"Local:Camera.xml;1G;2?", "CAMERA.XML", 1, 2},
        LocalCase{"Local:Camera.xml;1;?2", "CAMERA.XML", 1, 0},
        LocalCase{"Local:Camera.xml;FFFFFFFFFFFFFFFF;10", "CAMERA.XML", UINT64_MAX, 0x10},
        LocalCase{"Local:Camera.xml;10000000000000000;1", "CAMERA.XML", UINT64_MAX, 1}));

class FileUrl : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(FileUrl, GivesAPathInCapitals) {
    const XML_URL_INFO info = AnalyzeXmlUrl(GetParam().first);
    EXPECT_EQ(info.location, XmlLocation::File);
    EXPECT_EQ(info.file.path, GetParam().second);
    EXPECT_EQ(info.local.fileName, "");
}

INSTANTIATE_TEST_SUITE_P(Forms, FileUrl,
                         ::testing::Values(std::pair{"File:/tmp/camera.xml?", "/TMP/CAMERA.XML"},
                                           std::pair{"File:///tmp/camera.zip?", "TMP/CAMERA.ZIP"},
                                           std::pair{"file:////tmp/Camera.xml?", "/TMP/CAMERA.XML"},
                                           std::pair{"FILE:camera.xml?", "CAMERA.XML"},
                                           std::pair{"File:a?b.xml?", "A"}));

class MalformedUrl : public ::testing::TestWithParam<const char*> {};

TEST_P(MalformedUrl, IsRefusedWithItsText) {
    EXPECT_UNEXPECTED(-1, std::string("XML format error: ") + GetParam(),
                      AnalyzeXmlUrl(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, MalformedUrl,
    ::testing::Values("", ":", "Local", "Local:", "Local:///", "Camera.xml;1;2", " Local:a.xml;1;2",
                      "Locals:a.xml;1;2", "Local:Camera.xml", "Local:Camera.xml;1",
                      "Local:Camera.xml;1;2;3", "Local:Camera.xml;1;2;", "Local:Camera.txt;1;2",
                      "Local:Camera.xmlx;1;2", "Local:xml;1;2", "Local:;1;2",
                      "Local:Camera.xml?a;1;2", "Local://Camera.bin;1;2", "File:/tmp/camera.xml",
                      "File:///tmp/camera.zip", "File:/tmp/camera.xml?SchemaVersion=1.1.0",
                      "File:/tmp/camera.txt?", "File:", "File:?", "File:xml?", "File",
                      "http://www.example.com/camera.xml", "http://www.example.com/camera.xml?",
                      "ftp:camera.zip?"));

TEST(Url, ThatIsTooLongIsCutInTheFailure) {
    const std::string url = "Local:" + std::string(2000, 'x');
    EXPECT_UNEXPECTED(-1, ("XML format error: " + url).substr(0, 1023), AnalyzeXmlUrl(url));
}

TEST(Url, MayHoldBytesBeyondAscii) {
    const std::string url = "Local:K\xC3\xA4mera.xml;1;2";
    EXPECT_EQ(AnalyzeXmlUrl(url).local.fileName, "K\xC3\xA4MERA.XML");
}

}  // namespace
}  // namespace OVTLClass
