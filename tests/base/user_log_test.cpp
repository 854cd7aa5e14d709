#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Base/UserLog.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;
using OvBase::CUserLog;
namespace fs = std::filesystem;

class UserLogTest : public testing::Test {
protected:
    UserLogTest() {
        std::string name = (fs::temp_directory_path() / "ov_user_log_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("No folder for the test");
        }
        m_folder = name;
    }
    ~UserLogTest() override { fs::remove_all(m_folder); }

    std::string FileName() const { return (m_folder / "log").string(); }

    /// The lines of the file without the time before each.
    std::vector<std::string> Lines() const {
        constexpr size_t kTime = sizeof("2026-01-31 23:59:59.123456 ") - 1;
        std::vector<std::string> lines;
        std::ifstream file(FileName());
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line.substr(std::min(kTime, line.size())));
        }
        return lines;
    }

private:
    fs::path m_folder;
};

using Strings = std::vector<std::string>;

TEST_F(UserLogTest, WritesTheCategoriesThatAreNamedUpToTheirLevel) {
    CUserLog log("Transport:warning,Producer:debug", FileName());
    log.Write("Transport", LogError, "a");
    log.Write("Transport", LogWarning, "b");
    log.Write("Transport", LogInfo, "too fine");
    log.Write("Producer", LogDebug, "c");
    log.Write("GenApi", LogError, "not named");
    EXPECT_EQ(Lines(), (Strings{"error Transport a", "warning Transport b", "debug Producer c"}));
}

TEST_F(UserLogTest, TakesACategoryByItsPartsInTheirOrder) {
    struct Case {
        const char* wanted;
        const char* category;
        bool isWritten;
    };
    const Case cases[] = {
        {"Port:info", "GenApi.Camera.Port.Device", true},
        {"GenApi:info", "GenApi.Camera.Port.Device", true},
        {"GenApi.Port:info", "GenApi.Camera.Port.Device", true},
        {"Port.GenApi:info", "GenApi.Camera.Port.Device", false},
        {"Por:info", "GenApi.Camera.Port.Device", false},
        {"Port:info", "GenApi.Camera.Value.Width", false},
        {"Port:info", "Port", true},
        {"all:info", "GenApi.Camera.Value.Width", true},
        {"all:info", "", true},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(CUserLog(test.wanted, FileName()).GetLevel(test.category),
                  test.isWritten ? LogInfo : 0)
            << test.wanted << " " << test.category;
    }
}

TEST_F(UserLogTest, TakesTheHighestLevelThatFits) {
    const CUserLog log("all:error,Port:debug,GenApi:info", FileName());
    EXPECT_EQ(log.GetLevel("Transport"), LogError);
    EXPECT_EQ(log.GetLevel("GenApi.Camera.Value.Width"), LogInfo);
    EXPECT_EQ(log.GetLevel("GenApi.Camera.Port.Device"), LogDebug);
}

TEST_F(UserLogTest, IsOffWithoutAWish) {
    const CUserLog log("", FileName());
    EXPECT_FALSE(log.IsOn());
    EXPECT_EQ(log.GetLevel("Transport"), 0);
    EXPECT_FALSE(fs::exists(FileName()));
}

TEST_F(UserLogTest, LogsWhatItDoesNotUnderstandAndTakesTheRest) {
    const CUserLog log("Transport,:info,Port:loud,,GenApi:info", FileName());
    EXPECT_EQ(log.GetLevel("GenApi"), LogInfo);
    EXPECT_EQ(log.GetLevel("Port"), 0);
    const std::string end = " isn't a category, a colon and one of error, warning, info, debug";
    EXPECT_EQ(Lines(),
              (Strings{"error Log OV_LOG: 'Transport'" + end, "error Log OV_LOG: ':info'" + end,
                       "error Log OV_LOG: 'Port:loud'" + end, "error Log OV_LOG: ''" + end}));
}

TEST_F(UserLogTest, EndsEachLineOnce) {
    CUserLog log("all:info", FileName());
    log.Write("A", LogInfo, "line\n");
    log.Write("A", LogInfo, "subject", "line");
    log.Write("A", LogInfo, "\n");
    EXPECT_EQ(Lines(), (Strings{"info A line", "info A subject: line", "info A "}));
}

TEST_F(UserLogTest, ShowsWhatATerminalWouldObey) {
    CUserLog log("all:info", FileName());
    log.Write("Transport", LogInfo, "\x1b[2J\xc2\x9b\xff a\nerror Transport forged \xc3\xa9");
    EXPECT_EQ(Lines(), Strings{"info Transport \\x1b[2J\\xc2\\x9b\\xff a\\x0a"
                               "error Transport forged \xc3\xa9"});
}

TEST_F(UserLogTest, AppendsToTheFile) {
    CUserLog("all:info", FileName()).Write("A", LogInfo, "first");
    CUserLog("all:info", FileName()).Write("A", LogInfo, "second");
    EXPECT_EQ(Lines(), (Strings{"info A first", "info A second"}));
}

TEST_F(UserLogTest, WritesToStandardErrorWithoutAFile) {
    testing::internal::CaptureStderr();
    CUserLog("all:info", "").Write("A", LogInfo, "line");
    CUserLog("all:info", "/nonexistent/log").Write("A", LogInfo, "line");
    const std::string text = testing::internal::GetCapturedStderr();
    const size_t refused = text.find("error Log OV_LOG_FILE: '/nonexistent/log' can't be opened\n");
    ASSERT_NE(refused, std::string::npos) << text;
    EXPECT_LT(text.find("info A line\n"), refused);
    EXPECT_NE(text.find("info A line\n", refused), std::string::npos) << text;
}

TEST_F(UserLogTest, KeepsLinesOfSeveralThreadsWhole) {
    constexpr size_t kLines = 500;
    const std::string line(200, 'x');
    CUserLog log("all:info", FileName());
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (size_t k = 0; k < kLines; ++k) {
                log.Write("A", LogInfo, line);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(Lines(), Strings(4 * kLines, "info A " + line));
}

}  // namespace
}  // namespace BaseTest
