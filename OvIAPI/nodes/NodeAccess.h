#pragma once
/// From a handle to a node.

#include <string>

#include "Base/GCException.h"
#include "OvINodes.h"
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
    /// The value. Whether the camera has the feature is only asked after a failure: that takes
    /// as long as the read of a value that is kept.
    auto Read() const {
        PollBeforeCall(m_record);
        try {
            return m_interface->GetValue(false, false);
        } catch (const GenICam_3_0_ORVANE::AccessException&) {
            RequireImplemented(m_record);
            throw;
        }
    }

private:
    const CNodeRecord& m_record;
    Interface* m_interface;
};
