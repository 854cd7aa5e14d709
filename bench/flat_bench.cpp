// How long the flat functions take for features, for opening and for the list of cameras, beside
// the same work at a node, with one camera or on one thread. Usage: flat_bench

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "FlatCall.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IString.h"
#include "GenApi/NodeMapRef.h"
#include "Goals.h"
#include "Measure.h"
#include "OvIAPI.h"
#include "OvINodes.h"
#include "OvTestControl.h"
#include "TwoThreads.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

constexpr size_t kCalls = 20000;
constexpr size_t kFewCalls = 2000;
constexpr uint32_t kSearchTime = 1000;

/// A register of four bytes, or of eight for a float.
std::string RegisterXml(const char* kind, const char* name, int address, int length,
                        const char* mode, const std::string& more) {
    return std::string("<") + kind + " Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address><Length>" + std::to_string(length) + "</Length><AccessMode>" + mode +
           "</AccessMode><pPort>Device</pPort>" + more + "</" + kind + ">";
}

/// A feature of each type, all of which keep their values, and one that can't be read. The text is
/// none that the list of cameras shows, too.
std::string Description() {
    constexpr const char* kUnsigned = "<Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess>";
    constexpr const char* kLittle = "<Endianess>LittleEndian</Endianess>";
    std::string xml =
        R"(<RegisterDescription ModelName="M" VendorName="V" ToolTip="T" )"
        R"(StandardNameSpace="GEV" SchemaMajorVersion="1" SchemaMinorVersion="1" )"
        R"(SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0" )"
        R"(ProductGuid="11111111-2222-3333-4444-555555555578" )"
        R"(VersionGuid="66666666-7777-8888-9999-AAAAAAAAAA78" )"
        R"(xmlns="http://www.genicam.org/GenApi/Version_1_1"><Category Name="Root">)";
    for (const char* const name :
         {"Width", "Height", "ExposureTime", "PixelFormat", "ReverseX", "UserPassword"}) {
        xml.append("<pFeature>").append(name).append("</pFeature>");
    }
    xml +=
        "</Category><Port Name=\"Device\"/>"
        "<Integer Name=\"Width\"><pValue>WidthReg</pValue><Min>0</Min><Max>100000</Max></Integer>"
        "<Integer Name=\"Height\"><pValue>HeightReg</pValue></Integer>"
        "<Float Name=\"ExposureTime\"><pValue>ExposureReg</pValue><Min>0</Min><Max>1e6</Max>"
        "</Float>"
        "<Enumeration Name=\"PixelFormat\"><EnumEntry Name=\"Mono8\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"Mono12\"><Value>1</Value></EnumEntry><pValue>FormatReg</pValue>"
        "</Enumeration>"
        "<Boolean Name=\"ReverseX\"><pValue>ReverseReg</pValue></Boolean>";
    xml += RegisterXml("IntReg", "WidthReg", 0, 4, "RW", kUnsigned);
    xml += RegisterXml("IntReg", "HeightReg", 4, 4, "WO", kUnsigned);
    xml += RegisterXml("FloatReg", "ExposureReg", 8, 8, "RW", kLittle);
    xml += RegisterXml("IntReg", "FormatReg", 16, 4, "RW", kUnsigned);
    xml += RegisterXml("IntReg", "ReverseReg", 20, 4, "RW", kUnsigned);
    xml += RegisterXml("StringReg", "UserPassword", 32, 16, "RW", "");
    return xml + "</RegisterDescription>";
}

/// The same memory, reached as the library reaches it.
class CameraPort : public IPort {
public:
    explicit CameraPort(OV_DEV_HANDLE camera) : m_camera(camera) {}
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        auto size = static_cast<size_t>(length);
        Require(OVReadRemoteDevicePort(m_camera, static_cast<uint64_t>(address), buffer, &size));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        auto size = static_cast<size_t>(length);
        Require(OVWriteRemoteDevicePort(m_camera, static_cast<uint64_t>(address),
                                        const_cast<void*>(buffer), &size));
    }

private:
    OV_DEV_HANDLE m_camera;
};

/// The features of an open camera in a map beside it.
class Nodes {
public:
    explicit Nodes(OV_DEV_HANDLE camera) : m_port(camera) {
        m_map._LoadXMLFromString(gcstring(Description().c_str()));
        m_map._Connect(&m_port);
    }
    template <class Interface>
    Interface& Get(const char* name) const {
        return dynamic_cast<Interface&>(*m_map._GetNode(name));
    }

private:
    CameraPort m_port;
    CNodeMapRef m_map;
};

OV_DEV_HANDLE Open(uint32_t index) {
    OV_DEV_HANDLE camera = nullptr;
    Require(OVOpenDeviceByIndex(index, &camera));
    return camera;
}

void UpdateList() {
    uint32_t count = 0;
    Require(OVUpdateDeviceList(&count, kSearchTime));
}

/// One feature by its identifier and its node: how it's read and written in both ways.
class Comparison {
public:
    explicit Comparison(Goals& goals) : m_goals(goals) {}

    template <class Call, class Reference>
    void Print(const std::string& row, size_t calls, const Call& call, const Reference& reference) {
        const auto [base, time] = NanosecondsInTurns(calls, reference, call);
        m_goals.Print(row, time, "ns", time / base);
    }

private:
    Goals& m_goals;
};

void MeasureGets(Comparison table, OV_DEV_HANDLE camera, const Nodes& nodes) {
    auto& integer = nodes.Get<IInteger>("Width");
    auto& real = nodes.Get<IFloat>("ExposureTime");
    auto& choice = nodes.Get<IEnumeration>("PixelFormat");
    auto& flag = nodes.Get<IBoolean>("ReverseX");
    auto& text = nodes.Get<IString>("UserPassword");
    int64_t number = 0;
    double value = 0;
    bool isOn = false;
    std::array<char, 64> content{};
    table.Print(
        "get an integer", kCalls, [&] { Require(OVGetInt(camera, OV_FEATURE_Width, &number)); },
        [&] { Keep(integer.GetValue()); });
    table.Print(
        "get a float", kCalls,
        [&] { Require(OVGetFloat(camera, OV_FEATURE_ExposureTime, &value)); },
        [&] { Keep(real.GetValue()); });
    table.Print(
        "get an enumeration", kCalls,
        [&] { Require(OVGetEnum(camera, OV_FEATURE_PixelFormat, &number)); },
        [&] { Keep(choice.GetIntValue()); });
    table.Print(
        "get a boolean", kCalls, [&] { Require(OVGetBool(camera, OV_FEATURE_ReverseX, &isOn)); },
        [&] { Keep(flag.GetValue()); });
    table.Print(
        "get a string", kCalls,
        [&] {
            size_t size = content.size();
            Require(OVGetString(camera, OV_FEATURE_UserPassword, content.data(), &size));
        },
        [&] { Keep(text.GetValue().size()); });
}

void MeasureSets(Comparison table, OV_DEV_HANDLE camera, const Nodes& nodes) {
    auto& integer = nodes.Get<IInteger>("Width");
    auto& real = nodes.Get<IFloat>("ExposureTime");
    auto& choice = nodes.Get<IEnumeration>("PixelFormat");
    auto& flag = nodes.Get<IBoolean>("ReverseX");
    auto& text = nodes.Get<IString>("UserPassword");
    table.Print(
        "set an integer", kFewCalls, [&] { Require(OVSetInt(camera, OV_FEATURE_Width, 640)); },
        [&] { integer.SetValue(640); });
    table.Print(
        "set a float", kFewCalls,
        [&] { Require(OVSetFloat(camera, OV_FEATURE_ExposureTime, 2.5)); },
        [&] { real.SetValue(2.5); });
    table.Print(
        "set an enumeration", kFewCalls,
        [&] { Require(OVSetEnum(camera, OV_FEATURE_PixelFormat, 1)); },
        [&] { choice.SetIntValue(1); });
    table.Print(
        "set a boolean", kFewCalls, [&] { Require(OVSetBool(camera, OV_FEATURE_ReverseX, true)); },
        [&] { flag.SetValue(true); });
    table.Print(
        "set a string", kFewCalls,
        [&] { Require(OVSetString(camera, OV_FEATURE_UserPassword, "Left")); },
        [&] { text.SetValue("Left"); });
}

/// The text of a value as an application shows it, beside that of the node.
void MeasureTexts(Comparison table, OV_DEV_HANDLE camera, const Nodes& nodes) {
    for (const auto& [row, name] :
         {std::pair{"an integer as text", "Width"}, std::pair{"a float as text", "ExposureTime"},
          std::pair{"an enumeration as text", "PixelFormat"}}) {
        OV_NODE_HANDLE handle = 0;
        Require(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, name, &handle));
        auto& node = nodes.Get<IValue>(name);
        std::array<char, 64> content{};
        table.Print(
            row, kCalls,
            [&] {
                size_t size = content.size();
                Require(OvNodeGetAsText(handle, content.data(), &size));
            },
            [&] { Keep(node.ToString().size()); });
    }
}

void MeasureFailures(Comparison table, OV_DEV_HANDLE camera, const Nodes& nodes) {
    auto& integer = nodes.Get<IInteger>("Height");
    const auto failAtNode = [&] {
        try {
            Keep(integer.GetValue());
        } catch (const GenICam_3_0_ORVANE::GenericException& error) {
            Keep(error.what());
        }
    };
    int64_t number = 0;
    table.Print(
        "a read that fails at the node", kFewCalls,
        [&] { Keep(OVGetInt(camera, OV_FEATURE_Height, &number)); }, failAtNode);
    table.Print(
        "a read of what the camera lacks", kFewCalls,
        [&] { Keep(OVGetInt(camera, OV_FEATURE_SensorWidth, &number)); }, failAtNode);
}

/// Of features that are kept. The reference is what two threads reach that share nothing.
void MeasureThreads(Goals& goals, OV_DEV_HANDLE first, OV_DEV_HANDLE second) {
    const std::array<OV_DEV_HANDLE, 2> cameras = {first, second};
    const auto read = [](OV_DEV_HANDLE camera) {
        int64_t number = 0;
        Require(OVGetInt(camera, OV_FEATURE_Width, &number));
    };
    const double apart = RateOfTwoApart();
    const double same = RateOfTwo([&](size_t) { read(first); });
    const double kept = RateOfTwo([&](size_t i) { read(cameras[i]); });
    std::printf("  two threads that share nothing reach %.2f times the rate of one\n", apart);
    goals.Print("two threads, one camera: rate", same, "", apart / same);
    goals.Print("two threads, two cameras: rate", kept, "", apart / kept);
}

void MeasureOpening(Goals& goals) {
    const std::string xml = Description();
    constexpr size_t kOpens = 20;
    const double base = Nanoseconds(kOpens, [&] {
        CNodeMapRef map;
        map._LoadXMLFromString(gcstring(xml.c_str()));
    });
    const double time = Nanoseconds(kOpens, [] { Require(OVCloseDevice(Open(1))); });
    goals.Print("open and close a camera", time / 1e3, "us", time / base);
}

void MeasureList(Goals& goals, TestProducer& producer) {
    double base = 0;
    for (const unsigned cameras : {1U, 4U, 16U, 64U}) {
        producer.SetDeviceCount(0, cameras);
        UpdateList();
        const double time = Nanoseconds(5, UpdateList, 7);
        base = base == 0 ? time : base;
        goals.Print("list update, cameras: " + std::to_string(cameras), time / 1e3, "us",
                    time / base / cameras);
    }
}

}  // namespace

int main() {
    TestProducer producer(OV_BENCH_STAGE "/KwTL.cti");
    const std::string xml = Description();
    producer.SetDescription("Remote", "Bench.xml", xml.data(), xml.size());
    producer.WatchCalls(0);
    producer.SetDeviceCount(0, 2);
    Goals goals("flat_bench");
    Require(OVInitLib());
    UpdateList();
    const OV_DEV_HANDLE camera = Open(1);
    const OV_DEV_HANDLE other = Open(2);
    {
        const Nodes nodes(camera);
        const Comparison table(goals);
        std::printf("Beside the same at the node:\n");
        MeasureGets(table, camera, nodes);
        MeasureSets(table, camera, nodes);
        MeasureTexts(table, camera, nodes);
        MeasureFailures(table, camera, nodes);
    }
    std::printf("Beside two threads that share nothing:\n");
    MeasureThreads(goals, camera, other);
    Require(OVCloseDevice(camera));
    Require(OVCloseDevice(other));
    std::printf("Beside the description's nodes alone:\n");
    MeasureOpening(goals);
    std::printf("For each camera, beside one:\n");
    MeasureList(goals, producer);
    Require(OVCloseLib());
    return 0;
}
