// Integers, floats and booleans. Reads don't verify, writes do: a camera may have a value beyond
// its own limits, but must get none that it can't take.

#include "GenApi/IBoolean.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "api/DeviceManager.h"
#include "api/RangeRecords.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

template <class Interface, class Value>
OV_STATUS GetValue(OV_NODE_HANDLE hNode, Value* pValue, const OvPlace& place) {
    const CNodeAccess<Interface> node(hNode, place);
    CheckPointer(pValue, place);
    return StatusOfRead(
        OV_ENGINE_GET(node.Read(enginePlace, [pValue](Value value) { *pValue = value; })));
}

template <class Interface, class Value>
void SetValue(OV_NODE_HANDLE hNode, Value value, const OvPlace& place) {
    const CNodeAccess<Interface> node(hNode, place);
    OV_ENGINE_SET(node.Ask().SetValue(value, true));
}

template <class Interface, class Record>
void GetRange(OV_NODE_HANDLE hNode, Record* pRange, const OvPlace& place) {
    const CNodeAccess<Interface> node(hNode, place);
    CheckPointer(pRange, place);
    FillRecord(*pRange, OV_ENGINE_GET(RangeOf(node.Ask())));
}

template <class Interface, class Value>
void GetValues(OV_NODE_HANDLE hNode, Value* pValues, size_t* pnNumber, const OvPlace& place) {
    const CNodeAccess<Interface> node(hNode, place);
    CheckPointer(pnNumber, place);
    const auto list = OV_ENGINE_GET(node.Ask().GetListOfValidValues(true));
    std::vector<Value> values;
    values.reserve(list.size());
    for (size_t i = 0; i < list.size(); ++i) {
        values.push_back(list[i]);
    }
    CopyOut(values, pValues, pnNumber, place);
}

}  // namespace

OV_STATUS OvNodeGetInteger(OV_NODE_HANDLE hNode, int64_t* pnValue) try {
    return GetValue<IInteger>(hNode, pnValue, OV_HERE);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetInteger(OV_NODE_HANDLE hNode, int64_t nValue) try {
    SetValue<IInteger>(hNode, nValue, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetIntegerRange(OV_NODE_HANDLE hNode, OV_INT_RANGE* pRange) try {
    GetRange<IInteger>(hNode, pRange, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetIntegerValues(OV_NODE_HANDLE hNode, int64_t* pnValues, size_t* pnNumber) try {
    GetValues<IInteger>(hNode, pnValues, pnNumber, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetFloat(OV_NODE_HANDLE hNode, double* pdValue) try {
    return GetValue<IFloat>(hNode, pdValue, OV_HERE);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetFloat(OV_NODE_HANDLE hNode, double dValue) try {
    SetValue<IFloat>(hNode, dValue, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetFloatRange(OV_NODE_HANDLE hNode, OV_FLOAT_RANGE* pRange) try {
    GetRange<IFloat>(hNode, pRange, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetFloatValues(OV_NODE_HANDLE hNode, double* pdValues, size_t* pnNumber) try {
    GetValues<IFloat>(hNode, pdValues, pnNumber, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetBoolean(OV_NODE_HANDLE hNode, bool* pbValue) try {
    return GetValue<IBoolean>(hNode, pbValue, OV_HERE);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetBoolean(OV_NODE_HANDLE hNode, bool bValue) try {
    SetValue<IBoolean>(hNode, bValue, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
