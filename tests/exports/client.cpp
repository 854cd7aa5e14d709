// A program as users of the engine write it: with the standard of their own
// compiler, which may be C++17, the headers for them alone, and the shared
// library. It uses each class and function that they are given; check-client
// holds it against the headers. That it links is most of the test.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "Base/AutoVector.h"
#include "Base/Environment.h"
#include "Base/GCException.h"
#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "Base/GlobalLock.h"
#include "Base/Lock.h"
#include "GenApi/ChunkAdapterDcam.h"
#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/ChunkAdapterU3V.h"
#include "GenApi/ChunkPort.h"
#include "GenApi/EventAdapter1394.h"
#include "GenApi/EventAdapterCL.h"
#include "GenApi/EventAdapterGEV.h"
#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/EventAdapterU3V.h"
#include "GenApi/EventPort.h"
#include "GenApi/FeatureBagStream.h"
#include "GenApi/FeatureBagger.h"
#include "GenApi/FileProtocolAdapter.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/ICommand.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/IPortRecorder.h"
#include "GenApi/IPortReplay.h"
#include "GenApi/IPortWriteList.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/IUserData.h"
#include "GenApi/NodeCallback.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "GenApi/SelectorSet.h"
#include "GenApi/Version.h"

namespace {

using namespace GenICam_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using namespace GenApi_3_0_ORVANE;   // NOLINT(google-build-using-namespace)

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "client: %s\n", what);
        std::exit(1);
    }
}

/// Whether the action raises an exception of exactly this class of the library.
template <class Exception, class Action>
bool Throws(const Action& action) {
    try {
        action();
    } catch (const Exception& e) {
        return std::strlen(e.what()) > 0;
    }
    return false;
}

constexpr const char* kDescription =
    "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"M\" "
    "VendorName=\"V\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" "
    "SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" "
    "SubMinorVersion=\"0\" ProductGuid=\"11111111-2222-3333-4444-555555555555\" "
    "VersionGuid=\"11111111-2222-3333-4444-555555555555\">"
    "<Category Name=\"Root\"><pFeature>Gain</pFeature></Category>"
    "<Integer Name=\"Gain\"><Streamable>Yes</Streamable><pValue>GainReg</pValue></Integer>"
    "<IntReg Name=\"GainReg\"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
    "<pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>"
    "<Enumeration Name=\"Mode\"><EnumEntry Name=\"On\"><Value>1</Value></EnumEntry>"
    "<Value>1</Value></Enumeration><Boolean Name=\"Flag\"><Value>1</Value></Boolean>"
    "<Command Name=\"Go\"><pValue>GainReg</pValue><CommandValue>1</CommandValue></Command>"
    "<Float Name=\"Time\"><Value>1.5</Value></Float><String Name=\"Text\"><Value>t</Value>"
    "</String><Port Name=\"Device\"/><Port Name=\"Chunk\"><ChunkID>0102</ChunkID></Port>"
    "<Port Name=\"Event\"><EventID>0304</EventID></Port></RegisterDescription>";

/// Sixteen bytes of a device.
struct Memory : public IPort {
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        std::memcpy(buffer, bytes + address, static_cast<size_t>(length));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        std::memcpy(bytes + address, buffer, static_cast<size_t>(length));
    }
    uint8_t bytes[16] = {5};
};

struct Listener {
    void OnChange(INode* node) {
        Require(node != nullptr, "a callback knows its node");
        ++calls;
    }
    int calls = 0;
};

/// Records what a port writes.
struct WriteList : public IPortWriteList {
    void Write(const void* buffer, int64_t /*address*/, int64_t length) override {
        const auto* const begin = static_cast<const uint8_t*>(buffer);
        bytes.assign(begin, begin + length);
    }
    void Replay(IPort* port) override {
        port->Write(bytes.data(), 0, static_cast<int64_t>(bytes.size()));
    }
    void SetCookie(int64_t value) override { cookie = value; }
    int64_t GetCookie() override { return cookie; }

    std::vector<uint8_t> bytes;
    int64_t cookie = 0;
};

void UseTexts() {
    gcstring text("a");
    text = text + "b" + text;
    text = "c" + text;
    Require(text == "caba", "texts add up");
    gcstring_vector texts;
    texts.push_back(text);
    Require(texts.contains("caba"), "a vector holds what was pushed");
    int64_autovector_t integers;
    integers.push_back(1);
    const double_autovector_t floats;
    Require(integers.size() == 1 && floats.size() == 0, "lists have their sizes");
}

template <class Exception>
void UseException() {
    Require(Throws<Exception>([] {
                throw ExceptionReporter<Exception>(__FILE__, __LINE__, "type").Report("%d", 1);
            }),
            "an exception is caught by its class");
}

void UseExceptions() {
    UseException<GenericException>();
    UseException<BadAllocException>();
    UseException<InvalidArgumentException>();
    UseException<OutOfRangeException>();
    UseException<PropertyException>();
    UseException<RuntimeException>();
    UseException<LogicalErrorException>();
    UseException<AccessException>();
    UseException<TimeoutException>();
    UseException<DynamicCastException>();
    Require(Throws<BadAllocException>([] { ThrowBadAlloc(__FILE__, __LINE__); }), "ThrowBadAlloc");
}

void Format(const char* format, ...) {
    DescriptionBuffer buffer;
    va_list arguments;
    va_start(arguments, format);
    FormatDescription(buffer, format, arguments);
    va_end(arguments);
    Require(gcstring(buffer.data()) == "7", "FormatDescription");
}

void UseEnvironment() {
    setenv("OV_CLIENT", "value", 1);
    gcstring value;
    Require(DoesEnvironmentVariableExist("OV_CLIENT"), "DoesEnvironmentVariableExist");
    Require(GetValueOfEnvironmentVariable("OV_CLIENT", value) && value == "value" &&
                GetValueOfEnvironmentVariable("OV_CLIENT") == value,
            "GetValueOfEnvironmentVariable");
    gcstring text("$(OV_CLIENT) x");
    ReplaceEnvironmentVariables(text, true);
    Require(text == "value%20x", "ReplaceEnvironmentVariables");
    Require(!GetModulePathFromFunction(reinterpret_cast<void*>(&UseEnvironment)).empty(),
            "GetModulePathFromFunction");
    gcstring_vector names;
    GetFiles("/dev/nul*", names, false);
    Require(names.contains("null"), "GetFiles");
    Tokenize("a b", names, " ");
    Require(names.size() >= 2, "Tokenize");
    Require(UrlDecode(UrlEncode("a b")) == "a b", "UrlEncode and UrlDecode");
    SetGenICamCacheFolder("/cache");
    SetGenICamLogConfig("/log");
    SetGenICamCLProtocolFolder("/protocol");
    Require(GetGenICamCacheFolder() == "/cache" && GetGenICamLogConfig() == "/log" &&
                GetGenICamCLProtocolFolder() == "/protocol",
            "folders are kept");
    SetGenICamCacheFolder("");
}

void UseLocks() {
    CLock lock;
    {
        const AutoLock scope(lock);
        Require(lock.TryLock(), "a lock is recursive");
        lock.Unlock();
    }
    Require(!CGlobalLock::HashSemName("ov_client").empty(), "HashSemName");
    CGlobalLock global("ov_client");
    if (global.TryLock()) {
        global.Unlock();
    }
}

void UseNames() {
    Require(Combine(RW, RO) == RO && Combine(NoCache, WriteThrough) == NoCache &&
                Combine(Beginner, Guru) == Guru,
            "Combine takes the stricter one");
    Require(gcstring(EAccessModeClass::ToString(RW)) == "RW" &&
                gcstring(ECachingModeClass::ToString(NoCache)) == "NoCache" &&
                gcstring(EStandardNameSpaceClass::ToString(GEV)) == "GEV",
            "numbers have names");
}

void UseValues(INodeMap& map) {
    Require(CPointer<IInteger>(map.GetNode("Gain"))->GetValue() == 5, "IInteger");
    Require(CPointer<IValue>(map.GetNode("Gain"))->ToString() == "5", "IValue");
    Require(CPointer<IFloat>(map.GetNode("Time"))->GetValue() == 1.5, "IFloat");
    Require(CPointer<IBoolean>(map.GetNode("Flag"))->GetValue(), "IBoolean");
    Require(CPointer<IString>(map.GetNode("Text"))->GetValue() == "t", "IString");
    Require(CPointer<IRegister>(map.GetNode("GainReg"))->GetLength() == 4, "IRegister");
    Require(CPointer<ISelector>(map.GetNode("Gain")).IsValid(), "ISelector");
    CPointer<ICommand>(map.GetNode("Go"))->Execute();
    const CPointer<IEnumeration> mode(map.GetNode("Mode"));
    IEnumEntry* const entry = mode->GetCurrentEntry();
    Require(entry != nullptr && entry->GetSymbolic() == "On", "IEnumeration and IEnumEntry");
    value_vector features;
    CPointer<ICategory>(map.GetNode("Root"))->GetFeatures(features);
    Require(features.size() == 1, "ICategory");
    const CPointer<IBase> base(map.GetNode("Gain"));
    Require(base->GetAccessMode() == RW, "IBase");
    const CPointer<IUserData> userData(map.GetNode("Gain"));
    userData->SetUserData(&map);
    Require(userData->GetUserData() == &map, "IUserData");
}

void UseCallback(INodeMap& map) {
    Listener listener;
    INode* const node = map.GetNode("Gain");
    const CallbackHandleType handle =
        Register(node, listener, &Listener::OnChange, cbPostOutsideLock);
    Require(reinterpret_cast<CNodeCallback*>(handle)->GetNode() == node, "CNodeCallback");
    map.InvalidateNodes();
    Require(listener.calls == 1, "a callback is called");
    Deregister(handle);
}

void UseRecorder(INodeMap& map) {
    WriteList list;
    const CPointer<IPortRecorder> recorder(map.GetNode("Device"));
    recorder->StartRecording(&list);
    CPointer<IInteger>(map.GetNode("Gain"))->SetValue(6);
    recorder->StopRecording();
    Require(!list.bytes.empty(), "IPortRecorder");
    CPointer<IPortReplay>(map.GetNode("Device"))->Replay(&list, true);
    Require(CPointer<IPortConstruct>(map.GetNode("Device"))->GetSwapEndianess() != Yes,
            "IPortConstruct");
    Require(CPointer<IChunkPort>(map.GetNode("Chunk"))->GetChunkID() == "0102", "IChunkPort");
}

void UseChunks(INodeMap& map) {
    uint8_t buffer[16] = {};
    const SingleChunkData_t chunk = {0x0102, 0, 8};
    CChunkAdapterGeneric generic(&map);
    AttachStatistics_t statistics;
    generic.AttachBuffer(buffer, &chunk, 1, &statistics);
    Require(statistics.NumAttachedChunks == 1, "CChunkAdapterGeneric");
    generic.DetachNodeMap();
    CChunkAdapterGEV gev;
    CChunkAdapterU3V u3v;
    CChunkAdapterDcam dcam;
    for (CChunkAdapterTrailer* const adapter :
         std::vector<CChunkAdapterTrailer*>{&gev, &u3v, &dcam}) {
        CChunkAdapter& any = *adapter;
        any.AttachNodeMap(&map);
        any.CheckBufferLayout(buffer, sizeof buffer);
        any.ClearCaches();
        any.DetachNodeMap();
    }
    Require(CChunkAdapterDcam::CRC16(buffer, sizeof buffer) == 0, "CRC16");
    CChunkPort port(dynamic_cast<IPort*>(map.GetNode("Chunk")));
    Require(port.CheckChunkID(0x0102) && port.GetChunkIDLength() == 2, "CChunkPort");
    port.DetachPort();
}

void UseEvents(INodeMap& map) {
    const uint8_t bytes[4] = {};
    CEventAdapterGeneric generic(&map);
    generic.DeliverMessage(bytes, sizeof bytes, uint64_t{0x0304});
    generic.DeliverMessage(bytes, sizeof bytes, gcstring("0304"));
    generic.DetachNodeMap();
    CEventAdapterGEV gev;
    CEventAdapterU3V u3v;
    CEventAdapterCL cl;
    CEventAdapter1394 ieee1394;
    for (CEventAdapter* const adapter : std::vector<CEventAdapter*>{&gev, &u3v, &cl, &ieee1394}) {
        adapter->AttachNodeMap(&map);
        Require(Throws<RuntimeException>([&] { adapter->DeliverMessage(bytes, 1); }),
                "an adapter refuses a message that is cut off");
        adapter->DetachNodeMap();
    }
    CEventPort port(map.GetNode("Event"));
    port.AttachEvent(bytes, sizeof bytes);
    Require(port.CheckEventID(0x0304) && port.GetEventIDLength() == 2, "CEventPort");
    port.DetachNode();
}

void UsePersistence(INodeMap& map) {
    CFeatureBag bag("bag");
    Require(bag.StoreToBag(&map) > 0, "CFeatureBag");
    IPersistScript& script = bag;
    script.SetInfo("info");
    std::stringstream stream;
    stream << bag;
    CFeatureBag copy;
    stream >> copy;
    Require(copy == bag && copy.LoadFromBag(&map), "a bag's text is read back");
    CFeatureBagger bagger;
    bagger.Bag(&map);
    Require(bagger.size() == 1 && *bagger.begin() == bagger.at(0) && bagger.UnBag(&map),
            "CFeatureBagger");
    CSelectorSet selectors(map.GetNode("Gain"));
    ISelectorDigit& digit = selectors;
    Require(digit.SetFirst() && selectors.IsEmpty(), "CSelectorSet");
    FileProtocolAdapter files;
    IFileProtocolAdapter& adapter = files;
    Require(!adapter.attach(&map) && !adapter.openFile("f", std::ios_base::in),
            "FileProtocolAdapter");
}

void UseDeviceInfo(INodeMap& map) {
    auto& info = dynamic_cast<IDeviceInfo&>(map);
    Version_t version;
    info.GetSchemaVersion(version);
    Require(info.GetModelName() == "M" && version.Minor == 1, "IDeviceInfo");
}

void UseFactory() {
    CNodeMapFactory factory((gcstring(kDescription)));
    NodeStatistics_t statistics;
    factory.GetNodeStatistics(statistics);
    Require(statistics.NumNodes > 5, "GetNodeStatistics");
    Require(!factory.ToXml().empty() && !factory.ToString().empty(), "a description has a text");
    factory.ExtractSubtree("Gain", false);
    Memory memory;
    INodeMap* const map = factory.CreateNodeMap("Device", false);
    map->Connect(&memory);
    UseValues(*map);
    UseCallback(*map);
    UseRecorder(*map);
    UseChunks(*map);
    UseEvents(*map);
    UsePersistence(*map);
    UseDeviceInfo(*map);
    CNodeMapFactory::CreateNodeDataFromNodeMap(map);
    dynamic_cast<IDestroy&>(*map).Destroy();
    dynamic_cast<IDestroy&>(*CNodeMapFactory::CreateEmptyNodeMap()).Destroy();
    factory.ReleaseCameraDescriptionFileData();
    Require(factory.IsCameraDescriptionFileDataReleased(), "a description is released");
}

template <class Reference>
void UseReference() {
    Reference reference("Camera");
    Require(Throws<AccessException>([&] { reference._GetDeviceName(); }),
            "a reference without a map says so");
    reference._LoadXMLFromString(kDescription);
    Memory memory;
    Require(reference._Connect(&memory) && reference._Connect(&memory, "Device"), "_Connect");
    Reference copy(reference);
    copy = reference;
    node_vector nodes;
    copy._GetNodes(nodes);
    Require(nodes.size() > 5 && copy._GetNode("Gain") != nullptr, "_GetNodes");
    Require(copy._GetDeviceName() == "Camera" && copy._ParseSwissKnifes(), "_ParseSwissKnifes");
    copy._Poll(1);
    copy._InvalidateNodes();
    gcstring_vector versions;
    copy._GetSupportedSchemaVersions(versions);
    Require(versions.contains("1.1"), "_GetSupportedSchemaVersions");
    copy.Release();
    Require(Throws<RuntimeException>([&] { copy._LoadXMLFromFile("/no such file"); }),
            "_LoadXMLFromFile");
}

}  // namespace

int main() {
    UseTexts();
    UseExceptions();
    Format("%d", 7);
    UseEnvironment();
    UseLocks();
    UseNames();
    UseFactory();
    UseReference<CNodeMapRef>();
    UseReference<CNodeMapRefT<CGeneric_XMLLoaderParams>>();
    return 0;
}
