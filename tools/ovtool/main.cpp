// The command line of liboviapi.so: everything it does, any application can do
// through the same public headers.

#include <CLI/CLI.hpp>

#include "camera/Node.h"
#include "camera/SearchReport.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "pipeline/PipelineOptions.h"
#include "support/Error.h"
#include "support/Program.h"

namespace {

/// Where all commands put what they are told; each run has one command.
struct CommandLine {
    /// As it was called.
    std::string program;
    CameraChoice choice;
    bool json = false;
    bool verbose = false;
    uint32_t timeout = kSearchTimeout;
    GrabOptions grab;
    ConvertOptions convert;
    ChunkOptions chunks;
    EventOptions events;
    FeatureListOptions features;
    std::vector<std::string> names;
    std::string module = "camera";
    std::string bytes;
    std::string file;
    std::string cameraFile;
    bool verify = false;
    uint64_t address = 0;
    size_t size = 4;
    StreamOptions stream;
    std::string mac;
    IpAddresses addresses;
    IpConfiguration configuration;
    ActionOptions action;
    OV_RESET_MODE resetMode = OV_RESET_MODE_1;
};

CLI::App* AddQuietCommand(CLI::App& app, const char* name, const char* help, CommandLine& options) {
    CLI::App* const command = app.add_subcommand(name, help);
    AddVerbose(*command, options.verbose);
    command->footer(ExitCodesText());
    return command;
}

/// A command that prints, and can do so for machines.
CLI::App* AddCommand(CLI::App& app, const char* name, const char* help, CommandLine& options) {
    CLI::App* const command = AddQuietCommand(app, name, help, options);
    command->add_flag("--json", options.json, "print a JSON document");
    return command;
}

/// Every command that opens a camera can be told which.
CLI::App* WithCamera(CLI::App* command, CommandLine& options) {
    command
        ->add_option("-c,--camera", options.choice.key,
                     "the camera: its place in the list, from 1, or its serial number")
        ->capture_default_str();
    return command;
}

CLI::App* WithSearch(CLI::App* command, CommandLine& options) {
    command->add_option("-t,--timeout", options.timeout, "how long to search, in milliseconds")
        ->capture_default_str();
    return command;
}

CLI::App* WithMac(CLI::App* command, CommandLine& options) {
    command->add_option("mac", options.mac, "MAC address of the camera")->required();
    return command;
}

void AddFeatureCommands(CLI::App& app, CommandLine& options) {
    CLI::App* const features = WithCamera(
        AddCommand(app, "features", "list the features of a camera with their values", options),
        options);
    features->add_option("pattern", options.features.pattern,
                         "part of a name, or a name with wildcards");
    features->add_flag("--tree", options.features.tree, "with their categories");
    features
        ->add_option("--visibility", options.features.visibility,
                     "the rarest users whose features are listed")
        ->check(CLI::IsMember(VisibilityNames()))
        ->capture_default_str();
    features->callback(
        [&options] { ListFeatures(options.choice, options.features, options.json); });

    CLI::App* const describe = WithCamera(
        AddCommand(app, "describe", "print all that is known of features", options), options);
    describe->add_option("feature", options.names, "names of features")->required();
    describe->callback(
        [&options] { DescribeFeatures(options.choice, options.names, options.json); });

    CLI::App* const explain = WithCamera(
        AddCommand(app, "explain",
                   "tell why features can't be read or set now, and what limits them", options),
        options);
    explain->add_option("feature", options.names, "names of features")->required();
    explain->callback([&options] { ExplainFeatures(options.choice, options.names, options.json); });

    CLI::App* const xml = WithCamera(
        AddQuietCommand(app, "xml", "print the description of a camera", options), options);
    xml->add_option("--module", options.module, "whose description")
        ->check(CLI::IsMember(ModuleNames()))
        ->capture_default_str();
    xml->callback([&options] { PrintXml(options.choice, options.module); });

    CLI::App* const get =
        WithCamera(AddCommand(app, "get", "print values of features", options), options);
    get->add_option("feature", options.names,
                    "names of features; one value of many: Gain[GainSelector=AnalogAll]")
        ->required();
    get->callback([&options] { Get(options.choice, options.names, options.json); });

    CLI::App* const set =
        WithCamera(AddCommand(app, "set", "set features, run commands", options), options);
    set->add_option("feature", options.names,
                    "FEATURE=VALUE or a command, in the order in which they are done; "
                    "or one FEATURE and its VALUE")
        ->required();
    set->callback([&options] { Set(options.choice, options.names, options.json); });
}

void AddSettingsCommands(CLI::App& app, CommandLine& options) {
    CLI::App* const save =
        WithCamera(AddQuietCommand(app, "save", "write all settings to a file", options), options);
    save->add_option("file", options.file, "the file, replaced if it is there")->required();
    save->callback([&options] { SaveSettings(options.choice, options.file); });

    CLI::App* const load =
        WithCamera(AddQuietCommand(app, "load", "take all settings from a file", options), options);
    load->add_option("file", options.file, "a file of a camera of the same model")->required();
    load->add_flag("--verify", options.verify, "tell also what the camera rounded");
    load->callback([&options] { LoadSettings(options.choice, options.file, options.verify); });
}

/// A command on a file of the camera.
CLI::App* AddFileCommand(CLI::App& file, const char* name, const char* help, CommandLine& options) {
    CLI::App* const command = WithCamera(AddQuietCommand(file, name, help, options), options);
    command->add_option("name", options.cameraFile, "the camera's name of the file")->required();
    return command;
}

void AddFileCommands(CLI::App& app, CommandLine& options) {
    CLI::App& file = *app.add_subcommand("file", "files that a camera keeps");
    file.require_subcommand(1);
    CLI::App* const get = AddFileCommand(file, "get", "copy a file from a camera", options);
    get->add_option("path", options.file, "the file here, replaced if it is there")->required();
    get->callback([&options] { GetFile(options.choice, options.cameraFile, options.file); });
    CLI::App* const put = AddFileCommand(file, "put", "copy a file to a camera", options);
    put->add_option("path", options.file, "the file here")->required();
    put->callback([&options] { PutFile(options.choice, options.cameraFile, options.file); });
    AddFileCommand(file, "delete", "delete a file of a camera", options)->callback([&options] {
        DeleteFile(options.choice, options.cameraFile);
    });
}

void AddRegisterCommands(CLI::App& app, CommandLine& options) {
    CLI::App* const read =
        WithCamera(AddCommand(app, "read", "print registers, past all features", options), options);
    read->add_option("address", options.address, "of the first byte")->required();
    read->add_option("size", options.size, "number of bytes, up to 1 MiB")
        ->check(CLI::Range(0, 1 << 20))
        ->capture_default_str();
    read->callback(
        [&options] { ReadRegisters(options.choice, options.address, options.size, options.json); });

    CLI::App* const write = WithCamera(
        AddQuietCommand(app, "write", "change registers, past all features", options), options);
    write->add_option("address", options.address, "of the first byte")->required();
    write->add_option("bytes", options.bytes, "in hexadecimal")->required();
    write->callback([&options] { WriteRegisters(options.choice, options.address, options.bytes); });
}

void AddFrameCommands(CLI::App& app, CommandLine& options) {
    CLI::App* const grab =
        WithCamera(AddCommand(app, "grab", "grab frames into files", options), options);
    grab->add_option("-n,--count", options.grab.count, "how many frames")->capture_default_str();
    grab->add_option("-o,--output", options.grab.folder, "folder of the files")
        ->capture_default_str();
    grab->add_option("-t,--timeout", options.grab.timeout, "for each frame, in milliseconds")
        ->capture_default_str();
    grab->add_option("--memory", options.grab.memory,
                     "for frames that wait to be written, in MiB; else half of what is free")
        ->check(CLI::Range(size_t{1}, size_t{1} << 24));
    grab->add_flag("--png,!--no-png", options.grab.png, "write pictures (the default)");
    grab->add_flag("--raw", options.grab.raw, "write the bytes as the camera sent them");
    CLI::Option* const process = grab->add_flag_callback(
        "--process", [] {}, "let pictures go through what the options below say");
    for (CLI::Option* const option :
         AddPipelineOptions(*grab, options.grab.pipeline)->get_options()) {
        option->needs(process);
    }
    grab->callback([&options] { Grab(options.choice, options.grab, options.json); });

    CLI::App* const chunks = WithCamera(
        AddCommand(app, "chunks", "take frames and print what the camera appends to them", options),
        options);
    chunks->add_option("-n,--count", options.chunks.count, "how many frames")
        ->capture_default_str();
    chunks->add_option("-t,--timeout", options.chunks.timeout, "for each frame, in milliseconds")
        ->capture_default_str();
    chunks->callback([&options] { PrintChunks(options.choice, options.chunks, options.json); });

    CLI::App* const stream = WithCamera(
        AddCommand(app, "stream", "take frames and tell how well they come", options), options);
    stream->add_option("-s,--seconds", options.stream.seconds, "for how long, from the first frame")
        ->check(CLI::Range(1e-3, 1e9))
        ->capture_default_str();
    stream
        ->add_option("-t,--timeout", options.stream.timeout, "for the first frame, in milliseconds")
        ->capture_default_str();
    stream->add_option("--set", options.stream.settings,
                       "NAME=VALUE, set before frames flow; the stream's own settings hold for "
                       "this run alone");
    stream->callback([&options] { MeasureStream(options.choice, options.stream, options.json); });
}

void AddConvert(CLI::App& app, CommandLine& options) {
    CLI::App* const convert = AddCommand(app, "convert", "turn raw files into pictures", options);
    convert->add_option("files", options.convert.files, "one frame each")->required();
    convert->add_option("--width", options.convert.width, "in pixels")->required();
    convert->add_option("--height", options.convert.height, "in pixels")->required();
    convert
        ->add_option("-f,--format", options.convert.pixelFormat,
                     "pixel format: its name, or the camera's number")
        ->required();
    convert->add_option("-o,--output", options.convert.output,
                        "the picture, or with .raw its bytes; by default beside the file");
    AddPipelineOptions(*convert, options.convert.pipeline);
    convert->callback([&options] { Convert(options.convert, options.json); });
}

void AddEvents(CLI::App& app, CommandLine& options) {
    CLI::App* const events = WithCamera(
        AddCommand(app, "events", "print what the camera tells, as it comes", options), options);
    events->add_option("-e,--event", options.events.names, "only these events, by name");
    events->add_option("-n,--count", options.events.count, "end after that many events");
    events->add_option("-s,--seconds", options.events.seconds, "for how long")
        ->check(CLI::Range(0.0, 1e9))
        ->capture_default_str();
    events->add_flag("--idle", options.events.idle, "let no frames flow meanwhile");
    events->callback([&options] { PrintEvents(options.choice, options.events, options.json); });
}

void AddAction(CLI::App& app, CommandLine& options) {
    constexpr uint32_t kLongestWait = 10'000;
    ActionOptions& wanted = options.action;
    CLI::App* const action =
        AddCommand(app, "action", "make GigE Vision cameras do something at once", options);
    action->add_option("--device-key", wanted.deviceKey, "of the cameras that are meant")
        ->required();
    action->add_option("--group-key", wanted.groupKey, "of their signals that are meant")
        ->required();
    action
        ->add_option("--group-mask", wanted.groupMask,
                     "signals are meant whose mask has a bit in common with it")
        ->capture_default_str();
    action->add_option("--at", wanted.time,
                       "when, in nanoseconds of the clock that the cameras share; else at once");
    action->add_option("-i,--interface", wanted.interface,
                       "the interface's ID, or the adapter's name; else all");
    action->add_option("--to", wanted.destination, "address of one camera, or of a broadcast");
    action
        ->add_option("-w,--wait", wanted.wait,
                     "for answers, in milliseconds; 0: cameras needn't answer")
        ->check(CLI::Range(uint32_t{0}, kLongestWait))
        ->capture_default_str();
    action->callback([&options] { SendAction(options.action, options.json); });
}

/// The three addresses as arguments; `required` or all or none.
void AddAddressArguments(CLI::App* command, IpAddresses& addresses, bool required) {
    CLI::Option* const ip = command->add_option("address", addresses.ip, "dotted address");
    CLI::Option* const mask = command->add_option("mask", addresses.mask, "subnet mask");
    CLI::Option* const gateway = command->add_option("gateway", addresses.gateway, "gateway");
    if (required) {
        gateway->required();
        mask->required();
        ip->required();
    } else {
        ip->needs(gateway);
    }
}

void AddConfigure(CLI::App& ip, CommandLine& options) {
    CLI::App* const configure =
        WithMac(AddCommand(ip, "configure", "set how a camera gets its address", options), options);
    configure->add_option("mode", options.configuration.mode, "the ways that are tried")
        ->required()
        ->check(CLI::IsMember(IpModeNames()));
    AddAddressArguments(configure, options.configuration.addresses, false);
    configure->add_option("-u,--user-id", options.configuration.userId, "new user ID");
    configure->callback(
        [&options] { ConfigureIp(options.mac, options.configuration, options.json); });
}

void AddIpCommands(CLI::App& app, CommandLine& options) {
    CLI::App& ip = *app.add_subcommand("ip", "addresses of GigE Vision cameras");
    ip.require_subcommand(1);

    WithSearch(AddCommand(ip, "list", "list cameras of all networks with their addresses", options),
               options)
        ->callback([&options] { ListAddresses(options.timeout, options.json); });

    CLI::App* const force = WithMac(
        AddCommand(ip, "force", "give a camera an address until its next start", options), options);
    AddAddressArguments(force, options.addresses, true);
    force->callback([&options] { ForceIp(options.mac, options.addresses, options.json); });

    CLI::App* const persistent = WithCamera(
        AddCommand(ip, "persistent", "print or set the address that a camera keeps", options),
        options);
    AddAddressArguments(persistent, options.addresses, false);
    persistent->callback(
        [&options] { PersistentIp(options.choice, options.addresses, options.json); });

    AddConfigure(ip, options);

    CLI::App* const reset = WithMac(AddCommand(ip, "reset", "reset a camera", options), options);
    reset->add_option("-m,--mode", options.resetMode, "1 or 2; the producer knows what each does")
        ->check(CLI::IsMember({OV_RESET_MODE_1, OV_RESET_MODE_2}))
        ->capture_default_str();
    reset->callback([&options] { ResetCamera(options.mac, options.resetMode, options.json); });
}

/// A program of its own takes its arguments, and answers for its help, too.
void AddSimulate(CLI::App& app, CommandLine& options) {
    CLI::App* const simulate =
        app.add_subcommand("simulate", "be GigE Vision cameras on the network");
    simulate->set_help_flag();
    simulate->prefix_command();
    simulate->callback([simulate, &options] {
        std::vector<std::string> arguments = simulate->remaining();
        if (options.verbose) {
            arguments.emplace_back("--verbose");
        }
        RunSimulator(options.program, arguments);
    });
}

void AddCommands(CLI::App& app, CommandLine& options) {
    app.set_version_flag("--version", std::string(OVGetLibVersion()));
    app.footer(ExitCodesText());
    AddVerbose(app, options.verbose);
    app.require_subcommand(1);
    WithSearch(AddCommand(app, "list", "find cameras and list them", options), options)
        ->callback([&options] { List(options.timeout, options.json); });
    WithCamera(AddCommand(app, "info", "all that is known of a camera", options), options)
        ->callback([&options] { ShowInfo(options.choice, options.json); });
    AddFeatureCommands(app, options);
    AddSettingsCommands(app, options);
    AddFileCommands(app, options);
    AddRegisterCommands(app, options);
    AddFrameCommands(app, options);
    AddConvert(app, options);
    AddEvents(app, options);
    AddAction(app, options);
    AddIpCommands(app, options);
    AddSimulate(app, options);
}

std::string AdviceOn(const ToolError& error) {
    return error.Code() == ExitCode::NoCamera ? SearchReport() : "";
}

}  // namespace

int main(int argc, char** argv) {
    return RunProgram([&] {
        CLI::App app("Looks at cameras, reads and writes their features, and grabs frames");
        CommandLine options;
        options.program = argv[0];
        AddCommands(app, options);
        return RunCommandLine(app, argc, argv, options.verbose, AdviceOn);
    });
}
