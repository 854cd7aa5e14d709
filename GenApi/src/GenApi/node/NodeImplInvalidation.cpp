// What follows when the value of a node changes: by a write, by a poll, or because a client says
// so. Caches are dropped downwards to the registers that a value comes from, and sideways to all
// nodes that depend on it; callbacks are gathered for the caller to run.

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// A write passes through several nodes, each with a frame of its own. Only when the outermost
/// one ends are all registers written, and only then is there a consistent state to invalidate
/// for and to call clients back about.
void CNodeImpl::PreSetValue() {
    GetCallState().GetBathometer().Increment();
}

/// Callbacks are only gathered here. They run when everything is invalid that has to be, some of
/// them after the lock was released, so that a client never sees half of a change.
void CNodeImpl::PostSetValue(CallbackList& callbacks) {
    Counter& depth = GetCallState().GetBathometer();
    depth.Decrement();
    if (!depth.IsZero()) {
        return;
    }
    // The value ended in these nodes, most of them registers. What depends on this node depends
    // on them, so they know all that has to be set invalid.
    GetCallState().ForEachNode(m_TerminalNodes, [&callbacks](INodePrivate& terminal) {
        terminal.CollectCallbacksToFire(callbacks, true);
        terminal.SetInvalid(simAll);
    });
    // Without terminal nodes nobody has consumed these marks.
    m_KeepCache = false;
    m_WasWritten = false;
    GetCallState().EndWrites();
    SortCallbacks(callbacks);
}

/// The caches of the node go, except right after its own write: then they hold what was just
/// written. A write that failed anywhere on its way spares nothing, because nobody knows what the
/// device made of it.
void CNodeImpl::SetInvalid(ESetInvalidMode mode) {
    if (mode != simOnlyMe && mode != simAll) {
        GCLOGINFO(m_pCacheLog, "SetInvalid( <unknown enum> )");
        return;
    }
    GCLOGINFO(m_pCacheLog, "%s",
              mode == simAll ? "SetInvalid( simAll )" : "SetInvalid( simOnlyMe )");
    const bool isOwnWrite = std::exchange(m_WasWritten, false) && !GetCallState().HasWriteFailed();
    const bool keepsCaches = std::exchange(m_KeepCache, false) && !GetCallState().HasWriteFailed();
    if (!keepsCaches) {
        InvalidateCaches();
    }
    // A write has brought the register's bytes up to date, or dropped them. Any other reason to
    // become invalid means that the device may have changed under them.
    if (!isOwnWrite) {
        ForgetBeneath();
    }
    if (mode == simAll) {
        InvalidateDependents();
    }
}

void CNodeImpl::InvalidateCaches() {
    m_AccessModeCache = _UndefinedAccesMode;
    m_ValueCacheValid = false;
    m_ListOfValidValuesCacheValid = false;
}

/// One level is enough: preprocessing has listed, for each node, all nodes that depend on it
/// through any chain. So this needs no recursion, and no node is set invalid twice.
void CNodeImpl::InvalidateDependents() {
    GetCallState().ForEachNode(m_DependingNodes,
                               [](INodePrivate& dependent) { dependent.SetInvalid(simOnlyMe); });
}

/// A node without invalidators keeps its registers' bytes: its registers are set invalid on their
/// own account, by whatever changes them.
void CNodeImpl::ForgetBeneath() {
    if (!m_Invalidators.empty()) {
        InvalidateSources();
    }
}

/// The registers go through a queue because setting one invalid may lead to further registers
/// that share its bytes, in rows as long as the description likes. The mark keeps a node that is
/// reached along many ways from being entered each time.
void CNodeImpl::InvalidateSources() {
    CInvalidationQueue& queue = GetCallState().GetInvalidations();
    if (!queue.IsNew(m_LastInvalidation)) {
        return;
    }
    for (INodePrivate* const source : GetSources()) {
        queue.AddNode(*source);
    }
    queue.Run();
}

/// Found at the first use and kept: links never change once the map is built. The walk is a loop
/// and remembers where it was, as a description may link values in long chains and in circles.
const CNodeImpl::NodeList& CNodeImpl::GetSources() {
    if (m_Sources) {
        return *m_Sources;
    }
    m_Sources.emplace();
    std::unordered_set<INodePrivate*> found{this};
    NodeList open{this};
    while (!open.empty()) {
        auto& node = dynamic_cast<CNodeImpl&>(*open.back());
        open.pop_back();
        // Values come from the device here. What a register's address or length is computed from
        // has registers of its own, which are none of this value's.
        if (node.IsRegister()) {
            if (&node != this) {
                m_Sources->push_back(&node);
            }
            continue;
        }
        for (const unsigned role : {ValueRole, WriteRole}) {
            node.ForEachChild(role, [&](INodePrivate& child) {
                if (found.insert(&child).second) {
                    open.push_back(&child);
                }
            });
        }
    }
    return *m_Sources;
}

/// The list may name a callback several times; SortCallbacks leaves each once.
void CNodeImpl::CollectCallbacksToFire(CallbackList& list, bool allDependents) {
    list.insert(list.end(), m_Callbacks.begin(), m_Callbacks.end());
    if (allDependents) {
        GetCallState().ForEachNode(m_DependingNodes, [&list](INodePrivate& dependent) {
            dependent.CollectCallbacksToFire(list, false);
        });
    }
}

bool CNodeImpl::IsTerminalNode() {
    return std::find(m_TerminalNodes.begin(), m_TerminalNodes.end(), m_NodeID) !=
           m_TerminalNodes.end();
}

/// The elapsed time is a client's number: sums of it must not overflow, and a huge one simply
/// means that the time is over.
bool CNodeImpl::Poll(int64_t elapsedTime) {
    if (__builtin_add_overflow(m_ElapsedTime, elapsedTime, &m_ElapsedTime)) {
        using Limits = std::numeric_limits<int64_t>;
        m_ElapsedTime = elapsedTime > 0 ? Limits::max() : Limits::min();
    }
    if (m_ElapsedTime < m_PollingTime) {
        return false;
    }
    GCLOGDEBUG(m_pMiscLog, "Poll : m_ElapsedTime = %ld, m_PollingTime = %ld, ElapsedTime = %ld",
               m_ElapsedTime, m_PollingTime, elapsedTime);
    m_ElapsedTime = 0;
    // The next turn comes after a whole interval again: a node that is blocked for long is not
    // asked about at every sweep.
    if (IsPollingBlocked()) {
        return false;
    }
    // Unlike a write, a poll has brought nothing up to date: the registers have to be read again,
    // too.
    SetInvalid(simAll);
    InvalidateSources();
    return true;
}

/// The other nodes of a sweep have to be polled, whatever becomes of one read: a
/// node of which nobody knows whether it may be polled waits for its next turn.
bool CNodeImpl::IsPollingBlocked() {
    try {
        return m_BlockPolling.IsReadable() && m_BlockPolling.GetValue();
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        GCLOGERROR(m_pMiscLog, "Poll : reading 'pBlockPolling' failed : %s", failure.what());
    } catch (...) {
        GCLOGERROR(m_pMiscLog, "Poll : reading 'pBlockPolling' failed");
    }
    return true;
}

}  // namespace GenApi_3_0_ORVANE
