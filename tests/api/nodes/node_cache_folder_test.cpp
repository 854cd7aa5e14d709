// Descriptions that are kept in a folder, for users who name one.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "NodeTest.h"
#include "support/FeatureCalls.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kVariable = "GENICAM_CACHE_V3_0";
constexpr const char* kFromCamera = "Kept by the camera";
constexpr const char* kFromFolder = "Kept in the folder";

class CacheFolderOfNodes : public NodeTest {
protected:
    CacheFolderOfNodes() {
        m_Folder = (fs::temp_directory_path() / "ov_cache_XXXXXX").string();
        EXPECT_NE(mkdtemp(m_Folder.data()), nullptr);
    }
    ~CacheFolderOfNodes() override {
        unsetenv(kVariable);
        fs::permissions(m_Folder, fs::perms::owner_all);
        fs::remove_all(m_Folder);
    }

    /// Opens the camera anew and returns what it says of one of its nodes.
    std::string OpenAgain() {
        Describe(DescribeCamera(std::string("<Integer Name=\"A\"><ToolTip>") + kFromCamera +
                                "</ToolTip><Value>1</Value></Integer>"));
        return Text(Node("A"), OV_NODE_TEXT_TOOL_TIP);
    }
    void UseFolder() const { setenv(kVariable, m_Folder.c_str(), 1); }

    std::vector<fs::path> Files(const char* extension) const {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(m_Folder)) {
            if (entry.path().extension() == extension) {
                files.push_back(entry.path());
            }
        }
        return files;
    }
    /// Puts another text into the file that has the camera's; a file without its checksum is
    /// taken as it is.
    size_t ReplaceText() const {
        size_t replaced = 0;
        for (const fs::path& file : Files(".bin")) {
            std::ifstream in(file, std::ios::binary);
            std::string bytes{std::istreambuf_iterator<char>(in), {}};
            const size_t at = bytes.find(kFromCamera);
            if (at != std::string::npos) {
                bytes.replace(at, std::char_traits<char>::length(kFromFolder), kFromFolder);
                std::ofstream(file, std::ios::binary) << bytes;
                fs::remove(file.string() + ".sum");
                ++replaced;
            }
        }
        return replaced;
    }

    std::string m_Folder;
};

}  // namespace

TEST_F(CacheFolderOfNodes, IsReadByTheSecondOpening) {
    UseFolder();
    EXPECT_EQ(OpenAgain(), kFromCamera);
    ASSERT_EQ(ReplaceText(), 1U);
    EXPECT_EQ(OpenAgain(), kFromFolder);
}

TEST_F(CacheFolderOfNodes, StaysEmptyUnlessItIsNamed) {
    EXPECT_EQ(OpenAgain(), kFromCamera);
    EXPECT_TRUE(fs::is_empty(m_Folder));
}

TEST_F(CacheFolderOfNodes, KeepsNoCameraFromOpeningWhereItsFilesAreDamaged) {
    UseFolder();
    OpenAgain();
    const auto files = Files(".bin");
    ASSERT_FALSE(files.empty());
    for (const fs::path& file : files) {
        fs::resize_file(file, fs::file_size(file) / 2);
    }
    EXPECT_EQ(OpenAgain(), kFromCamera);
    for (const fs::path& file : files) {
        std::ofstream(file, std::ios::binary) << "another form";
    }
    EXPECT_EQ(OpenAgain(), kFromCamera);
    for (const fs::path& file : files) {
        fs::remove(file);
        fs::create_directory(file);
    }
    EXPECT_EQ(OpenAgain(), kFromCamera);
}

TEST_F(CacheFolderOfNodes, KeepsNoCameraFromOpeningWhereNothingCanBeWritten) {
    // Not even the administrator can make a file in a folder that isn't one.
    setenv(kVariable, "/proc/self/fd", 1);
    EXPECT_EQ(OpenAgain(), kFromCamera);
    setenv(kVariable, "/no such folder", 1);
    EXPECT_EQ(OpenAgain(), kFromCamera);
    UseFolder();
    fs::permissions(m_Folder, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(OpenAgain(), kFromCamera);
    if (geteuid() != 0) {
        EXPECT_TRUE(fs::is_empty(m_Folder));
    }
}

TEST_F(CacheFolderOfNodes, KeepsNoDescriptionThatIsWrong) {
    UseFolder();
    ASSERT_OV_OK(OVCloseDevice(camera));
    const std::string wrong = DescribeCamera("<Integer Name=\"WithoutValue\"/>");
    producer.SetDescription("Remote", "Own.xml", wrong.data(), wrong.size());
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_NE(OVOpenDeviceByIndex(1, &handle), OV_STATUS_SUCCESS);
    for (const fs::path& file : Files(".bin")) {
        std::ifstream in(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        EXPECT_EQ(bytes.find("WithoutValue"), std::string::npos);
    }
}
