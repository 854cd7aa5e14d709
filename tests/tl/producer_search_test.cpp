// Producers are looked for beside the real file of the library, and nowhere else.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

namespace fs = std::filesystem;

/// A library with the search in it, in a folder "home" of its own, beside a folder
/// "other".
class ProducerSearch : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(m_home);
        fs::create_directories(m_other);
        fs::copy_file(std::string(OV_TL_STAGE) + "/producer_search.so", m_home / "search.so");
    }
    void TearDown() override {
        if (m_library != nullptr) {
            dlclose(m_library);
        }
        fs::remove_all(m_root);
    }

    static void Touch(const fs::path& path) { std::ofstream(path) << ""; }

    /// The paths that the library at `path` finds, or its failure; then the status.
    std::string Search(const fs::path& path, const char* names) {
        using Call = int (*)(const char*, char*, size_t);
        m_library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (m_library == nullptr) {
            return dlerror();
        }
        std::array<char, 8192> text{};
        const auto call = reinterpret_cast<Call>(dlsym(m_library, "SearchProducers"));
        const int status = call(names, text.data(), text.size());
        return text.data() + std::to_string(status);
    }
    std::string Search(const char* names) { return Search(m_home / "search.so", names); }

    const fs::path m_root =
        fs::canonical(fs::temp_directory_path()) / ("ovsearch" + std::to_string(getpid()));
    const fs::path m_home = m_root / "home";
    const fs::path m_other = m_root / "other";
    void* m_library = nullptr;
};

constexpr const char* kNames = "OvGVTL.cti;OvU3VTL.cti;KwTL.cti";

TEST_F(ProducerSearch, FindsTheOneNameThatExists) {
    Touch(m_home / "KwTL.cti");
    EXPECT_EQ(Search(kNames), (m_home / "KwTL.cti").string() + ";0");
}

TEST_F(ProducerSearch, KeepsTheOrderOfTheNames) {
    Touch(m_home / "KwTL.cti");
    Touch(m_home / "OvGVTL.cti");
    EXPECT_EQ(Search(kNames),
              (m_home / "OvGVTL.cti").string() + ";" + (m_home / "KwTL.cti").string() + ";0");
}

TEST_F(ProducerSearch, RaisesWhenNoNameExists) {
    EXPECT_EQ(Search(kNames), "Not found TL library;-2");
}

TEST_F(ProducerSearch, FindsNothingForNoNames) {
    EXPECT_EQ(Search(""), "Not found TL library;-2");
}

TEST_F(ProducerSearch, LooksBesideTheTargetOfASymbolicLink) {
    Touch(m_home / "KwTL.cti");
    Touch(m_other / "OvGVTL.cti");
    fs::create_symlink(m_home / "search.so", m_other / "link.so");
    EXPECT_EQ(Search(m_other / "link.so", kNames), (m_home / "KwTL.cti").string() + ";0");
}

TEST_F(ProducerSearch, FollowsAFolderThatIsALink) {
    Touch(m_home / "KwTL.cti");
    fs::create_directory_symlink(m_home, m_other / "folder");
    EXPECT_EQ(Search(m_other / "folder" / "search.so", kNames),
              (m_home / "KwTL.cti").string() + ";0");
}

TEST_F(ProducerSearch, LeavesTheWorkingFolderAlone) {
    const fs::path before = fs::current_path();
    fs::current_path(m_other);
    Touch(m_other / "KwTL.cti");
    EXPECT_EQ(Search(kNames), "Not found TL library;-2");
    fs::current_path(before);
}

TEST_F(ProducerSearch, LeavesThePathOfTheEnvironmentAlone) {
    Touch(m_other / "KwTL.cti");
    setenv("GENICAM_GENTL64_PATH", m_other.c_str(), 1);
    EXPECT_EQ(Search(kNames), "Not found TL library;-2");
    unsetenv("GENICAM_GENTL64_PATH");
}

TEST_F(ProducerSearch, CannotTellItsFolderWhenItsFileIsGone) {
    Touch(m_home / "KwTL.cti");
    using Call = int (*)(const char*, char*, size_t);
    m_library = dlopen((m_home / "search.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(m_library, nullptr);
    fs::remove(m_home / "search.so");
    std::array<char, 8192> text{};
    const auto call = reinterpret_cast<Call>(dlsym(m_library, "SearchProducers"));
    EXPECT_EQ(call(kNames, text.data(), text.size()), -1);
    EXPECT_STREQ(text.data(), "Failed to get the liboviapi.so library path;");
}

}  // namespace
