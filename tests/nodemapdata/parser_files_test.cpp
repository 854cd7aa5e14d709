// Whole descriptions of cameras, where a folder of them is at hand.

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

std::vector<std::string> DescriptionFiles(const char* folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".xml") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(ParserFiles, ReadsEveryDescriptionOfTheFolder) {
    const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
    if (folder == nullptr) {
        GTEST_SKIP() << "OV_TEST_DESCRIPTIONS names no folder";
    }
    const std::vector<std::string> files = DescriptionFiles(folder);
    EXPECT_THAT(files, testing::Not(IsEmpty()));
    for (const std::string& file : files) {
        CNodeDataMap map;
        EXPECT_EQ(FailureText<GenICam_3_0_ORVANE::GenericException>([&] {
                      CNodeDataMapFactory::ParseXml(
                          &map, CNodeDataMapFactory::ReadXmlFile(ContentType_Xml, file), false);
                      map.CheckConsistency();
                  }),
                  "")
            << file;
        EXPECT_EQ(map.GetContextNode(), nullptr) << file;
    }
}

}  // namespace
}  // namespace NodeDataTest
