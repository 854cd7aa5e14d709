#pragma once
/// Runs ovtool as a process and takes what it prints.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

using Json = nlohmann::ordered_json;

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

/// A folder of its own for each test, gone with it.
class ToolTest : public ::testing::Test {
protected:
    ToolTest() {
        std::string name = (std::filesystem::temp_directory_path() / "ovtool_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("No folder for the test");
        }
        folder = name;
    }
    ~ToolTest() override { std::filesystem::remove_all(folder); }

    /// @param library    the folder of liboviapi.so and its producers
    /// @param arguments  as a shell takes them
    ToolRun Run(const std::string& library, const std::string& arguments) const {
        const std::filesystem::path errors = folder / "errors";
        const std::string command = "OV_VIRTUAL_CAMERAS=2 OV_VIRTUAL_STATE='" + state +
                                    "' LD_LIBRARY_PATH='" + library + "' '" OV_TOOL "' " +
                                    arguments + " 2>'" + errors.string() + "'";
        ToolRun run;
        FILE* const pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) {
            return run;
        }
        std::array<char, 4096> part{};
        while (const size_t size = std::fread(part.data(), 1, part.size(), pipe)) {
            run.out.append(part.data(), size);
        }
        run.status = WEXITSTATUS(pclose(pipe));
        std::ifstream file(errors);
        run.err = (std::ostringstream() << file.rdbuf()).str();
        return run;
    }

    ToolRun Virtual(const std::string& arguments) const { return Run(OV_TOOL_VIRTUAL, arguments); }
    ToolRun Gev(const std::string& arguments) const { return Run(OV_TOOL_GEV, arguments); }

    static void ExpectPrints(const ToolRun& run, const std::string& text) {
        EXPECT_EQ(run.out, text);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }

    /// A document of exactly that content, keys in that order.
    static void ExpectDocument(const ToolRun& run, const Json& document) {
        ExpectPrints(run, document.dump(2) + "\n");
    }

    static void ExpectFails(const ToolRun& run, const std::string& text) {
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, text);
        EXPECT_EQ(run.status, 1);
    }

    std::filesystem::path folder;
    /// Where virtual cameras keep their settings.
    std::string state = "off";
};
