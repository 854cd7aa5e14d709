#include "Base/Log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Base/Environment.h"
#include "Base/GCException.h"
#include "LogLibrary.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;
namespace fs = std::filesystem;

/// A logging library that writes down all that it is told.
struct Backend {
    static inline std::vector<std::string> calls;
    static inline bool failsToConfigure = false;
    static inline int logger = 0;

    static const CLogBackend& Table() {
        static const CLogBackend table = {
            [](const char* name) { return std::string(name) == "known"; },
            [](const char* name) -> void* {
                return std::string(name) == "none" ? nullptr : &logger;
            },
            [](void*, int level) { return level <= LogInfo; },
            [](void*, int level, const char* line) {
                calls.push_back(std::to_string(level) + " " + line);
            },
            [](const char* indent) { calls.push_back(std::string("push '") + indent + "'"); },
            [] { calls.emplace_back("pop"); },
            [](int level) { calls.push_back("root " + std::to_string(level)); },
            [](const char* pattern) { calls.push_back(std::string("reset ") + pattern); },
            [](const char* text) {
                if (failsToConfigure) {
                    RUNTIME_EXCEPTION("no such appender");
                }
                calls.push_back(std::string("configure ") + text);
            }};
        return table;
    }
};

using Calls = std::vector<std::string>;
constexpr const char* kReset = "reset =>%p %x: %c : %m%n";
constexpr const char* kNotCalled =
    "600 SetGenICamLogConfig(path) not called, and environment variable GENICAM_LOG_CONFIG_V3_0 "
    "not found. Using default logging configuration.";

constexpr const char* kNoDefault =
    "600 Default logger parameter file '$(GENICAM_ROOT)/log/config/DefaultLogging.properties' not "
    "found";

class LogTest : public testing::Test {
protected:
    LogTest() {
        Backend::calls.clear();
        Backend::failsToConfigure = false;
        std::string name = (fs::temp_directory_path() / "ov-log-XXXXXX").string();
        m_folder = mkdtemp(name.data());
    }
    ~LogTest() override {
        CLog::SetBackend(nullptr);
        SetGenICamLogConfig("");
        fs::remove_all(m_folder);
    }
    /// Behind the shim, whose first use would configure it.
    static void UseBackend() {
        CLog::GetLogger("");
        CLog::SetBackend(&Backend::Table());
    }
    std::string Write(const char* content) const {
        const fs::path file = m_folder / "log.properties";
        std::ofstream(file) << content;
        return file;
    }
    /// Lines that name the default file, whose place is that of this program.
    static std::string DefaultMissing() {
        fs::path folder = fs::read_symlink("/proc/self/exe");
        for (int level = 0; level < 3; ++level) {
            folder = folder.parent_path();
        }
        return "300 Cannot open logger parameter file '" + folder.string() +
               "/log/config/DefaultLogging.properties'";
    }

    fs::path m_folder;
};

TEST_F(LogTest, IsSilentWithoutALibrary) {
    CLog::SetBackend(nullptr);
    EXPECT_FALSE(CLog::Exist("known"));
    EXPECT_EQ(CLog::GetLogger("known"), nullptr);
    EXPECT_FALSE(CLog::IsEnabled(&Backend::logger, LogError));
    CLog::Log(&Backend::logger, LogError, "%d", 1);
    CLog::LogPush(&Backend::logger, LogError, "%d", 1);
    CLog::LogPop(&Backend::logger, LogError, "%d", 1);
    EXPECT_FALSE(CLog::ConfigureFromFile("/nowhere"));
    CLog::ConfigureFromString("text");
    EXPECT_TRUE(Backend::calls.empty());
}

TEST_F(LogTest, AsksTheLibrary) {
    UseBackend();
    EXPECT_TRUE(CLog::Exist("known"));
    EXPECT_FALSE(CLog::Exist("unknown"));
    void* const logger = CLog::GetLogger("any");
    EXPECT_EQ(logger, &Backend::logger);
    EXPECT_EQ(CLog::GetLogger("none"), nullptr);
    EXPECT_TRUE(CLog::IsEnabled(logger, LogInfo));
    EXPECT_FALSE(CLog::IsEnabled(logger, LogDebug));
    EXPECT_FALSE(CLog::IsEnabled(nullptr, LogError));
}

TEST_F(LogTest, WritesLinesAndIndents) {
    UseBackend();
    void* const logger = CLog::GetLogger("any");
    CLog::Log(logger, LogError, "%s %d", std::string(300, 'x').c_str(), 5);
    CLog::Log(logger, LogDebug, "unseen");
    CLog::LogPush(logger, LogInfo, "in");
    CLog::LogPop(logger, LogInfo, "out");
    EXPECT_EQ(Backend::calls, (Calls{"300 " + std::string(300, 'x') + " 5", "600 in", "push '  '",
                                     "600 out", "pop"}));
}

TEST_F(LogTest, TheMacrosFormatNothingThatIsDisabled) {
    UseBackend();
    void* const logger = CLog::GetLogger("any");
    int evaluated = 0;
    CLogIndent indent;
    GCLOGDEBUG(logger, "%d", ++evaluated);
    EXPECT_EQ(evaluated, 0);
    GCLOGINFO(logger, "%d", ++evaluated);
    GCLOGWARN(logger, "%d", ++evaluated);
    GCLOGINFOPUSH(indent, logger, "%d", ++evaluated);
    GCLOGINFOPOP(indent, logger, "%d", ++evaluated);
    EXPECT_EQ(Backend::calls, (Calls{"600 1", "400 2", "600 3", "push '  '", "600 4", "pop"}));
}

TEST_F(LogTest, TakesTheIndentBackOfWhatFails) {
    UseBackend();
    void* const logger = CLog::GetLogger("any");
    const auto fail = [logger] {
        CLogIndent indent;
        GCLOGINFOPUSH(indent, logger, "in");
        throw std::runtime_error("failed");
        GCLOGINFOPOP(indent, logger, "out");
    };
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_EQ(Backend::calls, (Calls{"600 in", "push '  '", "pop"}));
}

TEST_F(LogTest, IndentsNothingWithoutALineThatOpensIt) {
    UseBackend();
    {
        CLogIndent indent;
        GCLOGINFOPUSH(indent, nullptr, "in");
        GCLOGINFOPOP(indent, CLog::GetLogger("any"), "out");
    }
    EXPECT_TRUE(Backend::calls.empty());
}

TEST_F(LogTest, IsConfiguredFromTheUsersFile) {
    setenv("OV_LOG_TEST_FOLDER", m_folder.c_str(), 1);
    Write("line one\nline two");
    SetGenICamLogConfig("$(OV_LOG_TEST_FOLDER)/log.properties");
    ConfigureLogLibrary(Backend::Table());
    unsetenv("OV_LOG_TEST_FOLDER");
    EXPECT_EQ(Backend::calls,
              (Calls{kReset, "root 300", "root 600",
                     "600 Loading logger parameter file '" + m_folder.string() + "/log.properties'",
                     "configure line one\nline two\n"}));
}

TEST_F(LogTest, FallsBackToTheDefaultWithoutAFile) {
    ConfigureLogLibrary(Backend::Table());
    EXPECT_EQ(Backend::calls,
              (Calls{kReset, "root 300", "root 600", kNotCalled, DefaultMissing(), kNoDefault,
                     kReset, "600 Using default logger configuration"}));
}

TEST_F(LogTest, TellsThatTheUsersFileCannotBeOpened) {
    SetGenICamLogConfig("/nowhere/at/all");
    ConfigureLogLibrary(Backend::Table());
    ASSERT_GT(Backend::calls.size(), 4U);
    EXPECT_EQ(Backend::calls[3], "300 Cannot open logger parameter file '/nowhere/at/all'");
    EXPECT_EQ(Backend::calls[4], kNotCalled);
}

TEST_F(LogTest, EndsTheConfigurationWithAnyFailureOfTheLibrary) {
    Backend::failsToConfigure = true;
    SetGenICamLogConfig(Write("bad").c_str());
    ConfigureLogLibrary(Backend::Table());
    ASSERT_EQ(Backend::calls.size(), 6U);
    EXPECT_EQ(Backend::calls[4], kReset);
    const std::string begin =
        "600 Loading logger configuration failed. error = 'no such appender : RuntimeException ";
    EXPECT_EQ(Backend::calls[5].substr(0, begin.size()), begin);
}

TEST_F(LogTest, TakesFurtherConfigurations) {
    UseBackend();
    CLog::ConfigureFromString("text");
    EXPECT_TRUE(CLog::ConfigureFromFile(Write("file").c_str()));
    EXPECT_FALSE(CLog::ConfigureFromFile("/nowhere"));
    ASSERT_EQ(Backend::calls.size(), 4U);
    EXPECT_EQ(Backend::calls[0], "configure text");
    EXPECT_EQ(Backend::calls[2], "configure file\n");
}

TEST_F(LogTest, FindsNoLibraryOnThisMachine) {
    EXPECT_EQ(FindLogLibrary(), nullptr);
}

}  // namespace
}  // namespace BaseTest
