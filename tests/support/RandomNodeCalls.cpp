// Calls on nodes, drawn by chance.

#include <array>
#include <utility>
#include <vector>

#include "support/RandomCalls.h"

namespace {

constexpr const char* kFile = "UserFile";

/// Of each kind that callbacks have: of the camera's own features and of its events.
constexpr const char* kHeardNodes[] = {"Width", "Gain", "EventExposureEnd",
                                       "EventExposureEndTimestamp"};
constexpr const char* kCommandNodes[] = {"TriggerSoftware", "UserSetLoad", "UserSetSave",
                                         "AcquisitionStart", "AcquisitionStop"};
/// What can be set without harm, to a text that it may have.
constexpr std::pair<const char*, const char*> kValues[] = {
    {"Width", "32"},       {"Height", "48"},         {"Gain", "3"},
    {"ReverseX", "true"},  {"TriggerMode", "Off"},   {"PixelFormat", "Mono8"},
    {"OffsetX", "8"},      {"DeviceUserID", "up"},   {"ExposureTime", "2000"},
    {"UserSetSave", "1"},  {"ChunkModeActive", "1"}, {"AcquisitionMode", "Continuous"},
    {"LUTValueAll", "00"}, {"DoesNotExist", "1"},    {"Root", "1"}};

/// Callbacks ask the node that they belong to.
void OnNode(OV_NODE_HANDLE node, void* handle) {
    OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_IMPLEMENTED;
    EXPECT_LE(OvNodeGetAccess(node, &access), OV_STATUS_SUCCESS);
    EXPECT_LE(OvNodeDetachFrame(handle), OV_STATUS_SUCCESS);
}

/// Those of the camera's own nodes are waited for by its closing, and so may not close it.
void OnOwnNode(OV_NODE_HANDLE node, void* handle) {
    OnNode(node, handle);
    EXPECT_EQ(OVCloseDevice(handle), OV_STATUS_INVALID_CALL);
}

}  // namespace

OV_NODE_HANDLE RandomCaller::Find(OV_DEV_HANDLE handle, const char* name) {
    OV_NODE_HANDLE node = 0;
    OV_NOTE(OvNodeFind, handle, OV_NODE_MODULE_CAMERA, name, &node);
    return node;
}

OV_NODE_HANDLE RandomCaller::DrawNode(OV_DEV_HANDLE handle) {
    constexpr unsigned kModules = OV_NODE_MODULE_STREAM + 1;
    const auto module = static_cast<OV_NODE_MODULE>(Draw(kModules));
    size_t number = 0;
    if (OV_NOTE(OvNodeGetAll, handle, module, nullptr, &number) != OV_STATUS_SUCCESS ||
        number == 0) {
        return 0;
    }
    std::vector<OV_NODE_HANDLE> nodes(number);
    EXPECT_EQ(OV_NOTE(OvNodeGetAll, handle, module, nodes.data(), &number), OV_STATUS_SUCCESS);
    return nodes[Draw(static_cast<unsigned>(number))];
}

/// Another thread may give the frame back at the same time.
void RandomCaller::AttachFrame(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        OV_FRAME_BUFFER* const frame = camera.TakeLoan();
        if (frame != nullptr) {
            camera.AddLoan(frame);
            OV_NOTE(OvNodeAttachFrame, handle, frame);
        }
    });
}

void RandomCaller::DetachFrame(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) { OV_NOTE(OvNodeDetachFrame, handle); });
}

void RandomCaller::ReadNumbersOf(OV_NODE_HANDLE node) {
    int64_t number = 0;
    int64_t length = 0;
    double real = 0;
    bool flag = false;
    OV_INT_RANGE range{};
    OV_FLOAT_RANGE realRange{};
    size_t size = 0;
    OV_NOTE(OvNodeGetInteger, node, &number);
    OV_NOTE(OvNodeGetIntegerRange, node, &range);
    OV_NOTE(OvNodeGetIntegerValues, node, nullptr, &size);
    OV_NOTE(OvNodeGetFloat, node, &real);
    OV_NOTE(OvNodeGetFloatRange, node, &realRange);
    OV_NOTE(OvNodeGetFloatValues, node, nullptr, &size);
    OV_NOTE(OvNodeGetBoolean, node, &flag);
    OV_NOTE(OvNodeGetNumber, node, &number);
    OV_NOTE(OvNodeGetStringMaxSize, node, &size);
    OV_NOTE(OvNodeGetRegisterPlace, node, &number, &length);
    OV_NOTE(OvNodeIsDone, node, &flag);
}

void RandomCaller::ReadTextsOf(OV_NODE_HANDLE node) {
    std::array<char, 256> text{};
    size_t size = text.size();
    OV_NOTE(OvNodeGetAsText, node, text.data(), &size);
    size = text.size();
    OV_NOTE(OvNodeGetString, node, text.data(), &size);
    size = text.size();
    OV_NOTE(OvNodeGetSymbolic, node, text.data(), &size);
    size = m_image.size();
    OV_NOTE(OvNodeGetRegister, node, m_image.data(), &size);
}

void RandomCaller::ReadFactsOf(OV_NODE_HANDLE node) {
    constexpr unsigned kTexts = OV_NODE_TEXT_EVENT + 1;
    OV_NODE_INFO info{};
    OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_IMPLEMENTED;
    std::array<char, 256> text{};
    size_t size = text.size();
    OV_NOTE(OvNodeGetInfo, node, &info);
    OV_NOTE(OvNodeGetAccess, node, &access);
    OV_NOTE(OvNodeGetText, node, static_cast<OV_NODE_TEXT>(Draw(kTexts)), text.data(), &size);
    size = text.size();
    OV_NOTE(OvNodeGetPropertyNames, node, text.data(), &size);
    size = text.size();
    OV_NOTE(OvNodeGetProperty, node, Draw(2) == 0 ? "pMax" : "Name", OV_NODE_PROPERTY_VALUE,
            text.data(), &size);
}

void RandomCaller::ReadNode(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        const OV_NODE_HANDLE node = DrawNode(handle);
        if (node != 0) {
            ReadNumbersOf(node);
            ReadTextsOf(node);
            ReadFactsOf(node);
        }
    });
}

void RandomCaller::RelateNode(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        constexpr unsigned kRelations = OV_NODE_RELATION_REGISTERS + 1;
        constexpr unsigned kModules = OV_NODE_MODULE_STREAM + 1;
        size_t size = 0;
        OV_NOTE(OvNodeGetXml, handle, static_cast<OV_NODE_MODULE>(Draw(kModules)), nullptr, &size);
        const OV_NODE_HANDLE node = DrawNode(handle);
        if (node == 0) {
            return;
        }
        const auto relation = static_cast<OV_NODE_RELATION>(Draw(kRelations));
        if (OV_NOTE(OvNodeGetRelated, node, relation, nullptr, &size) == OV_STATUS_SUCCESS) {
            std::vector<OV_NODE_HANDLE> nodes(size + 1);
            OV_NOTE(OvNodeGetRelated, node, relation, nodes.data(), &size);
        }
        OV_NOTE(OvNodeInvalidate, node);
    });
}

void RandomCaller::WriteNodes(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        const auto& [name, value] = DrawFrom(kValues);
        const OV_NODE_HANDLE node = Find(handle, name);
        if (node == 0) {
            return;
        }
        constexpr std::array<uint8_t, 4> kBytesOfNode{};
        OV_NOTE(OvNodeSetAsText, node, value);
        OV_NOTE(OvNodeSetInteger, node, int64_t{8} * Draw(9));
        OV_NOTE(OvNodeSetFloat, node, Draw(10));
        OV_NOTE(OvNodeSetBoolean, node, Draw(2) != 0);
        OV_NOTE(OvNodeSetSymbolic, node, value);
        OV_NOTE(OvNodeSetNumber, node, Draw(3));
        OV_NOTE(OvNodeSetString, node, value);
        OV_NOTE(OvNodeSetRegister, node, kBytesOfNode.data(), kBytesOfNode.size());
    });
}

void RandomCaller::ExecuteNode(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        const OV_NODE_HANDLE node = Find(handle, DrawFrom(kCommandNodes));
        if (node != 0) {
            OV_NOTE(OvNodeExecute, node);
        }
    });
}

void RandomCaller::ListenToNode(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        const bool isOwn = Draw(2) == 0;
        const OV_NODE_HANDLE node = isOwn ? Find(handle, DrawFrom(kHeardNodes)) : DrawNode(handle);
        OV_NODE_CALLBACK_HANDLE callback = nullptr;
        if (node != 0 && OV_NOTE(OvNodeRegisterCallback, node, handle, isOwn ? &OnOwnNode : &OnNode,
                                 &callback) == OV_STATUS_SUCCESS) {
            camera.AddNodeCallback(node, callback);
        }
    });
}

void RandomCaller::ListenToNodeNoMore(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE) {
        const auto [node, callback] = camera.TakeNodeCallback();
        if (callback != nullptr) {
            OV_NOTE(OvNodeUnregisterCallback, node, callback);
        }
    });
}

void RandomCaller::Files(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        constexpr size_t kFileSize = 64;
        size_t size = kFileSize;
        OV_NOTE(OvNodeWriteFile, handle, kFile, m_image.data(), size);
        OV_NOTE(OvNodeReadFile, handle, kFile, 0, m_image.data(), &size);
        OV_NOTE(OvNodeDeleteFile, handle, kFile);
    });
}
