// How long a description takes to load, compared to the XML tokeniser alone, and how much
// memory a loaded map takes. At the end, how much longer ten times as many nodes take.
// Usage: load_bench [FILE.xml...]    (default: the virtual cameras' description)

#include <expat.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Base/GCException.h"
#include "GenApi/NodeMapFactory.h"
#include "Goals.h"
#include "Measure.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

struct Figures {
    std::vector<double> parse;
    std::vector<double> load;
    std::vector<double> cached;
    std::vector<double> memory;
    std::vector<double> link;
    std::vector<double> map;
    /// Milliseconds for a megabyte.
    std::vector<double> loadTime;
    std::vector<double> cachedTime;
};

std::string ReadFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Tokenise(const std::string& xml) {
    XML_Parser const parser = XML_ParserCreate(nullptr);
    if (XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1) != XML_STATUS_OK) {
        std::fprintf(stderr, "load_bench: not well-formed\n");
        std::exit(1);
    }
    XML_ParserFree(parser);
}

void Destroy(INodeMap* map) {
    dynamic_cast<IDestroy&>(*map).Destroy();
}

CNodeMapFactory FactoryOf(const std::string& xml, ECacheUsage_t usage = CacheUsage_Ignore) {
    return {ContentType_Xml, xml.data(), xml.size(), usage};
}

size_t UsedBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Bytes of a description's data for one of its text, for each of its links, and of live nodes with
/// all that they keep.
void MeasureMemory(const std::string& xml, Figures& figures) {
    const size_t before = UsedBytes();
    CNodeMapFactory factory = FactoryOf(xml);
    factory.LoadAndInject();
    const size_t loaded = UsedBytes() - before;
    CNodeMapFactory::NodeStatistics_t amounts;
    factory.Preprocess();
    factory.GetNodeStatistics(amounts);
    const size_t all = UsedBytes() - before;
    figures.memory.push_back(static_cast<double>(loaded) / static_cast<double>(xml.size()));
    figures.link.push_back(static_cast<double>(all - std::min(all, loaded)) /
                           static_cast<double>(amounts.NumLinks));
    factory.ReleaseCameraDescriptionFileData();
    INodeMap* const map = FactoryOf(xml).CreateNodeMap();
    figures.map.push_back(static_cast<double>(UsedBytes() - before) /
                          static_cast<double>(xml.size()));
    Destroy(map);
}

/// A description with that many nodes in one category, none of which reads another.
std::string FlatDescription(size_t count) {
    std::string features;
    std::string nodes;
    for (size_t i = 0; i < count; ++i) {
        const std::string name = "N" + std::to_string(i);
        features.append("<pFeature>").append(name).append("</pFeature>");
        nodes.append("<Integer Name=\"").append(name).append("\"><Value>1</Value></Integer>\n");
    }
    return "<RegisterDescription ModelName=\"M\" VendorName=\"V\" StandardNameSpace=\"None\" "
           "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
           "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" "
           "ProductGuid=\"11111111-2222-3333-4444-555555555555\" "
           "VersionGuid=\"11111111-2222-3333-4444-555555555555\" "
           "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n<Category Name=\"Root\">" +
           features + "</Category>\n" + nodes + "</RegisterDescription>";
}

/// Milliseconds for one load. It is the first one of the process, as it usually is in
/// applications.
double LoadFlat(size_t count) {
    const std::string xml = FlatDescription(count);
    return Nanoseconds(
               1, [&] { Destroy(FactoryOf(xml).CreateNodeMap()); }, 1) /
           1e6;
}

void MeasureFlat() {
    const double few = LoadFlat(100000);
    const double many = LoadFlat(1000000);
    std::printf("flat nodes: 100000 in %.0f ms, 1000000 in %.0f ms, ratio %.1f\n", few, many,
                many / few);
}

void Measure(const char* name, Figures& figures) {
    const std::string xml = ReadFile(name);
    MeasureMemory(xml, figures);
    FactoryOf(xml, CacheUsage_Automatic).Preprocess();
    const auto [tokenise, parse, preprocess, load, cached] = NanosecondsInTurns(
        1, [&] { Tokenise(xml); }, [&] { FactoryOf(xml).LoadAndInject(); },
        [&] { FactoryOf(xml).Preprocess(); }, [&] { Destroy(FactoryOf(xml).CreateNodeMap()); },
        [&] { Destroy(FactoryOf(xml, CacheUsage_ForceRead).CreateNodeMap()); });
    figures.parse.push_back(parse / tokenise);
    figures.load.push_back(load / tokenise);
    figures.cached.push_back(cached / tokenise);
    const double megabytes = static_cast<double>(xml.size()) / 1e6;
    figures.loadTime.push_back(load / 1e6 / megabytes);
    figures.cachedTime.push_back(cached / 1e6 / megabytes);
    std::printf("%-36.36s %8.2f %8.2f %8.2f %8.2f %8.2f | %6.2f %6.2f %6.2f | %6.2f %6.1f %6.2f\n",
                std::filesystem::path(name).filename().c_str(), tokenise / 1e6, parse / 1e6,
                preprocess / 1e6, load / 1e6, cached / 1e6, parse / tokenise, load / tokenise,
                cached / tokenise, figures.memory.back(), figures.link.back(), figures.map.back());
}

}  // namespace

int main(int argc, char** argv) {
    std::string folder = (std::filesystem::temp_directory_path() / "ov_load_bench_XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        std::fprintf(stderr, "load_bench: there is no folder for the cache\n");
        return 1;
    }
    setenv("GENICAM_CACHE_V3_0", folder.c_str(), 1);
    Goals goals("load_bench");
    std::printf("%-36s %8s %8s %8s %8s %8s | %6s %6s %6s | %6s %6s %6s\n", "milliseconds", "expat",
                "parse", "preproc", "load", "disk", "p/e", "l/e", "d/e", "B/XML", "B/link",
                "map/XML");
    Figures figures;
    if (argc < 2) {
        Measure(OV_BENCH_DESCRIPTION, figures);
    }
    for (int i = 1; i < argc; ++i) {
        Measure(argv[i], figures);
    }
    std::printf("%-36s %44s | %6.2f %6.2f %6.2f | %6.2f %6.1f %6.2f\n", "median", "",
                Median(figures.parse), Median(figures.load), Median(figures.cached),
                Median(figures.memory), Median(figures.link), Median(figures.map));
    goals.Print("description to live nodes, for a megabyte", Median(figures.loadTime), "ms",
                Median(figures.load));
    goals.Print("the same from the disk cache", Median(figures.cachedTime), "ms",
                Median(figures.cached));
    MeasureFlat();
    std::filesystem::remove_all(folder);
    return 0;
}
