// How long the steps of opening a camera take whose description is read through its port,
// zipped, and how long a row of equal cameras takes beside different ones, and beside the
// XML tokeniser alone.
// Usage: open_bench [FILE.xml...]    (default: the virtual cameras' description)

#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/NodeMapFactory.h"
#include "Goals.h"
#include "Measure.h"
#include "OvTestControl.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassXML/Port.h"
#include "TLClassXML/XMLLoader.h"
#include "TLClassXML/Zip.h"
#include "tl/ZipBytes.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using namespace OVTLClass;          // NOLINT(google-build-using-namespace)

constexpr const char* kProducer = OV_BENCH_STAGE "/KwTL.cti";

struct Destroyer {
    void operator()(INodeMap* map) const { dynamic_cast<IDestroy&>(*map).Destroy(); }
};
using NodeMap = std::unique_ptr<INodeMap, Destroyer>;

CNodeMapFactory FactoryOf(const std::string& xml) {
    return {ContentType_Xml, xml.data(), xml.size(), CacheUsage_Ignore};
}

/// A module whose port has a file.
class Module {
public:
    explicit Module(const Bytes& file) : m_producer(kProducer), m_lib(kProducer) {
        m_producer.SetDescription("System", "Camera.zip", file.data(), file.size());
        m_lib.GCInitLib();
        m_lib.TLOpen(&m_port);
    }
    ~Module() {
        m_lib.TLClose(m_port);
        m_lib.GCCloseLib();
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    std::string Load() const { return CXMLLoader(m_lib, m_port).LoadXML(); }
    CPort MakePort() const { return CPort(m_lib, m_port); }

private:
    TestProducer m_producer;
    CGenTLLib m_lib;
    void* m_port = nullptr;
};

/// Prints the steps, and the share of each in their sum.
class Steps {
public:
    void Add(const char* name, double nanoseconds) {
        m_steps.emplace_back(name, std::max(nanoseconds, 0.0));
    }
    ~Steps() {
        double sum = 0;
        for (const auto& [name, nanoseconds] : m_steps) {
            sum += nanoseconds;
        }
        for (const auto& [name, nanoseconds] : m_steps) {
            std::printf("  %-12s %8.2f ms %5.1f %%\n", name, nanoseconds / 1e6,
                        100 * nanoseconds / sum);
        }
        std::printf("  %-12s %8.2f ms\n", "all", sum / 1e6);
    }
    Steps() = default;
    Steps(const Steps&) = delete;
    Steps& operator=(const Steps&) = delete;

private:
    std::vector<std::pair<const char*, double>> m_steps;
};

/// Milliseconds for opening cameras with the descriptions that a call returns, all of which
/// stay open until the last one is.
template <class Describe>
double OpenCameras(size_t count, const Describe& describe) {
    return Nanoseconds(1,
                       [&] {
                           std::vector<NodeMap> maps(count);
                           for (size_t i = 0; i < count; ++i) {
                               maps[i].reset(FactoryOf(describe(i)).CreateNodeMap());
                           }
                       }) /
           1e6;
}

void Tokenise(const std::string& xml) {
    XML_Parser const parser = XML_ParserCreate(nullptr);
    Keep(XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1));
    XML_ParserFree(parser);
}

void MeasureRow(const Module& module, Goals& goals) {
    constexpr size_t kCameras = 16;
    const double equal = OpenCameras(kCameras, [&](size_t) { return module.Load(); });
    const double different = OpenCameras(
        kCameras, [&](size_t i) { return module.Load() + "<!--" + std::to_string(i) + "-->"; });
    std::printf("  %zu cameras, equal %.2f ms, different %.2f ms, ratio %.2f\n", kCameras, equal,
                different, equal / different);
    const std::string xml = module.Load();
    const double tokenise = Nanoseconds(1, [&] { Tokenise(xml); }) / 1e6;
    goals.Print("16 equal cameras, beside the tokens of each", equal, "ms",
                equal / (tokenise * kCameras));
}

void Measure(const char* name, Goals& goals) {
    std::ifstream file(name, std::ios::binary);
    const std::string xml{std::istreambuf_iterator<char>(file), {}};
    const Bytes packed = ZipEntry(xml).Build();
    const Module module(packed);
    if (module.Load() != xml) {
        std::fprintf(stderr, "open_bench: %s does not come back as it is\n", name);
        return;
    }
    std::printf("%s: %zu bytes, %zu zipped\n", std::filesystem::path(name).filename().c_str(),
                xml.size(), packed.size());
    Bytes unpacked;
    const double inflate = Nanoseconds(1, [&] { Keep(CZip::Uncompress(packed, unpacked)); });
    const double parse = Nanoseconds(1, [&] { FactoryOf(xml).LoadAndInject(); });
    const double preprocess = Nanoseconds(1, [&] { FactoryOf(xml).Preprocess(); });
    NodeMap map;
    const double create = Nanoseconds(1, [&] {
        // First, because it would spare the new one the loading.
        map.reset();
        map.reset(FactoryOf(xml).CreateNodeMap());
    });
    CPort port = module.MakePort();
    Steps steps;
    steps.Add("fetch", Nanoseconds(1, [&] { Keep(module.Load().size()); }) - inflate);
    steps.Add("inflate", inflate);
    steps.Add("parse", parse);
    steps.Add("preprocess", preprocess - parse);
    // Includes the destruction of the map of the round before.
    steps.Add("nodes", create - preprocess);
    steps.Add("connect", Nanoseconds(1, [&] { Keep(map->Connect(&port, "Device")); }));
    map.reset();
    MeasureRow(module, goals);
}

}  // namespace

int main(int argc, char** argv) {
    Goals goals("open_bench");
    try {
        if (argc < 2) {
            Measure(OV_BENCH_DESCRIPTION, goals);
        }
        for (int i = 1; i < argc; ++i) {
            Measure(argv[i], goals);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "open_bench: %s\n", failure.what());
        return 1;
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        std::fprintf(stderr, "open_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
