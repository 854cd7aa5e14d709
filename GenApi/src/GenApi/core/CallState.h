#pragma once
/// What the nodes of a map share while a client is in a call.

#include "core/INodeMapPrivate.h"
#include "core/InvalidationQueue.h"

namespace GenApi_3_0_ORVANE {

/// How deep calls of nodes by nodes may go. Cameras stay below a few dozen, and
/// the stack of a thread bears some more than this.
constexpr uint32_t kMaxNesting = 512;
/// How many calls of other nodes one call of a client may lead to. Where each
/// node of a chain asks the next one several times they multiply; more than
/// this would take minutes and hold the lock.
constexpr uint32_t kMaxNestedCalls = uint32_t{1} << 22;

/// RuntimeExceptions of the node at which a bound is passed.
[[noreturn]] void ThrowNestedTooDeep(INodePrivate& node);
[[noreturn]] void ThrowTooManyCalls(INodePrivate& node);

/// The map's lock, the counters and the entry point of the call under way. Every
/// step of every call passes here, so nodes reach it without a virtual call.
/// All but GetLock want the lock held.
class CCallState {
public:
    explicit CCallState(CLock& lock) : m_Lock(lock) {}

    CLock& GetLock() const { return m_Lock; }
    /// Counts the writes that are within one another.
    Counter& GetBathometer() { return m_Bathometer; }
    /// Counts the nodes on the way of a question that one node passes on to the
    /// next without an entry point, as that for a unit.
    Counter& GetNesting() { return m_Nesting; }

    /// Counted; only the outermost call is remembered.
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
    /// A write that failed, or whose device reports an error, may have left
    /// anything in the registers on its way: until the outermost write ends, none
    /// of them is spared.
    void NoteFailedWrite() { m_HasWriteFailed = true; }
    bool HasWriteFailed() const { return m_HasWriteFailed; }
    void EndWrites() { m_HasWriteFailed = false; }

    CInvalidationQueue& GetInvalidations() { return m_Invalidations; }

    /// "Node.Method()" of the outermost call; empty when there is none.
    gcstring GetEntryPoint() const;

private:
    void LeaveEntryPoint();

    CLock& m_Lock;
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
