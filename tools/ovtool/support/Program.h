#pragma once
/// How the tool's programs run: their command lines run their commands, whose failures become
/// texts and exit codes.

#include <functional>
#include <string>

#include "support/Error.h"

namespace CLI {
class App;
}

/// The option by which a failure is followed by the library's own text.
void AddVerbose(CLI::App& app, bool& verbose);

/// Takes the arguments, which runs the command that they name, and prints what it fails with.
/// @param verbose  what AddVerbose() sets
/// @param advice   more to say of a failure; none where it returns an empty text
ExitCode RunCommandLine(CLI::App& app, int argc, char** argv, const bool& verbose,
                        const std::function<std::string(const ToolError&)>& advice);

/// All of a program: prints what escapes from it.
/// @return for `main`
int RunProgram(const std::function<ExitCode()>& run);
