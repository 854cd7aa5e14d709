#include "Base/Environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "Base/GCStringVector.h"
#include "support/FailureText.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;
namespace fs = std::filesystem;

constexpr const char* kName = "OV_BASE_TEST_VARIABLE";

/// A variable for the life of a scope.
class Variable {
public:
    Variable(const char* name, const char* value) : m_name(name) { setenv(name, value, 1); }
    ~Variable() { unsetenv(m_name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* m_name;
};

gcstring Replaced(const char* text, bool replaceBlanks = false) {
    gcstring result(text);
    ReplaceEnvironmentVariables(result, replaceBlanks);
    return result;
}

std::vector<std::string> Tokens(const char* text, const char* delimiters) {
    gcstring_vector tokens;
    Tokenize(text, tokens, delimiters);
    std::vector<std::string> result;
    for (const gcstring& token : tokens) {
        result.emplace_back(token.c_str());
    }
    return result;
}

TEST(EnvironmentVariable, IsReadWhenItIsThere) {
    const Variable variable(kName, "value");
    EXPECT_TRUE(DoesEnvironmentVariableExist(kName));
    gcstring value;
    EXPECT_TRUE(GetValueOfEnvironmentVariable(kName, value));
    EXPECT_EQ(value, "value");
    EXPECT_EQ(GetValueOfEnvironmentVariable(kName), "value");
}

TEST(EnvironmentVariable, ThatIsMissingLeavesTheValueAlone) {
    EXPECT_FALSE(DoesEnvironmentVariableExist(kName));
    gcstring value("kept");
    EXPECT_FALSE(GetValueOfEnvironmentVariable(kName, value));
    EXPECT_EQ(value, "kept");
    EXPECT_EQ(FailureText<RuntimeException>([] { GetValueOfEnvironmentVariable(kName); }),
              "Environment variable 'OV_BASE_TEST_VARIABLE' not found");
}

TEST(ReplaceEnvironmentVariables, PutsValuesInPlace) {
    const Variable variable(kName, "v");
    EXPECT_EQ(Replaced("$(OV_BASE_TEST_VARIABLE)"), "v");
    EXPECT_EQ(Replaced("a$(OV_BASE_TEST_VARIABLE)b"), "avb");
    EXPECT_EQ(Replaced("no variable"), "no variable");
}

TEST(ReplaceEnvironmentVariables, SearchesOnFromWhereTheBracketClosed) {
    // The value is shorter than the place it takes, so that a variable which
    // follows at once lies before the place where the search goes on.
    const Variable variable(kName, "v");
    EXPECT_EQ(Replaced("$(OV_BASE_TEST_VARIABLE)$(OV_BASE_TEST_VARIABLE)"),
              "v$(OV_BASE_TEST_VARIABLE)");
    EXPECT_EQ(Replaced("$(OV_BASE_TEST_VARIABLE)-------------------------$(OV_BASE_TEST_VARIABLE)"),
              "v-------------------------v");
}

TEST(ReplaceEnvironmentVariables, FailsForAVariableThatIsNotSet) {
    gcstring text("a$(OV_BASE_TEST_VARIABLE)");
    EXPECT_EQ(FailureText<RuntimeException>([&] { ReplaceEnvironmentVariables(text, false); }),
              "Environment variable 'OV_BASE_TEST_VARIABLE' not found");
    EXPECT_EQ(text, "a$(OV_BASE_TEST_VARIABLE)");
}

TEST(ReplaceEnvironmentVariables, FailsForAVariableThatContainsItself) {
    const Variable variable(kName,
                            "in the place where the search goes on: $(OV_BASE_TEST_VARIABLE)");
    gcstring text("$(OV_BASE_TEST_VARIABLE)");
    EXPECT_EQ(FailureText<RuntimeException>([&] { ReplaceEnvironmentVariables(text, false); }),
              "Environment variables make a text of more than 65536 characters");
    EXPECT_EQ(text, "$(OV_BASE_TEST_VARIABLE)");
}

TEST(ReplaceEnvironmentVariables, LeavesAnOpenBracketAlone) {
    EXPECT_EQ(Replaced("a $(OPEN"), "a $(OPEN");
    EXPECT_EQ(Replaced("a $(OPEN", true), "a%20$(OPEN");
}

TEST(ReplaceEnvironmentVariables, ReplacesBlanksWhenAskedTo) {
    const Variable variable(kName, "two words");
    EXPECT_EQ(Replaced(" $(OV_BASE_TEST_VARIABLE)", true), "%20two%20words");
    EXPECT_EQ(Replaced(" $(OV_BASE_TEST_VARIABLE)"), " two words");
}

TEST(Tokenize, OverlooksEmptyTokens) {
    EXPECT_EQ(Tokens("//one//two//", "/"), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(Tokens("one", "/"), (std::vector<std::string>{"one"}));
    EXPECT_EQ(Tokens("", "/"), (std::vector<std::string>{}));
    EXPECT_EQ(Tokens("///", "/"), (std::vector<std::string>{}));
    EXPECT_EQ(Tokens("a/b\\c", "/\\"), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(ModulePath, IsThatOfTheFunctionsFile) {
    const gcstring path = GetModulePathFromFunction(reinterpret_cast<void*>(&UrlEncode));
    EXPECT_EQ(fs::path(path.c_str()), fs::read_symlink("/proc/self/exe"));
    EXPECT_EQ(GetModulePathFromFunction(nullptr), "");
}

class GetFilesTest : public testing::Test {
protected:
    GetFilesTest() {
        std::string path = (fs::temp_directory_path() / "ov-base-XXXXXX").string();
        m_folder = mkdtemp(path.data());
        for (const char* const name : {"a.xml", "b c.xml", "other.txt"}) {
            const std::ofstream file(m_folder / name);
        }
        fs::create_directory(m_folder / "d.xml");
    }
    ~GetFilesTest() override { fs::remove_all(m_folder); }

    std::vector<std::string> Files(const std::string& pattern, bool onlyDirectories = false) {
        gcstring_vector files;
        GetFiles(pattern.c_str(), files, onlyDirectories);
        std::vector<std::string> result;
        for (const gcstring& file : files) {
            result.emplace_back(file.c_str());
        }
        return result;
    }

    fs::path m_folder;
};

TEST_F(GetFilesTest, GivesNamesWithoutFolders) {
    EXPECT_EQ(Files((m_folder / "*.xml").string()),
              (std::vector<std::string>{"a.xml", "b c.xml", "d.xml"}));
}

TEST_F(GetFilesTest, ExpandsVariables) {
    const Variable variable(kName, m_folder.c_str());
    EXPECT_EQ(Files("$(OV_BASE_TEST_VARIABLE)/o*"), (std::vector<std::string>{"other.txt"}));
}

TEST_F(GetFilesTest, GivesNothingWithoutAMatch) {
    EXPECT_TRUE(Files((m_folder / "*.none").string()).empty());
}

TEST_F(GetFilesTest, LeavesOutTheFolderAndItsParent) {
    EXPECT_TRUE(Files((m_folder / ".*").string()).empty());
}

TEST_F(GetFilesTest, AsksForDirectoriesAlone) {
    EXPECT_EQ(Files((m_folder / "*").string(), true), (std::vector<std::string>{"d.xml"}));
}

/// One of the three settings that share a shape.
struct Setting {
    const char* variable;
    const char* message;
    void (*set)(const gcstring& value);
    gcstring (*get)();
};

const Setting kSettings[] = {
    {"GENICAM_CACHE_V3_0",
     "GenICam cache folder not set. Call SetGenICamCacheFolder(path) or set the environment "
     "variable GENICAM_CACHE_V3_0",
     &SetGenICamCacheFolder, &GetGenICamCacheFolder},
    {"GENICAM_LOG_CONFIG_V3_0",
     "GenICam log config not set. Call SetGenICamLogConfig(path) or set the environment variable "
     "GENICAM_LOG_CONFIG_V3_0",
     &SetGenICamLogConfig, &GetGenICamLogConfig},
    {"GENICAM_CLPROTOCOL",
     "GenICam CLProtocol folder not set. Call SetGenICamCLProtocolFolder(path) or set the "
     "environment variable GENICAM_CLPROTOCOL",
     &SetGenICamCLProtocolFolder, &GetGenICamCLProtocolFolder},
};

class FolderTest : public testing::TestWithParam<Setting> {
protected:
    ~FolderTest() override { GetParam().set(""); }
};

TEST_P(FolderTest, TellsWhatToDoWhenItIsMissing) {
    EXPECT_EQ(FailureText<RuntimeException>([] { GetParam().get(); }), GetParam().message);
}

TEST_P(FolderTest, ComesFromTheEnvironmentLessOneSeparator) {
    for (const auto& [value, expected] : {std::pair{"/a/b", "/a/b"},
                                          {"/a/b/", "/a/b"},
                                          {"/a/b//", "/a/b/"},
                                          {"c:\\", "c:"},
                                          {"/", ""}}) {
        const Variable variable(GetParam().variable, value);
        EXPECT_EQ(GetParam().get(), expected);
    }
}

TEST_P(FolderTest, ThatIsSetComesBackAsItStands) {
    const Variable variable(GetParam().variable, "/environment");
    GetParam().set("/set/");
    EXPECT_EQ(GetParam().get(), "/set/");
    GetParam().set("");
    EXPECT_EQ(GetParam().get(), "/environment");
}

INSTANTIATE_TEST_SUITE_P(All, FolderTest, testing::ValuesIn(kSettings),
                         [](const auto& test) { return std::string(test.param.variable); });

}  // namespace
}  // namespace BaseTest
