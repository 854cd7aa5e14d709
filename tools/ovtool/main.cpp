// The command line of liboviapi.so: everything it does, any application can do
// through the same public headers.

#include <CLI/CLI.hpp>
#include <cstdio>

#include "Error.h"
#include "Features.h"
#include "Grab.h"
#include "Session.h"

namespace {

const char* ClassName(OV_DEVICE_CLASS deviceClass) {
    switch (deviceClass) {
        case OV_DEVICE_CLASS_CUSTOM:
            return "custom";
        case OV_DEVICE_CLASS_GEV:
            return "GigE Vision";
        case OV_DEVICE_CLASS_U3V:
            return "USB3 Vision";
        case OV_DEVICE_CLASS_SMART:
            return "smart camera";
        default:
            return "unknown";
    }
}

void List(uint32_t timeout) {
    const Library library;
    const auto cameras = Library::FindCameras(timeout);
    for (size_t i = 0; i < cameras.size(); ++i) {
        const OV_DEVICE_BASE_INFO& camera = cameras[i];
        std::printf("%zu  %s %s  serial %s  user ID \"%s\"  %s  %s\n", i + 1, camera.szVendorName,
                    camera.szModelName, camera.szSN, camera.szUserID, ClassName(camera.deviceClass),
                    camera.szDisplayName);
    }
    std::printf("%zu camera%s\n", cameras.size(), cameras.size() == 1 ? "" : "s");
}

void ListFeatures(const CameraChoice& choice) {
    const Camera camera(choice);
    for (const FeatureRow& row : AllFeatures()) {
        bool implemented = false;
        Check(OVIsImplemented(camera.Handle(), row.id, &implemented),
              "look at " + std::string(row.name));
        if (!implemented) {
            continue;
        }
        bool writable = false;
        Check(OVIsWritable(camera.Handle(), row.id, &writable), "look at " + std::string(row.name));
        const auto value = TryReadFeature(camera.Handle(), row.id);
        const std::string range = value ? DescribeRange(camera.Handle(), row.id) : "";
        std::printf("%-40s %-8s %-2s %s%s%s%s\n", row.name, TypeName(row.id), writable ? "rw" : "r",
                    value ? value->c_str() : "-", range.empty() ? "" : "  (", range.c_str(),
                    range.empty() ? "" : ")");
    }
}

void Get(const CameraChoice& choice, const std::vector<std::string>& names) {
    const Camera camera(choice);
    for (const std::string& name : names) {
        std::printf("%s\n", ReadFeature(camera.Handle(), FeatureByName(name)).c_str());
    }
}

void Set(const CameraChoice& choice, const std::string& name, const std::string& value) {
    const Camera camera(choice);
    WriteFeature(camera.Handle(), FeatureByName(name), value);
}

/// Every command that opens a camera can be told which.
CLI::App* AddCameraCommand(CLI::App& app, const char* name, const char* help,
                           CameraChoice& choice) {
    CLI::App* const command = app.add_subcommand(name, help);
    command
        ->add_option("-c,--camera", choice.key,
                     "the camera: its place in the list, from 1, or its serial number")
        ->capture_default_str();
    return command;
}

int Run(int argc, char** argv) {
    CLI::App app("Looks at cameras, reads and writes their features, and grabs frames");
    app.set_version_flag("--version", std::string(OVGetLibVersion()));
    app.require_subcommand(1);
    CameraChoice choice;
    GrabOptions grab;
    uint32_t timeout = 1000;
    std::vector<std::string> names;
    std::string name;
    std::string value;

    CLI::App* const list = app.add_subcommand("list", "find cameras and list them");
    list->add_option("-t,--timeout", timeout, "how long to search, in milliseconds")
        ->capture_default_str();
    list->callback([&] { List(timeout); });

    CLI::App* const features = AddCameraCommand(
        app, "features", "list the features of a camera with their values", choice);
    features->callback([&] { ListFeatures(choice); });

    CLI::App* const get = AddCameraCommand(app, "get", "print values of features", choice);
    get->add_option("feature", names, "names of features")->required();
    get->callback([&] { Get(choice, names); });

    CLI::App* const set = AddCameraCommand(app, "set", "set a feature, or run a command", choice);
    set->add_option("feature", name, "name of the feature")->required();
    set->add_option("value", value, "its new value; none for a command");
    set->callback([&] { Set(choice, name, value); });

    CLI::App* const grabbing = AddCameraCommand(app, "grab", "grab frames into files", choice);
    grabbing->add_option("-n,--count", grab.count, "how many frames")->capture_default_str();
    grabbing->add_option("-o,--output", grab.folder, "folder of the files")->capture_default_str();
    grabbing->add_option("-t,--timeout", grab.timeout, "for each frame, in milliseconds")
        ->capture_default_str();
    grabbing->add_flag("--png,!--no-png", grab.png, "write pictures (the default)");
    grabbing->add_flag("--raw", grab.raw, "write the bytes as the camera sent them");
    grabbing->callback([&] { Grab(choice, grab); });

    CLI11_PARSE(app, argc, argv);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ovtool: %s\n", error.what());
        return 1;
    }
}
