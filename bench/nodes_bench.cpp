// How long features take by handle and by name, compared to reads at the nodes themselves.
// Usage: nodes_bench

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "FlatCall.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/NodeMapRef.h"
#include "Measure.h"
#include "OvINodes.h"
#include "OvTestControl.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

constexpr size_t kCalls = 20000;
constexpr size_t kLists = 100;
constexpr int kFeatures = 2400;

/// A description of many integers, whose values are kept.
std::string Description() {
    std::string category = "<Category Name=\"Root\">";
    std::string nodes = "<Port Name=\"Device\"/>";
    for (int i = 0; i < kFeatures; ++i) {
        const std::string name = "Feature" + std::to_string(i);
        category.append("<pFeature>").append(name).append("</pFeature>");
        nodes.append("<Integer Name=\"").append(name).append("\"><pValue>").append(name);
        nodes.append("Reg</pValue><Min>0</Min><Max>1000000</Max></Integer><IntReg Name=\"");
        nodes.append(name).append("Reg\"><Address>").append(std::to_string(4 * i));
        nodes.append(
            "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
            "<Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>");
    }
    return R"(<RegisterDescription ModelName="M" VendorName="V" ToolTip="T" )"
           R"(StandardNameSpace="GEV" SchemaMajorVersion="1" SchemaMinorVersion="1" )"
           R"(SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0" )"
           R"(ProductGuid="11111111-2222-3333-4444-555555555577" )"
           R"(VersionGuid="66666666-7777-8888-9999-AAAAAAAAAA77" )"
           R"(xmlns="http://www.genicam.org/GenApi/Version_1_1">)" +
           category + "</Category>" + nodes + "</RegisterDescription>";
}

/// A device whose memory is zero.
class Zeros : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t /*address*/, int64_t length) override {
        std::fill_n(static_cast<uint8_t*>(buffer), static_cast<size_t>(length), uint8_t{0});
    }
    void Write(const void* /*buffer*/, int64_t /*address*/, int64_t /*length*/) override {}
};

/// The same features in the library and in a map beside it.
class Features {
public:
    Features() : m_producer(OV_BENCH_STAGE "/KwTL.cti") {
        const std::string xml = Description();
        m_producer.SetDescription("Remote", "Bench.xml", xml.data(), xml.size());
        m_producer.WatchCalls(0);
        uint32_t count = 0;
        Require(OVInitLib());
        Require(OVUpdateDeviceList(&count, 1000));
        Require(OVOpenDeviceByIndex(1, &camera));
        m_map._LoadXMLFromString(gcstring(xml.c_str()));
        m_map._Connect(&m_port);
        for (int i = 0; i < kFeatures; ++i) {
            nodes.push_back(
                dynamic_cast<IInteger*>(m_map._GetNode(("Feature" + std::to_string(i)).c_str())));
        }
    }
    ~Features() { OVCloseLib(); }
    Features(const Features&) = delete;
    Features& operator=(const Features&) = delete;

    OV_DEV_HANDLE camera = nullptr;
    std::vector<IInteger*> nodes;

private:
    TestProducer m_producer;
    Zeros m_port;
    CNodeMapRef m_map;
};

OV_NODE_HANDLE Find(OV_DEV_HANDLE camera, const char* name) {
    OV_NODE_HANDLE node = 0;
    Require(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, name, &node));
    return node;
}

int64_t Get(OV_NODE_HANDLE node) {
    int64_t value = 0;
    Require(OvNodeGetInteger(node, &value));
    return value;
}

void ListAndRead(OV_DEV_HANDLE camera) {
    size_t number = 0;
    Require(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nullptr, &number));
    std::vector<OV_NODE_HANDLE> nodes(number);
    Require(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nodes.data(), &number));
    // After the category.
    for (size_t i = 1; i < number; ++i) {
        Keep(Get(nodes[i]));
    }
}

void Print(const char* what, double nanoseconds, double reference) {
    std::printf("  %-34s %10.1f ns %8.2f times\n", what, nanoseconds, nanoseconds / reference);
}

}  // namespace

int main() {
    const Features features;
    constexpr const char* kName = "Feature1200";
    IInteger& node = *features.nodes[1200];
    const OV_NODE_HANDLE handle = Find(features.camera, kName);
    ListAndRead(features.camera);

    const double read = Nanoseconds(kCalls, [&] { Keep(node.GetValue(false, false)); });
    std::printf("A value that is kept:\n");
    Print("read at the node", read, read);
    Print("by handle (at most 3 times)", Nanoseconds(kCalls, [&] { Keep(Get(handle)); }), read);
    Print("by name (at most 6 times)",
          Nanoseconds(kCalls, [&] { Keep(Get(Find(features.camera, kName))); }), read);

    const double reads = Nanoseconds(kLists, [&] {
        for (IInteger* const one : features.nodes) {
            Keep(one->GetValue(false, false));
        }
    });
    std::printf("%d features:\n", kFeatures);
    Print("reads at the nodes", reads, reads);
    Print("list and values (at most 2 times)",
          Nanoseconds(kLists, [&] { ListAndRead(features.camera); }), reads);
    return 0;
}
