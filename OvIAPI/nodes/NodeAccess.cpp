#include "nodes/NodeAccess.h"

#include <iterator>

#include "GenApi/INode.h"
#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"
#include "api/DeviceManager.h"
#include "camera/NodeTable.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// The words for the types, by their numbers.
constexpr const char* kTypeWords[] = {"a node without a value",
                                      "an integer",
                                      "a float",
                                      "an enumeration",
                                      "a boolean",
                                      "a string",
                                      "a register",
                                      "a command",
                                      "a category",
                                      "an entry of an enumeration",
                                      "a port"};

/// Null for the camera's own module, which isn't an object, and for an unknown one.
CGcObject* ObjectOfModule(COvDeviceInfo& info, OV_NODE_MODULE module) {
    IDevice& device = *info.GetDevice();
    switch (module) {
        case OV_NODE_MODULE_SYSTEM:
            return device.DoGetInterface()->DoGetTL().get();
        case OV_NODE_MODULE_INTERFACE:
            return device.DoGetInterface().get();
        case OV_NODE_MODULE_HOST_DEVICE:
            return &device;
        case OV_NODE_MODULE_STREAM:
            return info.GetStream().get();
        default:
            return nullptr;
    }
}

void CheckModule(OV_NODE_MODULE module, const OvPlace& place) {
    if (module < OV_NODE_MODULE_CAMERA || module > OV_NODE_MODULE_STREAM) {
        OV_RAISE_AT(CInvalidParameterError, place, "Unknown node module");
    }
}

CRefusal NotImplemented(const CNodeRecord& record) {
    return CNotImplementedError("The feature \"" + NameOf(record) + "\" is not implemented",
                                __FILE__, __LINE__, "RequireImplemented");
}

}  // namespace

const CNodeRecord& EnterNode(OV_NODE_HANDLE hNode, const OvPlace& place) {
    EnterApi();
    const CNodeRecord* const record = CNodeTable::GetInstance().Find(hNode);
    if (record == nullptr) {
        OV_RAISE_AT(CInvalidHandleError, place,
                    "Invalid node handle: it never was one, or its camera is closed");
    }
    return *record;
}

OV_FEATURE_LEVEL LevelOf(OV_NODE_MODULE module) {
    constexpr unsigned kLevelShift = 24;
    return static_cast<OV_FEATURE_LEVEL>(module) << kLevelShift;
}

INodeMap& MapOfModule(COvDeviceInfo& info, OV_NODE_MODULE module, const OvPlace& place) {
    CheckModule(module, place);
    const CGcObject* const object = ObjectOfModule(info, module);
    const CNodeMapRef& map = object == nullptr ? *info.GetDevice()->DoGetRemoteDeviceNodeMapRef()
                                               : *object->GetNodeMapRef();
    return *map.GetMap();
}

std::string XmlOfModule(COvDeviceInfo& info, OV_NODE_MODULE module, const OvPlace& place) {
    CheckModule(module, place);
    const CGcObject* const object = ObjectOfModule(info, module);
    return object == nullptr ? info.GetDevice()->DoGetRemoteDeviceXML() : object->GetXML();
}

std::string NameOf(const CNodeRecord& record) {
    return OV_ENGINE_GET(ToStd(record.node.GetName()));
}

OV_NODE_TYPE TypeOf(const CNodeRecord& record) {
    switch (OV_ENGINE_GET(record.node.GetPrincipalInterfaceType())) {
        case intfIInteger:
            return OV_NODE_TYPE_INTEGER;
        case intfIBoolean:
            return OV_NODE_TYPE_BOOLEAN;
        case intfICommand:
            return OV_NODE_TYPE_COMMAND;
        case intfIFloat:
            return OV_NODE_TYPE_FLOAT;
        case intfIString:
            return OV_NODE_TYPE_STRING;
        case intfIRegister:
            return OV_NODE_TYPE_REGISTER;
        case intfICategory:
            return OV_NODE_TYPE_CATEGORY;
        case intfIEnumeration:
            return OV_NODE_TYPE_ENUMERATION;
        case intfIEnumEntry:
            return OV_NODE_TYPE_ENTRY;
        case intfIPort:
            return OV_NODE_TYPE_PORT;
        default:
            return OV_NODE_TYPE_OTHER;
    }
}

void PollBeforeCall(const CNodeRecord& record) {
    record.camera.GetPolling().PollBeforeCall(LevelOf(record.module));
}

void RequireImplemented(const CNodeRecord& record) {
    if (OV_ENGINE_GET(record.node.GetAccessMode()) == NI) {
        NotImplemented(record).Raise();
    }
}

std::optional<CRefusal> FindRefusal(const CNodeRecord& record, const ReadWords& words) {
    const EAccessMode mode = record.node.GetAccessMode();
    if (mode == NI) {
        return NotImplemented(record);
    }
    // A fault of the node would count for more.
    if (record.mark.IsRefused(mode)) {
        return NotReadable(words.place, words.notReadable);
    }
    return std::nullopt;
}

CRefusal RefusalOf(const CNodeRecord& record, const GenICam_3_0_ORVANE::AccessException& error,
                   const EnginePlace& place) {
    const EAccessMode mode = record.node.GetAccessMode();
    record.mark.NoteRefusal(mode);
    // That the camera lacks the feature says more than the node's words.
    return mode == NI ? NotImplemented(record) : NotReadable(place, error.GetDescription());
}

void RaiseOtherType(const CNodeRecord& record, const char* wanted, const OvPlace& place) {
    OV_RAISE_AT(CErrorTypeError, place,
                "\"" + NameOf(record) + "\" is " + kTypeWords[static_cast<size_t>(TypeOf(record))] +
                    ", not " + wanted);
}
