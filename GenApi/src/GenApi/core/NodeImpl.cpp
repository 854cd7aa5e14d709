// What every node does whatever its kind: writes and their consequences, invalidation, polling,
// caching modes, callbacks. Taking and returning the description is in NodeImplProperties.cpp,
// the access mode in NodeImplAccess.cpp.

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

/// Another thread may be about to run one of the callbacks outside the lock. Taking the callback
/// away leaves its destruction to that call.
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
    OV_ASSERT(m_pNodeMap != NULL);  // NOLINT(modernize-use-nullptr): the text
    return *m_pNodeMap;
}

void CNodeImpl::FinalConstruct() {
    m_DeviceName = GetMap().GetDeviceName();
    if (GetMap().IsLoggingEnabled()) {
        CreateLoggers();
    }
    // Names with an underscore are the parser's: nodes that it made of expressions and constants
    // inside a formula. Clients ask for value children to show them to users, who never see
    // those.
    m_ValueChildren.erase(std::remove_if(m_ValueChildren.begin(), m_ValueChildren.end(),
                                         [](INodePrivate* child) {
                                             return StartsWith(child->InternalGetName(), "_");
                                         }),
                          m_ValueChildren.end());
}

/// A category for each subject of each node, so that a user can follow one register without the
/// noise of all others. Without a logging library all of them are null, and each line costs one
/// test.
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

/// The text and the type are those that the description's fault was found with. The macros add
/// the node and the call, which weren't known then.
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
    for (INodePrivate* const dependent : m_DependingNodes) {
        dependent->SetInvalid(simOnlyMe);
    }
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
        for (const NodeList* const children : {&node.m_ValueChildren, &node.m_WritingChildren}) {
            std::copy_if(children->begin(), children->end(), std::back_inserter(open),
                         [&found](INodePrivate* child) { return found.insert(child).second; });
        }
    }
    return *m_Sources;
}

/// The list may name a callback several times; SortCallbacks leaves each once.
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

/// The mode follows from links and from what the description says, neither of which changes, so
/// it is computed once. It is asked in every read.
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

/// Formulas may use the limits of a node as variables. These may come from other nodes than the
/// value, with other caching modes.
ECachingMode CNodeImpl::InternalGetLimitsCachingMode() {
    if (m_LimitsCachingModeCache == _UndefinedCachingMode) {
        const NestingScope nesting(*this);
        m_LimitsCachingModeCache = ComputeLimitsCachingMode();
    }
    return m_LimitsCachingModeCache;
}

/// Nodes that are only read for this one, for its access mode for example, don't count here: when
/// they change, they set this node invalid.
ECachingMode CNodeImpl::ComputeCachingMode() {
    ECachingMode mode = m_CachingMode;
    for (INodePrivate* const child : m_WritingChildren) {
        mode = Combine(mode, child->GetCachingMode());
    }
    return mode;
}

/// Devices report a rejected value by an error register rather than by failing the write. A
/// verified access looks there, so that the client gets an exception with the device's own words.
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

/// The name is better than nothing to show to a user.
gcstring CNodeImpl::InternalGetDisplayName() const {
    return m_DisplayName.empty() ? m_Name : m_DisplayName;
}

/// A client's view of the graph: the converters' inner formulas are nodes of ours, and left out
/// where values are listed.
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

/// The handle is the address of the callback, so that whoever registered it can find it again
/// without a table.
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

/// For nodes without a value of their own, an event for example.
gcstring CNodeImpl::InternalToString(bool /*verify*/, bool /*ignoreCache*/) {
    return m_Name;
}

void CNodeImpl::InternalFromString(const gcstring& value, bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE("NodeImpl %s can't set value from string : %s. Use derived class!",
                                 m_Name.c_str(), value.c_str());
}

}  // namespace GenApi_3_0_ORVANE
