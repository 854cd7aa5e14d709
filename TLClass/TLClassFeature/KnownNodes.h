#pragma once
/// The nodes that a module's features were found at.

#include <array>
#include <atomic>
#include <deque>
#include <tuple>

#include "TLClassFeature/FeatureName.h"
#include "TLClassFeature/Reading.h"
#include "TLClassSupport/OvLock.h"

namespace GenApi_3_0_ORVANE {
struct INode;
struct IInteger;
struct IFloat;
struct IEnumeration;
struct IString;
struct IRegister;
struct IBoolean;
struct ICommand;
}  // namespace GenApi_3_0_ORVANE

namespace OVTLClass {

/// A node with its interfaces. Looking for one takes longer than the read of a cached value.
class CKnownNode {
public:
    explicit CKnownNode(GenApi_3_0_ORVANE::INode& node);

    GenApi_3_0_ORVANE::INode& Node() const { return m_node; }
    /// Null if the node hasn't that interface.
    template <class Interface>
    Interface* As() const {
        return std::get<Interface*>(m_interfaces);
    }
    /// Of the reads by this node's identifier.
    CSoundMark& Mark() const { return m_mark; }

private:
    GenApi_3_0_ORVANE::INode& m_node;
    std::tuple<GenApi_3_0_ORVANE::IInteger*, GenApi_3_0_ORVANE::IFloat*,
               GenApi_3_0_ORVANE::IEnumeration*, GenApi_3_0_ORVANE::IString*,
               GenApi_3_0_ORVANE::IRegister*, GenApi_3_0_ORVANE::IBoolean*,
               GenApi_3_0_ORVANE::ICommand*>
        m_interfaces;
    mutable CSoundMark m_mark;
};

/// Finding takes no lock, because threads that read features of one camera would wait for it.
class CKnownNodes {
public:
    CKnownNodes() = default;
    CKnownNodes(const CKnownNodes&) = delete;
    CKnownNodes& operator=(const CKnownNodes&) = delete;

    /// @return null for a feature that was never added
    const CKnownNode* Find(const CFeatureName& name) const noexcept {
        return name.HasNumber() ? m_byNumber[name.GetNumber()].load(std::memory_order_acquire)
                                : nullptr;
    }
    /// The node must be there as long as this object. Nothing is kept for a name without a number.
    void Add(const CFeatureName& name, GenApi_3_0_ORVANE::INode& node);

private:
    CLock m_lock{LockRank::KnownNodes};
    /// A deque, whose items never move.
    std::deque<CKnownNode> m_nodes;
    std::array<std::atomic<const CKnownNode*>, CFeatureName::kNumbers> m_byNumber{};
};

}  // namespace OVTLClass
