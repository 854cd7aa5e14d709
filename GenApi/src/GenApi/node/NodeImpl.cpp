// What every node does whatever its kind: caching modes, links, callbacks. Writes and their
// consequences are in NodeImplInvalidation.cpp, the access mode in NodeImplAccess.cpp, taking and
// returning the description in NodeImplProperties.cpp.

#include "node/NodeImpl.h"

#include <algorithm>
#include <string>
#include <utility>

#include "GenApi/NodeCallback.h"
#include "node/NestingScope.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;

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
    if (GetMap().IsLoggingEnabled()) {
        CreateLoggers();
    }
    // Names with an underscore are the parser's: nodes that it made of expressions and constants
    // inside a formula. Clients ask for value children to show them to users, who never see
    // those.
    for (Child& child : m_Children) {
        if ((child.roles & ValueRole) != 0 && *child.node->InternalGetName().c_str() == '_') {
            child.roles &= ~unsigned{ValueRole};
        }
    }
}

/// A category for each subject of each node, so that a user can follow one register without the
/// noise of all others. Without a logging library all of them are null, and each line costs one
/// test.
void CNodeImpl::CreateLoggers() {
    const gcstring deviceName = GetMap().GetDeviceName();
    const auto logger = [&](const char* category) {
        return CLog::GetLogger(gcstring("GenApi.") + deviceName + category + m_Name);
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
    ForEachChild(WriteRole,
                 [&mode](INodePrivate& child) { mode = Combine(mode, child.GetCachingMode()); });
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
    return m_DisplayName.empty() ? m_Name : TextOf(m_DisplayName);
}

void CNodeImpl::InternalGetFeatures(value_vector& list, const std::vector<IValue*>& features) {
    list.clear();
    for (IValue* const feature : features) {
        list.push_back(feature);
    }
}

void CNodeImpl::AppendNodes(node_vector& list, NodeIDSpan nodeIDs) const {
    GetCallState().ForEachNode(nodeIDs, [&list](INodePrivate& node) { list.push_back(&node); });
}

/// A client's view of the graph: the converters' inner formulas are nodes of ours, and left out
/// where values are listed.
void CNodeImpl::InternalGetChildren(node_vector& list, ELinkType linkType) const {
    const auto append = [&list](const NodeList& nodes) {
        for (INodePrivate* const node : nodes) {
            list.push_back(node);
        }
    };
    const auto childrenOf = [this](unsigned roles) {
        NodeList children;
        AppendChildren(children, roles);
        return children;
    };
    list.clear();
    switch (linkType) {
        case GenApi_3_0_ORVANE::ParentNodes:
            return append(GetMap().GetParents(m_NodeID));
        case GenApi_3_0_ORVANE::ReadingChildren:
            return append(childrenOf(ReadRole));
        case GenApi_3_0_ORVANE::WritingChildren:
            return append(childrenOf(WriteRole));
        case GenApi_3_0_ORVANE::AllChildren:
            return append(childrenOf(AnyRole));
        case GenApi_3_0_ORVANE::DependingNodes:
            return AppendNodes(list, m_DependingNodes);
        case GenApi_3_0_ORVANE::TerminalNodes:
            return AppendNodes(list, m_TerminalNodes);
        case GenApi_3_0_ORVANE::ValueChildren:
            break;
    }
    NodeList merged = childrenOf(ValueRole);
    AppendChildren(merged, WriteRole);
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
