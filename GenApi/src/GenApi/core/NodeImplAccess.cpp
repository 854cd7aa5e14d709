// How a node's access mode is computed.

#include "core/EntryMethodFinalizer.h"
#include "core/NestingScope.h"
#include "core/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

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

EAccessMode CNodeImpl::ComputeAccessMode(IBase* value) {
    const EAccessMode mode = value == nullptr ? RW : value->GetAccessMode();
    return ComputeAccessMode(mode, m_ReadingChildren);
}

EAccessMode CNodeImpl::ComputeAccessMode(EAccessMode mode, const NodeList& readingChildren) const {
    return LowerByReferences(LowerByChildren(mode, readingChildren));
}

EAccessMode CNodeImpl::LowerByChildren(EAccessMode mode, const NodeList& readingChildren) {
    for (INodePrivate* const child : readingChildren) {
        const EAccessMode childMode = child->GetAccessMode();
        if (childMode == NI) {
            return NI;
        }
        if (childMode == NA) {
            mode = mode == NI ? NI : NA;
        }
    }
    return mode;
}

EAccessMode CNodeImpl::LowerByReferences(EAccessMode mode) const {
    if (mode != NI && m_IsImplemented.IsInitialized()) {
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
        if (!m_IsLocked.IsReadable()) {
            return NA;
        }
        if (m_IsLocked.GetValue()) {
            return mode == WO ? NA : RO;
        }
    }
    return mode;
}

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
    for (INodePrivate* const child : m_ReadingChildren) {
        if (child->IsAccessModeCacheable() == No) {
            m_AccessModeCacheability = No;
        }
    }
    return m_AccessModeCacheability;
}

}  // namespace GenApi_3_0_ORVANE
