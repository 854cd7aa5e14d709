#pragma once
/// From a handle to a node.

#include <optional>
#include <string>

#include "Base/GCException.h"
#include "Base/Lock.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "OvINodes.h"
#include "TLClassFeature/EngineCall.h"
#include "camera/CameraNodes.h"
#include "errors/Place.h"

/// The checks at the beginning of every exported function that takes a node: initialised and
/// handle. Throws "Invalid node handle" for a number that isn't the handle of a node of an open
/// camera.
const CNodeRecord& EnterNode(OV_NODE_HANDLE hNode, const OvPlace& place);

/// The map of a module's nodes. Throws "Unknown node module" for any other number.
GenApi_3_0_ORVANE::INodeMap& MapOfModule(COvDeviceInfo& info, OV_NODE_MODULE module,
                                         const OvPlace& place);

/// The text of a module's description. Throws like MapOfModule.
std::string XmlOfModule(COvDeviceInfo& info, OV_NODE_MODULE module, const OvPlace& place);

/// The module as identifiers of features, and so the polling, count it.
OV_FEATURE_LEVEL LevelOf(OV_NODE_MODULE module);

std::string NameOf(const CNodeRecord& record);
OV_NODE_TYPE TypeOf(const CNodeRecord& record);

/// Drops values whose polling time has passed. To be called just before the camera is asked.
void PollBeforeCall(const CNodeRecord& record);
/// Throws for a feature that the camera lacks for good.
void RequireImplemented(const CNodeRecord& record);

/// Throws that the node has another type than the one that a function is for.
[[noreturn]] void RaiseOtherType(const CNodeRecord& record, const char* wanted,
                                 const OvPlace& place);

/// What a read is refused with.
struct ReadWords {
    const OVTLClass::EnginePlace& place;
    /// The engine's, for a node that can't be read at present.
    const char* notReadable;
};

/// Why a node can't be read, by its access mode. None if it can, or if only the node itself knows.
std::optional<OVTLClass::CRefusal> FindRefusal(const CNodeRecord& record, const ReadWords& words);

/// Why a node couldn't be read that refused that itself.
OVTLClass::CRefusal RefusalOf(const CNodeRecord& record,
                              const GenICam_3_0_ORVANE::AccessException& error,
                              const OVTLClass::EnginePlace& place);

/// The words for types in failures, with their articles.
template <class Interface>
constexpr const char* kWordFor = nullptr;
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IValue> = "a value";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IInteger> = "an integer";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IFloat> = "a float";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IBoolean> = "a boolean";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IString> = "a string";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IRegister> = "a register";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::ICommand> = "a command";
template <>
inline constexpr const char* kWordFor<GenApi_3_0_ORVANE::IEnumeration> = "an enumeration";

/// The checks at the beginning of every typed function, in this order: initialised, handle,
/// type. The caller's pointers are checked next, and the camera is asked last.
template <class Interface>
class CNodeAccess {
public:
    CNodeAccess(OV_NODE_HANDLE hNode, const OvPlace& place)
        : m_record(EnterNode(hNode, place)), m_interface(m_record.As<Interface>()) {
        if (m_interface == nullptr) {
            RaiseOtherType(m_record, kWordFor<Interface>, place);
        }
    }

    const CNodeRecord& Record() const { return m_record; }
    /// The node, for one question or command.
    Interface& Ask() const {
        PollBeforeCall(m_record);
        RequireImplemented(m_record);
        return *m_interface;
    }
    /// Hands the value to `use`, or returns why there is none. Whether the node can be read is
    /// asked before only where it has refused once: that takes as long as the read of a value
    /// that is kept.
    template <class Use>
    std::optional<OVTLClass::CRefusal> Read(const OVTLClass::EnginePlace& place,
                                            const Use& use) const {
        PollBeforeCall(m_record);
        if (m_record.mark.IsSet()) {
            if (auto refusal = FindRefusal(m_record, {place, "Node is not readable."})) {
                return refusal;
            }
        }
        return Try(place, [&] { use(m_interface->GetValue(false, false)); });
    }
    /// The same for the value as text. The lock is taken once for both questions.
    template <class Use>
    std::optional<OVTLClass::CRefusal> ReadText(const OVTLClass::EnginePlace& place,
                                                const Use& use) const {
        PollBeforeCall(m_record);
        const GenICam_3_0_ORVANE::AutoLock lock(m_record.node.GetNodeMap()->GetLock());
        if (auto refusal = FindRefusal(m_record, {place, "Node is not readable"})) {
            return refusal;
        }
        return Try(place, [&] { use(m_interface->ToString(false, false)); });
    }

private:
    template <class Read>
    std::optional<OVTLClass::CRefusal> Try(const OVTLClass::EnginePlace& place,
                                           const Read& read) const {
        try {
            read();
        } catch (const GenICam_3_0_ORVANE::AccessException& error) {
            return RefusalOf(m_record, error, place);
        }
        return std::nullopt;
    }

    const CNodeRecord& m_record;
    Interface* m_interface;
};
