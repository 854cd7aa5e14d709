// Enumerations and their entries, which have a name and a number each.

#include "GenApi/IEnumeration.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// The node of a getter: an enumeration or an entry.
const CNodeRecord& EnterEnumerationOrEntry(OV_NODE_HANDLE hNode, const OvPlace& place) {
    const CNodeRecord& record = EnterNode(hNode, place);
    if (record.As<IEnumeration>() == nullptr && record.As<IEnumEntry>() == nullptr) {
        RaiseOtherType(record, kWordFor<IEnumeration>, place);
    }
    return record;
}

int64_t NumberOf(const CNodeRecord& record) {
    if (auto* const entry = record.As<IEnumEntry>()) {
        return entry->GetValue();
    }
    PollBeforeCall(record);
    RequireImplemented(record);
    return record.As<IEnumeration>()->GetIntValue(false, false);
}

gcstring SymbolicOf(const CNodeRecord& record) {
    if (auto* const entry = record.As<IEnumEntry>()) {
        return entry->GetSymbolic();
    }
    PollBeforeCall(record);
    RequireImplemented(record);
    return record.As<IEnumeration>()->ToString(false, false);
}

}  // namespace

OV_STATUS OvNodeGetSymbolic(OV_NODE_HANDLE hNode, char* pszSymbolic, size_t* pnSize) try {
    const CNodeRecord& record = EnterEnumerationOrEntry(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    CopyOut(OV_ENGINE_GET(ToStd(SymbolicOf(record))), pszSymbolic, pnSize, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetSymbolic(OV_NODE_HANDLE hNode, const char* pszSymbolic) try {
    const CNodeAccess<IEnumeration> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pszSymbolic);
    OV_ENGINE_SET(node.Ask().FromString(pszSymbolic, true));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetNumber(OV_NODE_HANDLE hNode, int64_t* pnValue) try {
    const CNodeRecord& record = EnterEnumerationOrEntry(hNode, OV_HERE);
    OV_CHECK_POINTER(pnValue);
    *pnValue = OV_ENGINE_GET(NumberOf(record));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetNumber(OV_NODE_HANDLE hNode, int64_t nValue) try {
    const CNodeAccess<IEnumeration> node(hNode, OV_HERE);
    OV_ENGINE_SET(node.Ask().SetIntValue(nValue, true));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
