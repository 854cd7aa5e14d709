#pragma once
/// What the nodes of a map share while a client is in a call.

#include "core/INodeMapPrivate.h"
#include "core/InvalidationQueue.h"

namespace GenApi_3_0_ORVANE {

/// How deep calls from node to node may go. Cameras stay below a few dozen, and the stack of a
/// thread has room for some more than this.
constexpr uint32_t kMaxNesting = 512;
/// How many calls of other nodes one call of a client may lead to. Where each node of a chain
/// asks the next one several times, the calls multiply; more than this would take minutes with
/// the lock held.
constexpr uint32_t kMaxNestedCalls = uint32_t{1} << 22;

/// @throws RuntimeException of the node where the bound is exceeded
[[noreturn]] void ThrowNestedTooDeep(INodePrivate& node);
/// @throws RuntimeException of the node where the bound is exceeded
[[noreturn]] void ThrowTooManyCalls(INodePrivate& node);

/// The map's lock, the counters and the entry point of the call under way. Every step of every
/// call passes here, so nodes reach it without a virtual call. Call everything except GetLock
/// with the lock held.
class CCallState {
public:
    /// @param nodes  the map's table by identifier, which outlives this object
    CCallState(CLock& lock, const std::vector<INodePrivate*>& nodes)
        : m_Lock(lock), m_Nodes(nodes) {}

    CLock& GetLock() const { return m_Lock; }
    /// Calls `use` with each of several nodes. The root element, which a description may link to
    /// by its name, isn't one.
    template <class Use>
    void ForEachNode(NodeIDSpan nodeIDs, const Use& use) const {
        for (const NodeID_t nodeID : nodeIDs) {
            if (INodePrivate* const node = m_Nodes[static_cast<size_t>(nodeID.ToIndex())]) {
                use(*node);
            }
        }
    }
    /// Returns the depth of writes within writes.
    Counter& GetBathometer() { return m_Bathometer; }
    /// Returns how many nodes a question has passed through that has no entry point, such as that
    /// for a unit.
    Counter& GetNesting() { return m_Nesting; }

    /// Enters a call. Only the outermost one is remembered.
    void SetEntryPoint(EMethod EntryMethod, INodePrivate* pEntryNode, bool ignoreCache) {
        OV_ASSERT(EntryMethod != meUndefined);
        OV_ASSERT(pEntryNode);
        if (m_EntryDepth == 0) {
            m_EntryMethod = EntryMethod;
            m_pEntryNode = pEntryNode;
            m_EntryIgnoreCache = ignoreCache;
            m_NestedCalls = 0;
        } else if (m_EntryDepth >= kMaxNesting) {
            ThrowNestedTooDeep(*pEntryNode);
        } else if (++m_NestedCalls > kMaxNestedCalls) {
            ThrowTooManyCalls(*pEntryNode);
        }
        ++m_EntryDepth;
    }
    void ResetEntryPoint() {
        if (--m_EntryDepth == 0) {
            LeaveEntryPoint();
        }
    }
    /// Marks that a write has failed, or that its device reports an error. It may have left
    /// anything in the registers on its way, so until the outermost write ends, none of their
    /// caches is spared.
    void NoteFailedWrite() { m_HasWriteFailed = true; }
    bool HasWriteFailed() const { return m_HasWriteFailed; }
    void EndWrites() { m_HasWriteFailed = false; }

    CInvalidationQueue& GetInvalidations() { return m_Invalidations; }

    /// Returns "Node.Method()" of the outermost call; empty if there is none.
    gcstring GetEntryPoint() const;

private:
    void LeaveEntryPoint();

    CLock& m_Lock;
    const std::vector<INodePrivate*>& m_Nodes;
    Counter m_Bathometer;
    Counter m_Nesting;
    INodePrivate* m_pEntryNode = nullptr;
    EMethod m_EntryMethod = meUndefined;
    uint32_t m_EntryDepth = 0;
    uint32_t m_NestedCalls = 0;
    bool m_EntryIgnoreCache = false;
    bool m_HasWriteFailed = false;
    CInvalidationQueue m_Invalidations;
};

}  // namespace GenApi_3_0_ORVANE
