// Whole descriptions, node by node: the same whichever way they are loaded and
// read.

#include "FeatureDump.h"
#include "RepeatableMemory.h"
#include "cache_support.h"

namespace EngineTest {

namespace {

constexpr uint64_t kSeeds[] = {1, 2};

std::vector<std::string> Dump(const fs::path& file, ECacheUsage_t usage, ReadMode mode,
                              uint64_t seed) {
    const MapOwner map(
        CNodeMapFactory(ContentType_Xml, gcstring(file.c_str()), usage).CreateNodeMap());
    RepeatableMemory memory(seed);
    EXPECT_GT(ConnectAllPorts(*map.operator->(), memory), 0U);
    return DumpFeatures(*map.operator->(), mode);
}

/// The descriptions that come with the library, and those of the folder that the
/// environment may name.
std::vector<fs::path> Descriptions() {
    std::vector<fs::path> files;
    const fs::path sources(OV_SOURCE_FOLDER);
    std::vector<fs::path> folders{sources / "producers/virtual/descriptions",
                                  sources / "producers/framework/descriptions",
                                  sources / "tests/producer/descriptions"};
    if (const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS")) {
        folders.emplace_back(folder);
    }
    for (const fs::path& folder : folders) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".xml") {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.stem();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

class WholeDescriptions : public testing::TestWithParam<fs::path> {};

}  // namespace

TEST_P(WholeDescriptions, GiveTheSameUncachedCachedAndFromTheDiskCache) {
    for (const uint64_t seed : kSeeds) {
        const auto uncached = Dump(GetParam(), CacheUsage_Ignore, ReadMode::Uncached, seed);
        EXPECT_FALSE(uncached.empty());
        EXPECT_EQ(Dump(GetParam(), CacheUsage_Ignore, ReadMode::Uncached, seed), uncached);
        EXPECT_EQ(Dump(GetParam(), CacheUsage_Ignore, ReadMode::Cached, seed), uncached);
        const CacheFolder folder;
        Dump(GetParam(), CacheUsage_ForceWrite, ReadMode::Cached, seed);
        EXPECT_EQ(Dump(GetParam(), CacheUsage_ForceRead, ReadMode::Uncached, seed), uncached);
        EXPECT_EQ(Dump(GetParam(), CacheUsage_ForceRead, ReadMode::Cached, seed), uncached);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, WholeDescriptions, testing::ValuesIn(Descriptions()), NameOf);

}  // namespace EngineTest
