#include "support/Program.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>

#include "support/Output.h"
#include "support/Text.h"

namespace {

/// Texts of cameras may be among it.
void PrintFailure(const std::string& text) {
    // What was printed before it comes before it.
    std::fflush(stdout);
    std::fprintf(stderr, "ovtool: %s\n", VisibleLines(text).c_str());
}

/// Commands run while their arguments are taken.
ExitCode TakeArguments(CLI::App& app, int argc, char** argv) {
    try {
        OccupyStandardStreams();
        app.parse(argc, argv);
        FlushOutput();
    } catch (const CLI::ParseError& wish) {
        const bool isHelp = app.exit(wish) == static_cast<int>(CLI::ExitCodes::Success);
        FlushOutput();
        return isHelp ? ExitCode::Done : ExitCode::Usage;
    }
    return ExitCode::Done;
}

}  // namespace

void AddVerbose(CLI::App& app, bool& verbose) {
    app.add_flag("--verbose", verbose, "also print the library's own text of a failure");
}

ExitCode RunCommandLine(CLI::App& app, int argc, char** argv, const bool& verbose,
                        const std::function<std::string(const ToolError&)>& advice) {
    try {
        return TakeArguments(app, argc, argv);
    } catch (const ToolError& error) {
        std::string text = error.what();
        const std::string more = advice(error);
        text.append(more.empty() ? "" : "\n").append(more);
        if (verbose && !error.Detail().empty()) {
            text += "\nThe library says: " + error.Detail();
        }
        PrintFailure(text);
        return error.Code();
    }
}

int RunProgram(const std::function<ExitCode()>& run) {
    // An output that nobody reads any more is a failure, which has to put things back.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return static_cast<int>(run());
    } catch (const std::exception& error) {
        PrintFailure(error.what());
        return static_cast<int>(ExitCode::Failed);
    }
}
