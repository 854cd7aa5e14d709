// `ovtool simulate`: a program of its own, so that whoever builds the tool need not build the
// other end of the network, too.

#include <CLI/CLI.hpp>

#include "FaultOptions.h"
#include "Simulation.h"
#include "support/Program.h"

namespace {

struct CommandLine {
    SimulationOptions simulation;
    bool json = false;
    bool verbose = false;
};

void AddOptions(CLI::App& app, CommandLine& options) {
    SimulationOptions& simulation = options.simulation;
    AddVerbose(app, options.verbose);
    app.footer(ExitCodesText());
    app.add_flag("--json", options.json, "print a JSON document");
    app.add_option("addresses", simulation.places,
                   "where cameras are: ADDRESS, with /BITS of the subnet and :PORT")
        ->capture_default_str();
    app.add_option("-n,--count", simulation.count,
                   "cameras for each address, at addresses that count on from it")
        ->check(CLI::Range(1, 250))
        ->capture_default_str();
    app.add_option("-a,--adapter", simulation.adapter,
                   "network adapter of the cameras, which gets the addresses that it lacks");
    app.add_flag("--zip,!--no-zip", simulation.zipped,
                 "serve the description as an archive (the default)");
    app.add_option("--account", simulation.account,
                   "file for what the cameras did, at the end and at each SIGUSR1");
    AddFaultOptions(app, simulation.faults);
}

}  // namespace

int main(int argc, char** argv) {
    return RunProgram([&] {
        CLI::App app("be GigE Vision cameras on the network");
        CommandLine options;
        AddOptions(app, options);
        app.callback([&options] { Simulate(options.simulation, options.json); });
        return RunCommandLine(app, argc, argv, options.verbose,
                              [](const ToolError& /*error*/) { return std::string(); });
    });
}
