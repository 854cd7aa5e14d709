// How a node's access mode is computed. It starts from the mode of the node whose value this one
// shows, and is then lowered: by the nodes that are read for it, by "pIsImplemented",
// "pIsAvailable" and "pIsLocked", and at the end by what a client imposed.

#include "node/EntryMethodFinalizer.h"
#include "node/NestingScope.h"
#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// The slow way of GetAccessModeInside, when the cache has no answer. It is an entry point,
/// because computing the mode may read registers, whose failures name it.
EAccessMode CNodeImpl::FindAccessMode() {
    const EntryMethodFinalizer entry(*this, meGetAccessMode);
    CLogIndent indent;
    GCLOGINFOPUSH(indent, m_pAccessLog, "GetAccessMode...");
    const EAccessMode mode = Combine(InternalGetAccessMode(), m_ImposedAccessMode);
    GCLOGINFOPOP(indent, m_pAccessLog, "...GetAccessMode = '%s' ",
                 EAccessModeClass::ToString(mode));
    return mode;
}

EAccessMode CNodeImpl::InternalGetAccessMode(IBase* value) {
    return CachedAccessMode([this, value] { return ComputeAccessMode(value); });
}

/// A node that holds its value itself can be read and written, as far as nothing below lowers
/// that.
EAccessMode CNodeImpl::ComputeAccessMode(IBase* value) {
    const EAccessMode mode = value == nullptr ? RW : value->GetAccessMode();
    return ComputeAccessMode(mode, ReadRole);
}

EAccessMode CNodeImpl::ComputeAccessMode(EAccessMode mode, unsigned roles) const {
    return LowerByReferences(LowerByChildren(mode, roles));
}

/// A node that can't be computed because a part is missing is missing, too. Parts that are
/// write-only for example don't matter here: reading them fails with their own text, which says
/// more.
EAccessMode CNodeImpl::LowerByChildren(EAccessMode mode, unsigned roles) const {
    for (const Child& child : m_Children) {
        if ((child.roles & roles) == 0) {
            continue;
        }
        const EAccessMode childMode = child.node->GetAccessMode();
        if (childMode == NI) {
            return NI;
        }
        if (childMode == NA) {
            // Not a return: a later child may turn out not to be implemented, which counts for
            // more.
            mode = mode == NI ? NI : NA;
        }
    }
    return mode;
}

/// The order decides which answer wins: a feature that isn't implemented is never asked whether
/// it's available, and one that isn't available is never asked whether it's locked. Cameras have
/// registers that may only be read after the previous answer.
EAccessMode CNodeImpl::LowerByReferences(EAccessMode mode) const {
    if (mode != NI && m_IsImplemented.IsInitialized()) {
        // Not knowing is no reason to hide the feature for good: it may become known later.
        if (!m_IsImplemented.IsReadable()) {
            mode = NA;
        } else if (!m_IsImplemented.GetValue()) {
            return NI;
        }
    }
    if (IsAvailable(mode) && m_IsAvailable.IsInitialized() &&
        !(m_IsAvailable.IsReadable() && m_IsAvailable.GetValue())) {
        return NA;
    }
    if (IsWritable(mode) && m_IsLocked.IsInitialized()) {
        // A lock that can't be read could be on. Writing anyway would disturb an acquisition.
        if (!m_IsLocked.IsReadable()) {
            return NA;
        }
        if (m_IsLocked.GetValue()) {
            // What can only be written has nothing left when it's locked.
            return mode == WO ? NA : RO;
        }
    }
    return mode;
}

/// As with the caching mode, links decide, so the answer never changes once it is found.
EYesNo CNodeImpl::InternalIsAccessModeCacheable() {
    if (m_AccessModeCacheability != _UndefinedYesNo) {
        return m_AccessModeCacheability;
    }
    const NestingScope nesting(*this);
    // Known before the children are asked, so that a cycle of them ends.
    m_AccessModeCacheability = Yes;
    try {
        m_AccessModeCacheability = ComputeAccessModeCacheability();
    } catch (...) {
        m_AccessModeCacheability = _UndefinedYesNo;
        throw;
    }
    GCLOGINFO(m_pAccessLog, "InternalIsAccessModeCacheable = '%s'",
              m_AccessModeCacheability == Yes ? "Yes" : "No");
    return m_AccessModeCacheability;
}

EYesNo CNodeImpl::ComputeAccessModeCacheability() {
    const auto forbids = [](const CBooleanPolyRef& reference) {
        return reference.IsPointer() && reference.GetCachingMode() == NoCache;
    };
    if (forbids(m_IsImplemented) || forbids(m_IsAvailable) || forbids(m_IsLocked)) {
        // Those that read this node and are read by it have to see it, too.
        m_AccessModeCacheability = No;
    }
    ForEachChild(ReadRole, [this](INodePrivate& child) {
        if (child.IsAccessModeCacheable() == No) {
            m_AccessModeCacheability = No;
        }
    });
    return m_AccessModeCacheability;
}

}  // namespace GenApi_3_0_ORVANE
