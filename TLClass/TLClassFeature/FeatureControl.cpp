#include "TLClassFeature/FeatureControl.h"

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureCallbackHandle.h"
#include "TLClassLoadTL/OvString.h"

namespace OVTLClass {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace): one layer below

namespace {

std::string NotImplementedText(const std::string& name) {
    return "The feature \"" + name + "\" is not implemented";
}

std::string ToStd(const gcstring& text) {
    return {text.c_str(), text.size()};
}

/// A port has an access mode as well, but no value that could be read.
bool HasValue(const INode& node) {
    return dynamic_cast<const IValue*>(&node) != nullptr;
}

}  // namespace

INode* CFeatureControl::__FindNode(const std::string& name) const {
    return OV_ENGINE_GET(m_nodeMap->_GetNode(name.c_str()));
}

INode& CFeatureControl::__GetGenAPINode(const std::string& name) const {
    INode* const node = __FindNode(name);
    if (node == nullptr) {
        OV_RAISE(CNotImplementedError, NotImplementedText(name));
    }
    return *node;
}

template <class T>
T& CFeatureControl::__GetNodeHandle(const std::string& name) const {
    INode& node = __GetGenAPINode(name);
    if (OV_ENGINE_GET(node.GetAccessMode()) == NI) {
        OV_RAISE(CNotImplementedError, NotImplementedText(name));
    }
    auto* const handle = dynamic_cast<T*>(&node);
    if (handle == nullptr) {
        OV_RAISE(CUnexpectedError, "Dynamic_cast failed");
    }
    return *handle;
}

std::string CFeatureControl::DoGetFeatureDisplayName(const std::string& name) const {
    INode& node = __GetGenAPINode(name);
    return OV_ENGINE_GET(ToStd(node.GetDisplayName()));
}

bool CFeatureControl::DoExist(const std::string& name) const {
    return __FindNode(name) != nullptr;
}

bool CFeatureControl::DoIsImplemented(const std::string& name) const {
    INode* const node = __FindNode(name);
    return node != nullptr && OV_ENGINE_GET(node->GetAccessMode()) != NI;
}

bool CFeatureControl::DoIsReadable(const std::string& name) const {
    INode& node = __GetGenAPINode(name);
    return HasValue(node) && IsReadable(OV_ENGINE_GET(node.GetAccessMode()));
}

bool CFeatureControl::DoIsWritable(const std::string& name) const {
    INode& node = __GetGenAPINode(name);
    return HasValue(node) && IsWritable(OV_ENGINE_GET(node.GetAccessMode()));
}

FEATURE_INT_RANGE CFeatureControl::DoGetIntRange(const std::string& name) const {
    IInteger& node = __GetNodeHandle<IInteger>(name);
    return OV_ENGINE_GET((FEATURE_INT_RANGE{node.GetMin(), node.GetMax(), node.GetInc()}));
}

int64_t CFeatureControl::DoGetInt(const std::string& name) const {
    IInteger& node = __GetNodeHandle<IInteger>(name);
    return OV_ENGINE_GET(node.GetValue(false, false));
}

void CFeatureControl::DoSetInt(const std::string& name, int64_t value) const {
    IInteger& node = __GetNodeHandle<IInteger>(name);
    OV_ENGINE_SET(node.SetValue(value, true));
}

FEATURE_FLOAT_RANGE CFeatureControl::DoGetFloatRange(const std::string& name) const {
    IFloat& node = __GetNodeHandle<IFloat>(name);
    FEATURE_FLOAT_RANGE range;
    range.min = OV_ENGINE_GET(node.GetMin());
    range.max = OV_ENGINE_GET(node.GetMax());
    range.hasInc = OV_ENGINE_GET(node.HasInc());
    range.inc = range.hasInc ? OV_ENGINE_GET(node.GetInc()) : 0;
    range.unit = OV_ENGINE_GET(ToStd(node.GetUnit()));
    return range;
}

double CFeatureControl::DoGetFloat(const std::string& name) const {
    IFloat& node = __GetNodeHandle<IFloat>(name);
    return OV_ENGINE_GET(node.GetValue(false, false));
}

void CFeatureControl::DoSetFloat(const std::string& name, double value) const {
    IFloat& node = __GetNodeHandle<IFloat>(name);
    OV_ENGINE_SET(node.SetValue(value, true));
}

template <class Visit>
void CFeatureControl::__ForEachAvailableEntry(const std::string& name, const Visit& visit) const {
    IEnumeration& enumeration = __GetNodeHandle<IEnumeration>(name);
    node_vector nodes;
    OV_ENGINE_GET(enumeration.GetEntries(nodes));
    for (INode* const node : nodes) {
        auto* const entry = dynamic_cast<IEnumEntry*>(node);
        if (entry != nullptr && IsAvailable(OV_ENGINE_GET(node->GetAccessMode()))) {
            visit(*entry);
        }
    }
}

uint32_t CFeatureControl::DoGetEnumEntryNums(const std::string& name) const {
    uint32_t count = 0;
    __ForEachAvailableEntry(name, [&count](IEnumEntry&) { ++count; });
    return count;
}

void CFeatureControl::DoGetEnumDescription(
    const std::string& name, std::vector<FEATURE_ENUM_ENTRY_INFORMATION>& entries) const {
    __ForEachAvailableEntry(name, [&entries](IEnumEntry& entry) {
        FEATURE_ENUM_ENTRY_INFORMATION& information = entries.emplace_back();
        information.value = OV_ENGINE_GET(entry.GetValue());
        information.symbolic = OV_ENGINE_GET(ToStd(entry.GetSymbolic()));
    });
}

int64_t CFeatureControl::DoGetEnum(const std::string& name) const {
    IEnumeration& node = __GetNodeHandle<IEnumeration>(name);
    return OV_ENGINE_GET(node.GetIntValue(false, false));
}

void CFeatureControl::DoSetEnum(const std::string& name, int64_t value) const {
    IEnumeration& node = __GetNodeHandle<IEnumeration>(name);
    OV_ENGINE_SET(node.SetIntValue(value, true));
}

int64_t CFeatureControl::DoGetEnumEntryValue(const std::string& name,
                                             const std::string& entry) const {
    IEnumeration& node = __GetNodeHandle<IEnumeration>(name);
    IEnumEntry* const found = OV_ENGINE_GET(node.GetEntryByName(entry.c_str()));
    if (found == nullptr) {
        OV_RAISE(CInvalidParameterError, "The enumeration feature \"" + name +
                                             "\" does not contain the entry \"" + entry + "\"");
    }
    return OV_ENGINE_GET(found->GetValue());
}

bool CFeatureControl::DoGetBool(const std::string& name) const {
    IBoolean& node = __GetNodeHandle<IBoolean>(name);
    return OV_ENGINE_GET(node.GetValue(false, false));
}

void CFeatureControl::DoSetBool(const std::string& name, bool value) const {
    IBoolean& node = __GetNodeHandle<IBoolean>(name);
    OV_ENGINE_SET(node.SetValue(value, true));
}

int64_t CFeatureControl::DoGetMaxStringLength(const std::string& name) const {
    IString& node = __GetNodeHandle<IString>(name);
    return OV_ENGINE_GET(node.GetMaxLength());
}

std::string CFeatureControl::DoGetString(const std::string& name) const {
    IString& node = __GetNodeHandle<IString>(name);
    return OV_ENGINE_GET(ToStd(node.GetValue(false, false)));
}

void CFeatureControl::DoSetString(const std::string& name, const std::string& value) const {
    IString& node = __GetNodeHandle<IString>(name);
    OV_ENGINE_SET(node.SetValue(value.c_str(), true));
}

size_t CFeatureControl::DoGetBufferLength(const std::string& name) const {
    IRegister& node = __GetNodeHandle<IRegister>(name);
    return static_cast<size_t>(OV_ENGINE_GET(node.GetLength()));
}

void CFeatureControl::DoGetBuffer(const std::string& name, size_t size, uint8_t* buffer) const {
    if (buffer == nullptr) {
        OV_RAISE(CInvalidParameterError, "pBuffer can't be NULL");
    }
    const size_t length = DoGetBufferLength(name);
    if (length > size) {
        OV_RAISE(CNeedMoreBufferError, "Need more buffer");
    }
    IRegister& node = __GetNodeHandle<IRegister>(name);
    OV_ENGINE_GET(node.Get(buffer, static_cast<int64_t>(length)));
}

void CFeatureControl::DoSetBuffer(const std::string& name, size_t size,
                                  const uint8_t* buffer) const {
    if (buffer == nullptr) {
        OV_RAISE(CInvalidParameterError, "pBuffer can't be NULL");
    }
    IRegister& node = __GetNodeHandle<IRegister>(name);
    OV_ENGINE_SET(node.Set(buffer, static_cast<int64_t>(size), true));
}

void CFeatureControl::DoSendCommand(const std::string& name) const {
    ICommand& node = __GetNodeHandle<ICommand>(name);
    OV_ENGINE_SET(node.Execute(true));
}

}  // namespace OVTLClass
