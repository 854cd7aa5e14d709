// What a description says of a node, element by element.

#include "GenApi/INode.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// In the form in which the engine returns the entries of a property.
std::string PropertyNames(INode& node) {
    gcstring_vector names;
    node.GetPropertyNames(names);
    std::string text;
    for (const gcstring& name : names) {
        text += (text.empty() ? "" : "\t") + ToStd(name);
    }
    return text;
}

std::string PropertyOf(const CNodeRecord& record, const char* name, OV_NODE_PROPERTY_PART part,
                       const OvPlace& place) {
    gcstring value;
    gcstring attribute;
    if (!record.node.GetProperty(name, value, attribute)) {
        OV_RAISE_AT(CNotImplementedError, place,
                    "The description of \"" + NameOf(record) + "\" has no \"" + name + "\"");
    }
    return ToStd(part == OV_NODE_PROPERTY_VALUE ? value : attribute);
}

}  // namespace

OV_STATUS OvNodeGetPropertyNames(OV_NODE_HANDLE hNode, char* pszNames, size_t* pnSize) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    CopyOut(OV_ENGINE_GET(PropertyNames(record.node)), pszNames, pnSize, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetProperty(OV_NODE_HANDLE hNode, const char* pszName, OV_NODE_PROPERTY_PART part,
                            char* pszText, size_t* pnSize) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pszName);
    OV_CHECK_POINTER(pnSize);
    if (part != OV_NODE_PROPERTY_VALUE && part != OV_NODE_PROPERTY_ATTRIBUTE) {
        OV_RAISE(CInvalidParameterError, "Unknown part of a property");
    }
    const OvPlace place = OV_HERE;
    CopyOut(OV_ENGINE_GET(PropertyOf(record, pszName, part, place)), pszText, pnSize, place);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
