// What a description says of a node, and what can be done with it.

#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "TLClassSupport/OvLog.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

bool IsSelector(INode& node) {
    auto* const selector = dynamic_cast<ISelector*>(&node);
    return selector != nullptr && selector->IsSelector();
}

uint32_t FlagsOf(INode& node) {
    const auto flag = [](bool isSet, uint32_t bit) { return isSet ? bit : 0U; };
    return flag(node.IsFeature(), OV_NODE_FLAG_FEATURE) |
           flag(IsSelector(node), OV_NODE_FLAG_SELECTOR) |
           flag(node.IsStreamable(), OV_NODE_FLAG_STREAMABLE) |
           flag(node.IsDeprecated(), OV_NODE_FLAG_DEPRECATED) |
           flag(node.IsCachable(), OV_NODE_FLAG_CACHED) |
           flag(node.GetNameSpace() == Standard, OV_NODE_FLAG_STANDARD);
}

OV_NODE_REPRESENTATION RepresentationOf(const CNodeRecord& record) {
    if (auto* const integer = record.As<IInteger>()) {
        return integer->GetRepresentation();
    }
    auto* const number = record.As<IFloat>();
    return number == nullptr ? static_cast<OV_NODE_REPRESENTATION>(OV_NODE_REPRESENTATION_NONE)
                             : number->GetRepresentation();
}

/// The access alone may need the camera. What a node is must be known of a camera that is gone as
/// well.
OV_NODE_ACCESS AccessOrNone(INode& node) {
    try {
        return node.GetAccessMode();
    } catch (const GenICam_3_0_ORVANE::BadAllocException&) {
        throw;
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_LOG(error.what());
    } catch (const COvException& error) {
        OV_LOG(error.what());
    }
    return OV_NODE_ACCESS_NOT_AVAILABLE;
}

OV_NODE_INFO InfoOf(const CNodeRecord& record) {
    INode& node = record.node;
    OV_NODE_INFO info{};
    info.type = TypeOf(record);
    info.access = AccessOrNone(node);
    info.visibility = node.GetVisibility();
    info.nFlags = FlagsOf(node);
    info.representation = RepresentationOf(record);
    info.nPollingTime = static_cast<int32_t>(node.GetPollingTime());
    return info;
}

gcstring UnitOf(const CNodeRecord& record) {
    if (auto* const integer = record.As<IInteger>()) {
        return integer->GetUnit();
    }
    auto* const number = record.As<IFloat>();
    return number == nullptr ? gcstring() : number->GetUnit();
}

gcstring TextOf(const CNodeRecord& record, OV_NODE_TEXT text, const OvPlace& place) {
    switch (text) {
        case OV_NODE_TEXT_NAME:
            return record.node.GetName();
        case OV_NODE_TEXT_DISPLAY_NAME:
            return record.node.GetDisplayName();
        case OV_NODE_TEXT_TOOL_TIP:
            return record.node.GetToolTip();
        case OV_NODE_TEXT_DESCRIPTION:
            return record.node.GetDescription();
        case OV_NODE_TEXT_UNIT:
            return UnitOf(record);
        case OV_NODE_TEXT_DOCUMENT:
            return record.node.GetDocuURL();
        case OV_NODE_TEXT_EVENT:
            return record.node.GetEventID();
        default:
            OV_RAISE_AT(CInvalidParameterError, place, "Unknown node text");
    }
}

}  // namespace

OV_STATUS OvNodeGetInfo(OV_NODE_HANDLE hNode, OV_NODE_INFO* pInfo) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pInfo);
    *pInfo = OV_ENGINE_GET(InfoOf(record));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetAccess(OV_NODE_HANDLE hNode, OV_NODE_ACCESS* pAccess) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pAccess);
    *pAccess = OV_ENGINE_GET(record.node.GetAccessMode());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetText(OV_NODE_HANDLE hNode, OV_NODE_TEXT text, char* pszText,
                        size_t* pnSize) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const OvPlace place = OV_HERE;
    CopyOut(OV_ENGINE_GET(ToStd(TextOf(record, text, place))), pszText, pnSize, place);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetXml(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, char* pszXml,
                       size_t* pnSize) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const std::string xml = XmlOfModule(info, module, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    CopyOut(xml, pszXml, pnSize, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeInvalidate(OV_NODE_HANDLE hNode) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_ENGINE_GET(record.node.InvalidateNode());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
