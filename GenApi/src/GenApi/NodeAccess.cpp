// How a node's access mode is computed.

#include "GenApi/impl/Node.h"

namespace GenApi_3_0_ORVANE {

EAccessMode CNodeImpl::InternalGetAccessMode(IBase* value) {
    return CachedAccessMode([this, value] { return ComputeAccessMode(value); });
}

EAccessMode CNodeImpl::ComputeAccessMode(IBase* value) {
    const EAccessMode mode = value == nullptr ? RW : value->GetAccessMode();
    return LowerByReferences(LowerByReadingChildren(mode));
}

EAccessMode CNodeImpl::LowerByReadingChildren(EAccessMode mode) const {
    for (INodePrivate* const child : m_ReadingChildren) {
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
    const auto forbids = [](const CBooleanPolyRef& reference) {
        return reference.IsPointer() && reference.GetCachingMode() == NoCache;
    };
    EYesNo cacheable =
        forbids(m_IsImplemented) || forbids(m_IsAvailable) || forbids(m_IsLocked) ? No : Yes;
    // Known before the children are asked, so that a cycle of them ends.
    m_AccessModeCacheability = cacheable;
    for (INodePrivate* const child : m_ReadingChildren) {
        if (child->IsAccessModeCacheable() == No) {
            cacheable = No;
        }
    }
    m_AccessModeCacheability = cacheable;
    GCLOGINFO(m_pAccessLog, "InternalIsAccessModeCacheable = '%s'",
              cacheable == Yes ? "Yes" : "No");
    return cacheable;
}

}  // namespace GenApi_3_0_ORVANE
