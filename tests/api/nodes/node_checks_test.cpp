// The checks of every call on a node, and their order.

#include <array>

#include "NodeTest.h"

namespace {

/// A call and a node that it is for.
struct NodeCall {
    const char* function;
    const char* node;
    /// A node that it isn't for; null if it is for all.
    const char* other;
    const char* otherIs;
    bool takesPointer;
    /// With a null pointer instead of memory if `hasPointer` is false.
    OV_STATUS (*run)(OV_NODE_HANDLE node, bool hasPointer);
};

void PrintTo(const NodeCall& call, std::ostream* stream) {
    *stream << call.function;
}

/// Memory for any result, of which a size is large.
template <class T>
T* Memory(bool isThere) {
    alignas(16) static thread_local std::array<uint8_t, 64> memory;
    memory.fill(0x6E);
    return isThere ? reinterpret_cast<T*>(memory.data()) : nullptr;
}

const uint8_t kBytes[4] = {1, 2, 3, 4};

void Ignore(OV_NODE_HANDLE, void*) {}

using H = OV_NODE_HANDLE;

#define OV_CALL(function, node, other, otherIs, takesPointer, ...)                              \
    {                                                                                           \
#function, node, other, otherIs, takesPointer,                                          \
            [](H h, [[maybe_unused]] bool p) { return function(h __VA_OPT__(, ) __VA_ARGS__); } \
    }

const NodeCall kCalls[] = {
    OV_CALL(OvNodeGetRelated, "Root", nullptr, "", true, OV_NODE_RELATION_FEATURES, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeGetInfo, "Width", nullptr, "", true, Memory<OV_NODE_INFO>(p)),
    OV_CALL(OvNodeGetAccess, "Width", nullptr, "", true, Memory<OV_NODE_ACCESS>(p)),
    OV_CALL(OvNodeGetText, "Width", nullptr, "", true, OV_NODE_TEXT_NAME, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeGetPropertyNames, "Width", nullptr, "", true, nullptr, Memory<size_t>(p)),
    OV_CALL(OvNodeGetProperty, "Width", nullptr, "", true, p ? "Name" : nullptr,
            OV_NODE_PROPERTY_VALUE, nullptr, Memory<size_t>(p)),
    OV_CALL(OvNodeInvalidate, "Width", nullptr, "", false),
    OV_CALL(OvNodeGetAsText, "Width", "Device", "a port, not a value", true, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeSetAsText, "Width", "Device", "a port, not a value", true, p ? "64" : nullptr),
    OV_CALL(OvNodeGetInteger, "Width", "ExposureTime", "a float, not an integer", true,
            Memory<int64_t>(p)),
    OV_CALL(OvNodeSetInteger, "Width", "DeviceUserID", "a string, not an integer", false, 64),
    OV_CALL(OvNodeGetIntegerRange, "Width", "UserSetSave", "a command, not an integer", true,
            Memory<OV_INT_RANGE>(p)),
    OV_CALL(OvNodeGetIntegerValues, "Width", "Root", "a category, not an integer", true, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeGetFloat, "ExposureTime", "UserData", "a register, not a float", true,
            Memory<double>(p)),
    OV_CALL(OvNodeSetFloat, "ExposureTime", "ReverseX", "a boolean, not a float", false, 1000),
    OV_CALL(OvNodeGetFloatRange, "ExposureTime", "EnumEntry_TriggerMode_On",
            "an entry of an enumeration, not a float", true, Memory<OV_FLOAT_RANGE>(p)),
    OV_CALL(OvNodeGetFloatValues, "ExposureTime", "ReverseX", "a boolean, not a float", true,
            nullptr, Memory<size_t>(p)),
    OV_CALL(OvNodeGetBoolean, "ReverseX", "TriggerMode", "an enumeration, not a boolean", true,
            Memory<bool>(p)),
    OV_CALL(OvNodeSetBoolean, "ReverseX", "Width", "an integer, not a boolean", false, true),
    OV_CALL(OvNodeGetSymbolic, "TriggerMode", "Width", "an integer, not an enumeration", true,
            nullptr, Memory<size_t>(p)),
    OV_CALL(OvNodeSetSymbolic, "TriggerMode", "Width", "an integer, not an enumeration", true,
            p ? "On" : nullptr),
    OV_CALL(OvNodeGetNumber, "TriggerMode", "Width", "an integer, not an enumeration", true,
            Memory<int64_t>(p)),
    OV_CALL(OvNodeSetNumber, "TriggerMode", "Width", "an integer, not an enumeration", false, 1),
    OV_CALL(OvNodeGetString, "DeviceUserID", "Width", "an integer, not a string", true, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeSetString, "DeviceUserID", "Width", "an integer, not a string", true,
            p ? "id" : nullptr),
    OV_CALL(OvNodeGetStringMaxSize, "DeviceUserID", "Width", "an integer, not a string", true,
            Memory<size_t>(p)),
    OV_CALL(OvNodeGetRegister, "UserData", "Width", "an integer, not a register", true, nullptr,
            Memory<size_t>(p)),
    OV_CALL(OvNodeSetRegister, "UserData", "Width", "an integer, not a register", true,
            p ? kBytes : nullptr, sizeof kBytes),
    OV_CALL(OvNodeGetRegisterPlace, "UserData", "Width", "an integer, not a register", true,
            Memory<int64_t>(p), Memory<int64_t>(true)),
    OV_CALL(OvNodeExecute, "UserSetSave", "Width", "an integer, not a command", false),
    OV_CALL(OvNodeIsDone, "UserSetSave", "Width", "an integer, not a command", true,
            Memory<bool>(p)),
    OV_CALL(OvNodeRegisterCallback, "Width", nullptr, "", true, nullptr, &Ignore,
            Memory<OV_NODE_CALLBACK_HANDLE>(p)),
};

#undef OV_CALL

class NodeChecks : public NodeTest, public testing::WithParamInterface<NodeCall> {
protected:
    static void ExpectOwnName() {
        EXPECT_NE(LastError::Get().text.find("{" + std::string(GetParam().function) + ":line["),
                  std::string::npos)
            << LastError::Get().text;
    }
};

TEST_P(NodeChecks, PassWhenAllIsRight) {
    EXPECT_OV_OK(GetParam().run(Node(GetParam().node), true));
}

TEST_P(NodeChecks, TheHandleComesFirst) {
    ExpectFailure(GetParam().run(0, false), OV_STATUS_INVALID_HANDLE,
                  "Invalid node handle: it never was one, or its camera is closed");
    ExpectOwnName();
}

TEST_P(NodeChecks, TheTypeComesBeforePointers) {
    if (GetParam().other == nullptr) {
        return;
    }
    ExpectFailure(GetParam().run(Node(GetParam().other), false), OV_STATUS_ERROR_TYPE,
                  "\"" + std::string(GetParam().other) + "\" is " + GetParam().otherIs);
    ExpectOwnName();
}

TEST_P(NodeChecks, PointersComeBeforeTheCamera) {
    if (!GetParam().takesPointer) {
        return;
    }
    const OV_NODE_HANDLE node = Node(GetParam().node);
    producer.ClearLog();
    ExpectFailure(GetParam().run(node, false), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
    EXPECT_TRUE(producer.Log().empty());
    ExpectOwnName();
}

TEST_P(NodeChecks, NothingIsCheckedBeforeTheLibraryIsOpen) {
    ASSERT_OV_OK(OVCloseLib());
    ExpectFailure(GetParam().run(0, false), OV_STATUS_NOT_INIT_API, "Not init API");
}

INSTANTIATE_TEST_SUITE_P(All, NodeChecks, testing::ValuesIn(kCalls),
                         [](const auto& call) { return std::string(call.param.function); });

class CameraNodeChecks : public NodeTest {
protected:
    OV_NODE_HANDLE node = 7;
    size_t number = 7;
};

TEST_F(CameraNodeChecks, TheCameraComesFirst) {
    ExpectFailure(OvNodeFind(nullptr, 99, nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid device handle");
    ExpectFailure(OvNodeGetAll(nullptr, 99, nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid device handle");
    ExpectFailure(OvNodeGetXml(nullptr, 99, nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid device handle");
}

TEST_F(CameraNodeChecks, TheModuleComesBeforePointers) {
    ExpectFailure(OvNodeFind(camera, 99, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "Unknown node module");
    ExpectFailure(OvNodeGetAll(camera, 99, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "Unknown node module");
    ExpectFailure(OvNodeGetXml(camera, -1, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "Unknown node module");
}

TEST_F(CameraNodeChecks, PointersAreNeeded) {
    for (const OV_STATUS status : {OvNodeFind(camera, OV_NODE_MODULE_CAMERA, nullptr, &node),
                                   OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", nullptr),
                                   OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nullptr, nullptr),
                                   OvNodeGetXml(camera, OV_NODE_MODULE_CAMERA, nullptr, nullptr)}) {
        EXPECT_EQ(status, OV_STATUS_INVALID_PARAMETER);
        EXPECT_EQ(LastError::Get().message, "NULL Pointer");
    }
    EXPECT_EQ(node, 7U);
}

}  // namespace
