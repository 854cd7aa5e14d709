// Whole descriptions of cameras up to live nodes, where a folder of them is at
// hand.

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "FactorySupport.h"

namespace EngineTest {

namespace {

/// A port whose memory never ends: each byte follows from its address.
class PatternPort : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        auto* const bytes = static_cast<uint8_t*>(buffer);
        for (int64_t i = 0; i < length; ++i) {
            const auto place = static_cast<uint64_t>(address + i);
            bytes[i] = static_cast<uint8_t>((place * 0x9E3779B97F4A7C15U) >> 56);
        }
    }
    void Write(const void*, int64_t, int64_t) override {}
};

std::vector<fs::path> DescriptionFiles(const char* folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".xml") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Modules of a producer name their ports otherwise than cameras do.
size_t ConnectAllPorts(INodeMap& map, IPort& port) {
    node_vector nodes;
    map.GetNodes(nodes);
    return static_cast<size_t>(std::count_if(nodes.begin(), nodes.end(), [&](INode* node) {
        return dynamic_cast<IPort*>(node) != nullptr && map.Connect(&port, node->GetName());
    }));
}

bool IsNumberNode(INode* node) {
    return dynamic_cast<IInteger*>(node) != nullptr || dynamic_cast<IFloat*>(node) != nullptr ||
           dynamic_cast<IBoolean*>(node) != nullptr || dynamic_cast<IEnumeration*>(node) != nullptr;
}

/// Reads every number; failures of single nodes belong to the made-up memory.
/// Texts are left out: by such memory some are gigabytes long.
size_t ReadNumbers(INodeMap& map) {
    node_vector nodes;
    map.GetNodes(nodes);
    size_t values = 0;
    for (INode* const node : nodes) {
        if (IsNumberNode(node)) {
            try {
                dynamic_cast<IValue&>(*node).ToString();
                ++values;
            } catch (const GenericException& failure) {
                EXPECT_STRNE(failure.GetDescription(), "") << node->GetName().c_str();
            }
        }
    }
    return values;
}

void LoadAndTell(const fs::path& file) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    CNodeMapFactory factory(ContentType_Xml, file.c_str());
    factory.Preprocess();
    CNodeMapFactory::NodeStatistics_t amounts;
    factory.GetNodeStatistics(amounts);
    INodeMap* const map = factory.CreateNodeMap();
    const double milliseconds =
        std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    const MapOwner owner(map);
    PatternPort port;
    EXPECT_GT(ConnectAllPorts(*map, port), 0U);
    EXPECT_NE(map->GetNode("Root"), nullptr);
    EXPECT_GT(amounts.NumNodes, 0U);
    const size_t values = ReadNumbers(*map);
    EXPECT_GT(values, 0U);
    std::printf("%-40s nodes %6u properties %7u links %7u strings %6u %8.1f ms, %zu numbers read\n",
                file.filename().c_str(), amounts.NumNodes, amounts.NumProperties, amounts.NumLinks,
                amounts.NumStrings, milliseconds, values);
}

}  // namespace

TEST(DescriptionFilesOfCameras, LoadIntoLiveNodes) {
    const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
    if (folder == nullptr) {
        GTEST_SKIP() << "OV_TEST_DESCRIPTIONS names no folder";
    }
    const std::vector<fs::path> files = DescriptionFiles(folder);
    EXPECT_FALSE(files.empty());
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.filename().string());
        EXPECT_NO_THROW(LoadAndTell(file));
    }
}

}  // namespace EngineTest
