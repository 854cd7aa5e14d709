#include "TLClassFeature/FeatureControl.h"

#include "Base/Lock.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureCallbackHandle.h"
#include "TLClassFeature/FeatureRange.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace): one layer below

namespace {

std::string NotImplementedText(CFeatureName name) {
    return std::string("The feature \"") + name.Get() + "\" is not implemented";
}

// Reads don't verify: a camera may have a value beyond its own limits, and whoever reads
// has to see it. Writes do, so that the camera gets no value that it can't take.

/// Reads a node's value, which the node may have kept.
constexpr auto kValue = [](auto& node) { return node.GetValue(false, false); };
/// Asks the camera.
constexpr auto kValueOfCamera = [](auto& node) { return node.GetValue(false, true); };

EAccessMode AccessModeOf(INode* node) {
    return node == nullptr ? NI : node->GetAccessMode();
}

/// A port has an access mode as well, but no value that could be read.
EAccessMode ValueAccessModeOf(INode& node) {
    return dynamic_cast<const IValue*>(&node) == nullptr ? NI : node.GetAccessMode();
}

/// The entries that can be chosen now.
std::vector<IEnumEntry*> AvailableEntriesOf(IEnumeration& enumeration) {
    node_vector nodes;
    enumeration.GetEntries(nodes);
    std::vector<IEnumEntry*> entries;
    for (INode* const node : nodes) {
        auto* const entry = dynamic_cast<IEnumEntry*>(node);
        if (entry != nullptr && IsAvailable(node->GetAccessMode())) {
            entries.push_back(entry);
        }
    }
    return entries;
}

}  // namespace

INode* CFeatureControl::__FindNode(CFeatureName name) const {
    if (const CKnownNode* const known = m_known.Find(name)) {
        return &known->Node();
    }
    INode* const node = m_nodeMap->_GetNode(name.Get());
    if (node != nullptr) {
        m_known.Add(name, *node);
    }
    return node;
}

INode& CFeatureControl::__GetGenAPINode(CFeatureName name) const {
    INode* const node = __FindNode(name);
    if (node == nullptr) {
        OV_RAISE(CNotImplementedError, NotImplementedText(name));
    }
    return *node;
}

/// What can only be written is refused to readers here, in the engine's words. The exception of
/// the engine would have to be thrown a second time, as one of the transport model, and to throw
/// takes longer than all the rest.
template <class T>
T& CFeatureControl::__GetNodeHandle(CFeatureName name, const EnginePlace* reader) const {
    INode& node = __GetGenAPINode(name);
    const EAccessMode mode = node.GetAccessMode();
    // Before the type: a description may have a feature of any type that this camera lacks.
    if (mode == NI) {
        OV_RAISE(CNotImplementedError, NotImplementedText(name));
    }
    const CKnownNode* const known = m_known.Find(name);
    T* const handle = known == nullptr ? dynamic_cast<T*>(&node) : known->As<T>();
    if (handle == nullptr) {
        OV_RAISE(CUnexpectedError, "Dynamic_cast failed");
    }
    if (reader != nullptr && mode == WO) {
        throw CInvalidAccessError("Node is not readable.", reader->file, reader->line,
                                  reader->function);
    }
    return *handle;
}

/// The lock is taken once: the node would take it for its access mode, and again for its value.
/// Whoever is refused is told so without it. Inlined, because an exception takes longer with each
/// function that it has to leave.
template <class T, class Read>
[[gnu::always_inline]] inline auto CFeatureControl::__Read(CFeatureName name,
                                                           const EnginePlace& place,
                                                           const Read& read) const {
    const CKnownNode* const known = m_known.Find(name);
    if (known == nullptr) {
        // From here, the exception for a feature that the camera lacks has the shortest way.
        static_cast<void>(__GetGenAPINode(name));
    }
    T* const handle = known == nullptr ? nullptr : known->As<T>();
    if (handle != nullptr) {
        const AutoLock lock(m_nodeMap->GetMap()->GetLock());
        if (IsReadable(known->Node().GetAccessMode())) {
            return read(*handle);
        }
    }
    return read(__GetNodeHandle<T>(name, &place));
}

std::string CFeatureControl::DoGetFeatureDisplayName(CFeatureName name) const {
    return OV_ENGINE_GET(ToStd(__GetGenAPINode(name).GetDisplayName()));
}

bool CFeatureControl::DoExist(CFeatureName name) const {
    return OV_ENGINE_GET(__FindNode(name)) != nullptr;
}

bool CFeatureControl::DoIsImplemented(CFeatureName name) const {
    return OV_ENGINE_GET(AccessModeOf(__FindNode(name))) != NI;
}

bool CFeatureControl::DoIsReadable(CFeatureName name) const {
    return IsReadable(OV_ENGINE_GET(ValueAccessModeOf(__GetGenAPINode(name))));
}

bool CFeatureControl::DoIsWritable(CFeatureName name) const {
    return IsWritable(OV_ENGINE_GET(ValueAccessModeOf(__GetGenAPINode(name))));
}

FEATURE_INT_RANGE CFeatureControl::DoGetIntRange(CFeatureName name) const {
    return OV_ENGINE_GET(RangeOf(__GetNodeHandle<IInteger>(name)));
}

int64_t CFeatureControl::DoGetInt(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IInteger>(name, enginePlace, kValue));
}

int64_t CFeatureControl::DoReadInt(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IInteger>(name, enginePlace, kValueOfCamera));
}

void CFeatureControl::DoSetInt(CFeatureName name, int64_t value) const {
    OV_ENGINE_SET(__GetNodeHandle<IInteger>(name).SetValue(value, true));
}

FEATURE_FLOAT_RANGE CFeatureControl::DoGetFloatRange(CFeatureName name) const {
    return OV_ENGINE_GET(RangeOf(__GetNodeHandle<IFloat>(name)));
}

double CFeatureControl::DoGetFloat(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IFloat>(name, enginePlace, kValue));
}

void CFeatureControl::DoSetFloat(CFeatureName name, double value) const {
    OV_ENGINE_SET(__GetNodeHandle<IFloat>(name).SetValue(value, true));
}

uint32_t CFeatureControl::DoGetEnumEntryNums(CFeatureName name) const {
    return static_cast<uint32_t>(
        OV_ENGINE_GET(AvailableEntriesOf(__GetNodeHandle<IEnumeration>(name))).size());
}

void CFeatureControl::DoGetEnumDescription(
    CFeatureName name, std::vector<FEATURE_ENUM_ENTRY_INFORMATION>& entries) const {
    const auto available = OV_ENGINE_GET(AvailableEntriesOf(__GetNodeHandle<IEnumeration>(name)));
    for (IEnumEntry* const entry : available) {
        FEATURE_ENUM_ENTRY_INFORMATION& information = entries.emplace_back();
        information.value = OV_ENGINE_GET(entry->GetValue());
        information.symbolic = OV_ENGINE_GET(ToStd(entry->GetSymbolic()));
    }
}

int64_t CFeatureControl::DoGetEnum(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IEnumeration>(
        name, enginePlace, [](IEnumeration& node) { return node.GetIntValue(false, false); }));
}

void CFeatureControl::DoSetEnum(CFeatureName name, int64_t value) const {
    OV_ENGINE_SET(__GetNodeHandle<IEnumeration>(name).SetIntValue(value, true));
}

int64_t CFeatureControl::DoGetEnumEntryValue(CFeatureName name, const std::string& entry) const {
    // An entry that isn't available has a value, too: the write shows whether it can be chosen.
    IEnumEntry* const found =
        OV_ENGINE_GET(__GetNodeHandle<IEnumeration>(name).GetEntryByName(entry.c_str()));
    if (found == nullptr) {
        OV_RAISE(CInvalidParameterError, std::string("The enumeration feature \"") + name.Get() +
                                             "\" does not contain the entry \"" + entry + "\"");
    }
    return OV_ENGINE_GET(found->GetValue());
}

bool CFeatureControl::DoGetBool(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IBoolean>(name, enginePlace, kValue));
}

void CFeatureControl::DoSetBool(CFeatureName name, bool value) const {
    OV_ENGINE_SET(__GetNodeHandle<IBoolean>(name).SetValue(value, true));
}

int64_t CFeatureControl::DoGetMaxStringLength(CFeatureName name) const {
    return OV_ENGINE_GET(__GetNodeHandle<IString>(name).GetMaxLength());
}

std::string CFeatureControl::DoGetString(CFeatureName name) const {
    return ToStd(OV_ENGINE_GET(__Read<IString>(name, enginePlace, kValue)));
}

std::string CFeatureControl::DoReadString(CFeatureName name) const {
    return ToStd(OV_ENGINE_GET(__Read<IString>(name, enginePlace, kValueOfCamera)));
}

void CFeatureControl::DoSetString(CFeatureName name, const std::string& value) const {
    OV_ENGINE_SET(__GetNodeHandle<IString>(name).SetValue(value.c_str(), true));
}

size_t CFeatureControl::DoGetBufferLength(CFeatureName name) const {
    return static_cast<size_t>(OV_ENGINE_GET(__GetNodeHandle<IRegister>(name).GetLength()));
}

void CFeatureControl::DoGetBuffer(CFeatureName name, size_t size, uint8_t* buffer) const {
    if (buffer == nullptr) {
        OV_RAISE(CInvalidParameterError, "pBuffer can't be NULL");
    }
    // Asked of the node, and read at that length: a register is read as a whole or not at all.
    const size_t length = DoGetBufferLength(name);
    if (length > size) {
        OV_RAISE(CNeedMoreBufferError, "Need more buffer");
    }
    OV_ENGINE_GET(__Read<IRegister>(name, enginePlace, [&](IRegister& node) {
        node.Get(buffer, static_cast<int64_t>(length));
    }));
}

void CFeatureControl::DoSetBuffer(CFeatureName name, size_t size, const uint8_t* buffer) const {
    if (buffer == nullptr) {
        OV_RAISE(CInvalidParameterError, "pBuffer can't be NULL");
    }
    OV_ENGINE_SET(__GetNodeHandle<IRegister>(name).Set(buffer, static_cast<int64_t>(size), true));
}

void CFeatureControl::DoSendCommand(CFeatureName name) const {
    OV_ENGINE_SET(__GetNodeHandle<ICommand>(name).Execute(true));
}

}  // namespace OVTLClass
