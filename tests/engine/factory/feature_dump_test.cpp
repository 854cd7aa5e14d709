// Whole descriptions, node by node: the same whichever way they are loaded and
// read.

#include "CacheSupport.h"
#include "FeatureDump.h"
#include "RepeatableMemory.h"
#include "support/Descriptions.h"

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

INSTANTIATE_TEST_SUITE_P(Files, WholeDescriptions,
                         testing::ValuesIn(Descriptions(OV_SOURCE_FOLDER)),
                         [](const auto& file) { return TestNameOf(file.param); });

}  // namespace EngineTest
