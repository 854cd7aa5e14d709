// Prints what every node of a camera description gives over made-up memory.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "Base/GCException.h"
#include "FeatureDump.h"
#include "GenApi/NodeMapFactory.h"
#include "RepeatableMemory.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

struct Destroyer {
    void operator()(INodeMap* map) const { dynamic_cast<IDestroy&>(*map).Destroy(); }
};

struct Options {
    std::string file;
    bool isZip = false;
    bool isCached = false;
    bool usesDisk = false;
    uint64_t seed = 1;
};

/// From the disk cache the description is loaded by a second factory, which is
/// told to fail rather than to parse.
INodeMap* Load(const Options& options) {
    const EContentType_t type = options.isZip ? ContentType_ZippedXml : ContentType_Xml;
    const gcstring name = options.file.c_str();
    if (!options.usesDisk) {
        return CNodeMapFactory(type, name).CreateNodeMap();
    }
    CNodeMapFactory(type, name, CacheUsage_ForceWrite).Preprocess();
    return CNodeMapFactory(type, name, CacheUsage_ForceRead).CreateNodeMap();
}

void Dump(const Options& options) {
    const std::unique_ptr<INodeMap, Destroyer> map(Load(options));
    RepeatableMemory memory(options.seed);
    ConnectAllPorts(*map, memory);
    const ReadMode mode = options.isCached ? ReadMode::Cached : ReadMode::Uncached;
    for (const std::string& line : DumpFeatures(*map, mode)) {
        std::puts(line.c_str());
    }
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app(
        "Prints one line for each node of a camera description: name, interface, access, "
        "value, range, result of writing the value back, value afterwards.");
    app.add_option("description", options.file, "XML file of a camera")->required();
    app.add_flag("--zip", options.isZip, "the file is a zip");
    app.add_flag("--cached", options.isCached, "read all values once beforehand");
    app.add_flag("--disk", options.usesDisk,
                 "load by way of the cache folder, which GENICAM_CACHE_V3_0 names");
    app.add_option("--seed", options.seed, "chooses the made-up memory");
    CLI11_PARSE(app, argc, argv);
    try {
        Dump(options);
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        std::fprintf(stderr, "dump_features: %s\n", failure.GetDescription());
        return 1;
    }
    return 0;
}
