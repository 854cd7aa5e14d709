#pragma once
/// Runs ovtool as a process and takes what it prints.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "ToolProcess.h"

using Json = nlohmann::ordered_json;

/// What the tool exits with.
namespace Exit {
constexpr int kFailed = 1, kUsage = 2, kNoCamera = 3, kAccessDenied = 4, kTimedOut = 5,
              kIncomplete = 6, kLost = 7, kInterrupted = 130;
}  // namespace Exit

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

    /// The tool on its way.
    /// @param library    the folder of liboviapi.so and its producers
    /// @param arguments  as a shell takes them
    std::unique_ptr<ToolProcess> Start(const std::string& library,
                                       const std::string& arguments) const {
        const std::string command =
            prelude + " OV_GIGE_ADAPTERS=none OV_VIRTUAL_CAMERAS=" + std::to_string(cameras) +
            " OV_VIRTUAL_STATE='" + state + "' OV_TEST_STEERING='" + steering +
            "' LD_LIBRARY_PATH='" + library + "' exec '" OV_TOOL "' " + arguments;
        const std::string errors = "errors" + std::to_string(m_runs++);
        return std::make_unique<ToolProcess>(command, folder / errors);
    }
    ToolRun Run(const std::string& library, const std::string& arguments) const {
        return Start(library, arguments)->Wait();
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

    static void ExpectFails(const ToolRun& run, const std::string& text, int code = Exit::kFailed) {
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, text);
        EXPECT_EQ(run.status, code);
    }

    /// Sets features of a virtual camera, which keeps them.
    void Set(const std::string& arguments) const {
        const ToolRun run = Virtual("set " + arguments);
        ASSERT_EQ(run.err, "") << arguments;
        ASSERT_EQ(run.status, 0) << arguments;
    }

    /// What the tool adds where there is no camera.
    static std::string Searched(const std::string& library, const std::string& gev,
                                const std::string& u3v, const std::string& virtuals) {
        return "Producers are looked for in " + library + ":\n  OvGVTL.cti: " + gev +
               "\n  OvU3VTL.cti: " + u3v + "\n  KwTL.cti: " + virtuals +
               "\nCheck the camera's cable and power and that its producer is there, then: ovtool "
               "list\n";
    }
    static std::string SearchedVirtual() {
        return Searched(OV_TOOL_VIRTUAL, "not there", "not there",
                        "loaded, searches Virtual Interface");
    }

    std::filesystem::path folder;
    /// Where virtual cameras keep their settings.
    std::string state = "off";
    unsigned cameras = 2;
    /// Lines for the producer of GigE Vision cameras.
    std::string steering;
    /// Of the shell, before the tool.
    std::string prelude;

private:
    mutable unsigned m_runs = 0;
};
