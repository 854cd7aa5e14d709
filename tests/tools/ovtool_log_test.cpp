// The log that a user switches on, as a program with cameras shows it.

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "ToolTest.h"

namespace {

class ToolLogTest : public ToolTest {
protected:
    ~ToolLogTest() override {
        unsetenv("OV_LOG");
        unsetenv("OV_LOG_FILE");
    }

    /// The categories of the lines that the tool logs as it reads a feature.
    std::vector<std::string> CategoriesOf(const std::string& wanted) {
        setenv("OV_LOG", wanted.c_str(), 1);
        const ToolRun run = Virtual("get Width");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, "2448\n");
        return CategoriesIn(run.err);
    }

    static std::vector<std::string> CategoriesIn(const std::string& log) {
        std::vector<std::string> categories;
        std::istringstream lines(log);
        for (std::string line; std::getline(lines, line);) {
            std::string day;
            std::string time;
            std::string level;
            std::istringstream(line) >> day >> time >> level >> categories.emplace_back();
        }
        return categories;
    }

    static bool HasPart(const std::string& category, const std::string& part) {
        return ("." + category + ".").find("." + part + ".") != std::string::npos;
    }
};

TEST_F(ToolLogTest, ShowsWhatPassesAPortAndNothingElse) {
    const std::vector<std::string> categories = CategoriesOf("Port:debug");
    EXPECT_FALSE(categories.empty());
    for (const std::string& category : categories) {
        EXPECT_TRUE(HasPart(category, "GenApi") && HasPart(category, "Port")) << category;
    }
}

TEST_F(ToolLogTest, ShowsWhatTheTransportModelPassesBy) {
    // A producer of another transport has no functions for addresses.
    const std::vector<std::string> categories = CategoriesOf("Transport:warning");
    EXPECT_FALSE(categories.empty());
    for (const std::string& category : categories) {
        EXPECT_EQ(category, "Transport");
    }
}

TEST_F(ToolLogTest, ShowsTheCallsOfAProducer) {
    setenv("OV_LOG", "Producer:debug", 1);
    const ToolRun run = Virtual("get Width");
    for (const std::string& category : CategoriesIn(run.err)) {
        EXPECT_EQ(category, "Producer");
    }
    for (const char* const call : {"GCInitLib", "TLOpen", "DevClose", "GCCloseLib"}) {
        EXPECT_NE(run.err.find(std::string(" debug Producer ") + call + ": done\n"),
                  std::string::npos)
            << call;
    }
}

TEST_F(ToolLogTest, WritesToAFileThatTheProducersShare) {
    const std::filesystem::path log = folder / "log";
    setenv("OV_LOG_FILE", log.c_str(), 1);
    EXPECT_EQ(CategoriesOf("all:debug"), std::vector<std::string>());
    std::ifstream file(log);
    const auto categories = CategoriesIn((std::ostringstream() << file.rdbuf()).str());
    EXPECT_NE(std::count(categories.begin(), categories.end(), "Transport"), 0);
    EXPECT_NE(std::count(categories.begin(), categories.end(), "Producer"), 0);
    EXPECT_NE(std::count_if(categories.begin(), categories.end(),
                            [](const std::string& category) { return HasPart(category, "Value"); }),
              0);
}

}  // namespace
