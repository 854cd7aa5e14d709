#include "core/NodeImpl.h"

#include <algorithm>
#include <limits>
#include <string>
#include <unordered_set>
#include <utility>

#include "GenApi/NodeCallback.h"
#include "core/NestingScope.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;

namespace {

bool StartsWith(const gcstring& text, const char* begin) {
    return text.find(begin) == 0;
}

}  // namespace

CNodeImpl::CNodeImpl() = default;

CNodeImpl::~CNodeImpl() {
    for (const auto& callback : m_Callbacks) {
        callback->TakeAway();
    }
}

void CNodeImpl::Initialize(INodeMapPrivate* nodeMap, CNodeData::ENodeType_t type, NodeID_t id) {
    m_pNodeMap = nodeMap;
    m_pCallState = nodeMap == nullptr ? nullptr : &nodeMap->GetCallState();
    m_NodeType = type;
    m_NodeID = id;
}

INodeMapPrivate& CNodeImpl::GetMap() const {
    OV_ASSERT(m_pNodeMap != NULL);  // NOLINT(modernize-use-nullptr): known text
    return *m_pNodeMap;
}

void CNodeImpl::FinalConstruct() {
    m_DeviceName = GetMap().GetDeviceName();
    if (GetMap().IsLoggingEnabled()) {
        CreateLoggers();
    }
    m_ValueChildren.erase(std::remove_if(m_ValueChildren.begin(), m_ValueChildren.end(),
                                         [](INodePrivate* child) {
                                             return StartsWith(child->InternalGetName(), "_");
                                         }),
                          m_ValueChildren.end());
}

void CNodeImpl::CreateLoggers() {
    const auto logger = [this](const char* category) {
        return CLog::GetLogger(gcstring("GenApi.") + m_DeviceName + category + m_Name);
    };
    m_pAccessLog = logger(".Access.");
    m_pValueLog = logger(".Value.");
    m_pRangeLog = logger(".Range.");
    m_pPortLog = logger(".Port.");
    m_pCacheLog = logger(".Cache.");
    m_pPreProcLog = logger(".PreProc.");
    m_pMiscLog = logger(".Misc.");
}

void CNodeImpl::RaiseFault(const NodeFault& fault) {
    if (fault.GetKind() == NodeFault::Kind::LogicalError) {
        LOGICAL_ERROR_FAULT_NODE("%s", fault.GetText());
    }
    RUNTIME_FAULT_NODE("%s", fault.GetText());
}

void CNodeImpl::RaiseAnyFault() {
    if (const NodeFault* const fault = FindFault()) {
        RaiseFault(*fault);
    }
}

void CNodeImpl::LogPassedBy(const char* reason) {
    GCLOGWARN(m_pMiscLog, "Node '%s' is passed by : %s", m_Name.c_str(), reason);
}

void CNodeImpl::PreSetValue() {
    GetCallState().GetBathometer().Increment();
}

void CNodeImpl::PostSetValue(CallbackList& callbacks) {
    Counter& depth = GetCallState().GetBathometer();
    depth.Decrement();
    if (!depth.IsZero()) {
        return;
    }
    for (INodePrivate* const terminal : m_TerminalNodes) {
        terminal->CollectCallbacksToFire(callbacks, true);
        terminal->SetInvalid(simAll);
    }
    // Without terminal nodes none has come by to use these up.
    m_KeepCache = false;
    m_WasWritten = false;
    GetCallState().EndWrites();
    SortCallbacks(callbacks);
}

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

void CNodeImpl::InvalidateDependents() {
    for (INodePrivate* const dependent : m_DependingNodes) {
        dependent->SetInvalid(simOnlyMe);
    }
}

void CNodeImpl::ForgetBeneath() {
    if (!m_Invalidators.empty()) {
        InvalidateSources();
    }
}

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
        if (node.IsRegister()) {
            if (&node != this) {
                m_Sources->push_back(&node);
            }
            continue;
        }
        for (const NodeList* const children : {&node.m_ValueChildren, &node.m_WritingChildren}) {
            std::copy_if(children->begin(), children->end(), std::back_inserter(open),
                         [&found](INodePrivate* child) { return found.insert(child).second; });
        }
    }
    return *m_Sources;
}

void CNodeImpl::CollectCallbacksToFire(CallbackList& list, bool allDependents) {
    list.insert(list.end(), m_Callbacks.begin(), m_Callbacks.end());
    if (allDependents) {
        for (INodePrivate* const dependent : m_DependingNodes) {
            dependent->CollectCallbacksToFire(list, false);
        }
    }
}

bool CNodeImpl::IsTerminalNode() {
    return std::find(m_TerminalNodes.begin(), m_TerminalNodes.end(), this) != m_TerminalNodes.end();
}

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
    if (IsPollingBlocked()) {
        return false;
    }
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

ECachingMode CNodeImpl::InternalGetCachingMode() {
    if (m_CachingModeCache != _UndefinedCachingMode) {
        GCLOGDEBUG(m_pCacheLog, "GetCachingMode = '%s' (from cache)",
                   ECachingModeClass::ToString(m_CachingModeCache));
        return m_CachingModeCache;
    }
    const NestingScope nesting(*this);
    // Known before the children are asked, so that a cycle of them ends.
    m_CachingModeCache = m_CachingMode;
    try {
        if (m_pFault == nullptr) {
            m_CachingModeCache = ComputeCachingMode();
        }
    } catch (...) {
        m_CachingModeCache = _UndefinedCachingMode;
        throw;
    }
    GCLOGDEBUG(m_pCacheLog, "GetCachingMode = '%s'",
               ECachingModeClass::ToString(m_CachingModeCache));
    return m_CachingModeCache;
}

ECachingMode CNodeImpl::InternalGetLimitsCachingMode() {
    if (m_LimitsCachingModeCache == _UndefinedCachingMode) {
        const NestingScope nesting(*this);
        m_LimitsCachingModeCache = ComputeLimitsCachingMode();
    }
    return m_LimitsCachingModeCache;
}

ECachingMode CNodeImpl::ComputeCachingMode() {
    ECachingMode mode = m_CachingMode;
    for (INodePrivate* const child : m_WritingChildren) {
        mode = Combine(mode, child->GetCachingMode());
    }
    return mode;
}

void CNodeImpl::InternalCheckError() {
    if (m_pError == nullptr) {
        return;
    }
    const int64_t value = m_pError->GetIntValue();
    if (value == 0) {
        return;
    }
    auto* const ptrEnumEntry = dynamic_cast<INode*>(m_pError->GetCurrentEntry());
    if (ptrEnumEntry == nullptr) {
        // The device reports a failure that the description has no words for.
        RUNTIME_EXCEPTION_NODE("ptrEnumEntry.IsValid()");
    }
    RUNTIME_EXCEPTION_NODE("%s : %s", ptrEnumEntry->GetDisplayName().c_str(),
                           ptrEnumEntry->GetToolTip().c_str());
}

gcstring CNodeImpl::InternalGetQualifiedName() {
    return (m_NameSpace == Standard ? "Std::" : "Cust::") + m_Name;
}

gcstring CNodeImpl::InternalGetDisplayName() const {
    return m_DisplayName.empty() ? m_Name : m_DisplayName;
}

void CNodeImpl::InternalGetChildren(node_vector& list, ELinkType linkType) const {
    const auto append = [&list](const NodeList& nodes) {
        for (INodePrivate* const node : nodes) {
            list.push_back(node);
        }
    };
    list.clear();
    switch (linkType) {
        case GenApi_3_0_ORVANE::ParentNodes:
            return append(m_Parents);
        case GenApi_3_0_ORVANE::ReadingChildren:
            return append(m_ReadingChildren);
        case GenApi_3_0_ORVANE::WritingChildren:
            return append(m_WritingChildren);
        case GenApi_3_0_ORVANE::AllChildren:
            return append(m_AllChildren);
        case GenApi_3_0_ORVANE::DependingNodes:
            return append(m_DependingNodes);
        case GenApi_3_0_ORVANE::TerminalNodes:
            return append(m_TerminalNodes);
        case GenApi_3_0_ORVANE::ValueChildren:
            break;
    }
    NodeList merged = m_ValueChildren;
    merged.insert(merged.end(), m_WritingChildren.begin(), m_WritingChildren.end());
    for (INodePrivate* const node : merged) {
        const gcstring& name = node->InternalGetName();
        const bool isInnerKnife = name.find("_ConvertTo") != gcstring::npos ||
                                  name.find("_ConvertFrom") != gcstring::npos;
        if (!isInnerKnife && !list.contains(node)) {
            list.push_back(node);
        }
    }
}

CallbackHandleType CNodeImpl::InternalRegisterCallback(CNodeCallback* callback) {
    if (callback == nullptr) {
        INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : there is no callback to register.",
                                        m_Name.c_str());
    }
    m_Callbacks.push_back(std::make_shared<CCallbackRegistration>(*callback));
    return reinterpret_cast<CallbackHandleType>(callback);
}

bool CNodeImpl::InternalDeregisterCallback(CallbackHandleType handle) {
    const auto* const callback = reinterpret_cast<const CNodeCallback*>(handle);
    const auto found =
        std::find_if(m_Callbacks.begin(), m_Callbacks.end(),
                     [callback](const auto& kept) { return kept->GetCallback() == callback; });
    if (found == m_Callbacks.end()) {
        return false;
    }
    // Out of the list first: the callback's end may reach this node again.
    const std::shared_ptr<CCallbackRegistration> registration = std::move(*found);
    m_Callbacks.erase(found);
    registration->TakeAway();
    return true;
}

gcstring CNodeImpl::InternalToString(bool /*verify*/, bool /*ignoreCache*/) {
    return m_Name;
}

void CNodeImpl::InternalFromString(const gcstring& value, bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE("NodeImpl %s can't set value from string : %s. Use derived class!",
                                 m_Name.c_str(), value.c_str());
}

}  // namespace GenApi_3_0_ORVANE
