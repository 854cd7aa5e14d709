#pragma once
/// The nodes of one camera that an application has handles of.

#include <array>
#include <cstdint>
#include <list>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "OvINodes.h"
#include "TLClassFeature/Reading.h"
#include "TLClassSupport/OvLock.h"

namespace GenApi_3_0_ORVANE {
struct INode;
struct INodeMap;
struct IValue;
struct IInteger;
struct IFloat;
struct IBoolean;
struct IString;
struct IRegister;
struct ICommand;
struct IEnumeration;
struct IEnumEntry;
}  // namespace GenApi_3_0_ORVANE

namespace OVTLClass {
class IFeatureControl;
}

class COvDeviceInfo;

/// Features whose writing also changes the host's side.
enum class NodeRole : uint8_t { None, UserId, AcquisitionStart, AcquisitionStop };

/// A node with all that a call needs of it. Its interfaces are looked up once, since that takes
/// longer than the read of a cached value.
struct CNodeRecord {
    CNodeRecord(COvDeviceInfo& ofCamera, OV_NODE_MODULE ofModule, GenApi_3_0_ORVANE::INode& itself);

    /// Null if the node hasn't that interface.
    template <class Interface>
    Interface* As() const {
        return std::get<Interface*>(interfaces);
    }

    COvDeviceInfo& camera;
    OV_NODE_MODULE module;
    GenApi_3_0_ORVANE::INode& node;
    NodeRole role;
    std::tuple<GenApi_3_0_ORVANE::IValue*, GenApi_3_0_ORVANE::IInteger*, GenApi_3_0_ORVANE::IFloat*,
               GenApi_3_0_ORVANE::IBoolean*, GenApi_3_0_ORVANE::IString*,
               GenApi_3_0_ORVANE::IRegister*, GenApi_3_0_ORVANE::ICommand*,
               GenApi_3_0_ORVANE::IEnumeration*, GenApi_3_0_ORVANE::IEnumEntry*>
        interfaces;
    mutable OVTLClass::CSoundMark mark;
};

/// Handles are made when they are asked for, and end all at once when the camera is closed.
/// Records stay until the camera's own end: a callback that the close waits for may still use
/// one.
class CCameraNodes {
public:
    CCameraNodes() = default;
    CCameraNodes(const CCameraNodes&) = delete;
    CCameraNodes& operator=(const CCameraNodes&) = delete;

    /// The handle of a node, which is the same each time. Throws "Invalid device handle" for a
    /// camera that is being closed.
    OV_NODE_HANDLE HandleOf(COvDeviceInfo& camera, OV_NODE_MODULE module,
                            GenApi_3_0_ORVANE::INode& node);
    /// The features of a module in the order of their tree. It doesn't change while the camera is
    /// open, and so is walked once.
    std::shared_ptr<const std::vector<OV_NODE_HANDLE>> GetTree(COvDeviceInfo& camera,
                                                               OV_NODE_MODULE module,
                                                               GenApi_3_0_ORVANE::INodeMap& map);
    /// Takes a callback that the close of the camera wouldn't remove, because the module that it
    /// is registered with stays open.
    void KeepCallback(OVTLClass::IFeatureControl& control, GenApi_3_0_ORVANE::INodeMap& map,
                      const void* callback);
    /// @return whether it was kept
    bool ForgetCallback(const void* callback);
    /// All handles are invalid afterwards, and none is made any more. Removes the callbacks that
    /// it keeps and waits for those that are running.
    void Release() noexcept;

private:
    struct Entry {
        CNodeRecord record;
        OV_NODE_HANDLE handle = 0;
    };
    struct OuterCallback {
        OVTLClass::IFeatureControl& control;
        GenApi_3_0_ORVANE::INodeMap& map;
        const void* handle;
    };
    using OuterCallbacks = std::list<OuterCallback>;
    static constexpr size_t kModules = OV_NODE_MODULE_STREAM + 1;

    OVTLClass::CLock m_lock{OVTLClass::LockRank::NodeHandles};
    bool m_isReleased = false;
    std::unordered_map<const GenApi_3_0_ORVANE::INode*, Entry> m_entries;
    std::array<std::shared_ptr<const std::vector<OV_NODE_HANDLE>>, kModules> m_trees;
    OuterCallbacks m_callbacks;
};
