#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "gige/net/SourceFilter.h"

namespace {

class SourceFilter : public testing::Test {
protected:
    SourceFilter() {
        std::string name = (std::filesystem::temp_directory_path() / "filter_XXXXXX").string();
        m_folder = mkdtemp(name.data());
    }
    ~SourceFilter() override { std::filesystem::remove_all(m_folder); }

    bool DropsWith(const char* all, const char* adapter) {
        Write("all", all);
        Write("eth7", adapter);
        return OvGige::DropsForeignSenders("eth7", m_folder);
    }

    std::filesystem::path m_folder;

private:
    void Write(const char* name, const char* value) const {
        std::filesystem::create_directories(m_folder / name);
        std::ofstream(m_folder / name / "rp_filter") << value << "\n";
    }
};

TEST_F(SourceFilter, IsTheHigherOneOfAllAndTheAdapters) {
    EXPECT_TRUE(DropsWith("1", "0"));
    EXPECT_TRUE(DropsWith("0", "1"));
    EXPECT_TRUE(DropsWith("1", "1"));
    EXPECT_FALSE(DropsWith("0", "0"));
    EXPECT_FALSE(DropsWith("2", "1"));
    EXPECT_FALSE(DropsWith("1", "2"));
}

TEST_F(SourceFilter, IsOffIfTheSystemDoesntSay) {
    EXPECT_FALSE(OvGige::DropsForeignSenders("eth7", m_folder));
    EXPECT_FALSE(DropsWith("x", ""));
}

}  // namespace
