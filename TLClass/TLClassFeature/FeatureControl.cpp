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

/// @param function  that failures name, whether it throws them or not
CNotImplementedError NotImplemented(CFeatureName name, const char* function) {
    return {std::string("The feature \"") + name.Get() + "\" is not implemented", __FILE__,
            __LINE__, function};
}

// Reads don't verify: a camera may have a value beyond its own limits, and whoever reads
// has to see it. Writes do, so that the camera gets no value that it can't take.

/// Reads a node's value, which the node may have kept.
constexpr auto kValue = [](auto& node) { return node.GetValue(false, false); };
/// Asks the camera.
constexpr auto kValueOfCamera = [](auto& node) { return node.GetValue(false, true); };

// What fails before a node is asked is told by the names of these, by whomever it's found.
constexpr const char* kNodeFinder = "__GetGenAPINode";
constexpr const char* kHandleFinder = "__GetNodeHandle";

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
        throw NotImplemented(name, __func__);
    }
    return *node;
}

template <class T>
T& CFeatureControl::__GetNodeHandle(CFeatureName name) const {
    INode& node = __GetGenAPINode(name);
    // Before the type: a description may have a feature of any type that this camera lacks.
    if (node.GetAccessMode() == NI) {
        throw NotImplemented(name, __func__);
    }
    const CKnownNode* const known = m_known.Find(name);
    T* const handle = known == nullptr ? dynamic_cast<T*>(&node) : known->As<T>();
    if (handle == nullptr) {
        OV_RAISE(CUnexpectedError, "Dynamic_cast failed");
    }
    return *handle;
}

/// The lock is taken once: the node would take it for its access mode, and again for its value.
template <class T, class Read>
[[gnu::always_inline]] inline auto CFeatureControl::__Read(CFeatureName name,
                                                           const EnginePlace& place,
                                                           const Read& read) const
    -> CReading<decltype(read(std::declval<T&>()))> {
    const CKnownNode* const known = m_known.Find(name);
    T* const handle = known == nullptr ? nullptr : known->As<T>();
    if (handle != nullptr) {
        const AutoLock lock(m_nodeMap->GetMap()->GetLock());
        if (IsReadable(known->Node().GetAccessMode())) {
            return read(*handle);
        }
    }
    return __ReadDespite<T>(name, place, read);
}

/// For what isn't known yet or can't be read. Out of the way of all other reads.
template <class T, class Read>
[[gnu::noinline]] auto CFeatureControl::__ReadDespite(CFeatureName name, const EnginePlace& place,
                                                      const Read& read) const
    -> CReading<decltype(read(std::declval<T&>()))> {
    INode* const node = __FindNode(name);
    if (node == nullptr) {
        return CRefusal(NotImplemented(name, kNodeFinder));
    }
    const CKnownNode* const known = m_known.Find(name);
    T* const handle = known == nullptr ? dynamic_cast<T*>(node) : known->As<T>();
    const AutoLock lock(m_nodeMap->GetMap()->GetLock());
    const EAccessMode mode = node->GetAccessMode();
    if (auto refusal = __FindRefusal(name, mode, handle != nullptr, place)) {
        return *std::move(refusal);
    }
    try {
        return read(*handle);
    } catch (const GenICam_3_0_ORVANE::AccessException& error) {
        if (known != nullptr) {
            known->Mark().NoteRefusal(mode);
        }
        return NotReadable(place, error.GetDescription());
    }
}

/// Refuses what can only be written, and what has refused before, in the engine's words.
/// @return none if the node itself has to say why it can't be read
std::optional<CRefusal> CFeatureControl::__FindRefusal(CFeatureName name, EAccessMode mode,
                                                       bool hasType,
                                                       const EnginePlace& place) const {
    if (mode == NI) {
        return CRefusal(NotImplemented(name, kHandleFinder));
    }
    if (!hasType) {
        throw CUnexpectedError("Dynamic_cast failed", __FILE__, __LINE__, kHandleFinder);
    }
    const CKnownNode* const known = m_known.Find(name);
    if (known == nullptr ? CSoundMark().IsRefused(mode) : known->Mark().IsRefused(mode)) {
        return NotReadable(place);
    }
    return std::nullopt;
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

CReading<int64_t> CFeatureControl::GetInt(CFeatureName name) const {
    return OV_ENGINE_CALL_OF("DoGetInt", Getter, __Read<IInteger>(name, enginePlace, kValue));
}

int64_t CFeatureControl::DoGetInt(CFeatureName name) const {
    return GetInt(name).Value();
}

int64_t CFeatureControl::DoReadInt(CFeatureName name) const {
    return OV_ENGINE_GET(__Read<IInteger>(name, enginePlace, kValueOfCamera)).Value();
}

void CFeatureControl::DoSetInt(CFeatureName name, int64_t value) const {
    OV_ENGINE_SET(__GetNodeHandle<IInteger>(name).SetValue(value, true));
}

FEATURE_FLOAT_RANGE CFeatureControl::DoGetFloatRange(CFeatureName name) const {
    return OV_ENGINE_GET(RangeOf(__GetNodeHandle<IFloat>(name)));
}

CReading<double> CFeatureControl::GetFloat(CFeatureName name) const {
    return OV_ENGINE_CALL_OF("DoGetFloat", Getter, __Read<IFloat>(name, enginePlace, kValue));
}

double CFeatureControl::DoGetFloat(CFeatureName name) const {
    return GetFloat(name).Value();
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

CReading<int64_t> CFeatureControl::GetEnum(CFeatureName name) const {
    return OV_ENGINE_CALL_OF("DoGetEnum", Getter,
                             __Read<IEnumeration>(name, enginePlace, [](IEnumeration& node) {
                                 return node.GetIntValue(false, false);
                             }));
}

int64_t CFeatureControl::DoGetEnum(CFeatureName name) const {
    return GetEnum(name).Value();
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

CReading<bool> CFeatureControl::GetBool(CFeatureName name) const {
    return OV_ENGINE_CALL_OF("DoGetBool", Getter, __Read<IBoolean>(name, enginePlace, kValue));
}

bool CFeatureControl::DoGetBool(CFeatureName name) const {
    return GetBool(name).Value();
}

void CFeatureControl::DoSetBool(CFeatureName name, bool value) const {
    OV_ENGINE_SET(__GetNodeHandle<IBoolean>(name).SetValue(value, true));
}

int64_t CFeatureControl::DoGetMaxStringLength(CFeatureName name) const {
    return OV_ENGINE_GET(__GetNodeHandle<IString>(name).GetMaxLength());
}

CReading<std::string> CFeatureControl::GetString(CFeatureName name) const {
    return OV_ENGINE_CALL_OF("DoGetString", Getter,
                             __Read<IString>(name, enginePlace, [](IString& node) {
                                 return ToStd(node.GetValue(false, false));
                             }));
}

std::string CFeatureControl::DoGetString(CFeatureName name) const {
    return std::move(GetString(name).Value());
}

std::string CFeatureControl::DoReadString(CFeatureName name) const {
    return ToStd(OV_ENGINE_GET(__Read<IString>(name, enginePlace, kValueOfCamera)).Value());
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
        return length;
    })).Value();
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
