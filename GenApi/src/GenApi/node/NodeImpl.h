#pragma once
/// What every node of the graph is made of.

#include <bitset>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Base/Log.h"
#include "core/CallState.h"
#include "core/INodeMapPrivate.h"
#include "core/INodePrivate.h"
#include "core/NodeExceptions.h"
#include "core/NodeFault.h"
#include "core/PolyReference.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLogIndent;

/// Base of every node class: common properties, access mode with its cache, dependency lists,
/// callbacks. Nodes point to one another plainly; the map owns them all.
///
/// Call the Internal... operations with the map's lock held. The templates around the concrete
/// class add the public ones.
class CNodeImpl : virtual public INodePrivate, virtual public ISelector, virtual public IUserData {
public:
    using NodeList = std::vector<INodePrivate*>;

    CNodeImpl();
    ~CNodeImpl() override;
    CNodeImpl(const CNodeImpl&) = delete;
    CNodeImpl& operator=(const CNodeImpl&) = delete;

    void Initialize(INodeMapPrivate* nodeMap, CNodeData::ENodeType_t type, NodeID_t id) override;
    CNodeData::ENodeType_t GetNodeType() override { return m_NodeType; }
    NodeID_t GetNodeID() override { return m_NodeID; }
    void FinalConstruct() override;
    void SetProperty(const CProperty& property) override;
    void SetClosure(NodeIDSpan dependents, NodeIDSpan terminals) override;
    using INodePrivate::GetProperty;
    bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                     CNodeData::PropertyVector_t& properties) override;
    void SetInvalid(ESetInvalidMode mode) override;
    void CollectCallbacksToFire(CallbackList& list, bool allDependents) override;
    bool IsTerminalNode() override;
    NodeIDSpan GetAllTerminalNodes() override { return m_TerminalNodes; }
    bool Poll(int64_t elapsedTime) override;
    EAccessMode InternalGetAccessMode() override { return InternalGetAccessMode(nullptr); }
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIBase; }
    const gcstring& InternalGetName() override { return m_Name; }
    ENameSpace InternalGetNameSpace() override { return m_NameSpace; }
    EVisibility InternalGetVisibility() override {
        return Combine(m_Visibility, m_ImposedVisibility);
    }
    ECachingMode InternalGetCachingMode() override;
    ECachingMode InternalGetLimitsCachingMode() override;
    int64_t InternalGetPollingTime() override { return m_PollingTime; }
    EYesNo InternalIsAccessModeCacheable() override;
    void InternalCheckError() override;
    bool InternalIsValueCacheValid() override { return m_ValueCacheValid; }
    void ListChildren(NodeList& list) const override { AppendChildren(list, AnyRole); }
    void SetInvisibleIfHigher(EVisibility /*visibility*/) override {}

    // For the templates and frames, with the lock held.
    INodeMapPrivate& GetMap() const;
    /// A link property that names the node.
    static CProperty MakeLink(INodeDataMap& nodeDataMap, CPropertyID id, INodePrivate& target);

    CCallState& GetCallState() const {
        OV_ASSERT(m_pNodeMap != NULL);  // NOLINT(modernize-use-nullptr): the text
        return *m_pCallState;
    }
    CLock& GetLock() const { return GetCallState().GetLock(); }
    /// Returns the access mode with what a client imposed on it. The cache holds the mode without
    /// that.
    EAccessMode GetAccessModeInside() {
        if (m_AccessModeCache == _UndefinedAccesMode ||
            m_AccessModeCache == _CycleDetectAccesMode) {
            return FindAccessMode();
        }
        const EAccessMode mode = Combine(m_AccessModeCache, m_ImposedAccessMode);
        GCLOGINFO(m_pAccessLog, "GetAccessMode = '%s' (from cache)",
                  EAccessModeClass::ToString(mode));
        return mode;
    }
    EAccessMode GetImposedAccessMode() const { return m_ImposedAccessMode; }
    /// Returns what keeps the node from being used: its own fault, or that of a node that is a
    /// part of it; null if nothing does. It never changes once the description is loaded.
    virtual const NodeFault* FindFault() const { return m_pFault.get(); }
    /// Throws the node's own fault, if it has one.
    void RequireSound() {
        if (m_pFault != nullptr) [[unlikely]] {
            RaiseFault(*m_pFault);
        }
    }
    /// Throws what FindFault finds. For callers that the access mode refuses, so that they learn
    /// why.
    void RaiseAnyFault();
    /// Writes to the log that a walk over many nodes skips this one.
    void LogPassedBy(const char* reason);
    /// Begins a write that passes on to other nodes.
    void PreSetValue();
    /// Marks that the write succeeded: the invalidation that it causes then spares what it has
    /// just left in the caches.
    void NoteOwnWrite() { m_WasWritten = true; }
    /// Ends the write. The outermost one invalidates the terminal nodes and gathers the callbacks
    /// of everything that depends on them.
    void PostSetValue(CallbackList& callbacks);
    /// Sets invalid the registers that the value comes from, so that the next read is one of the
    /// device.
    void InvalidateSources();

protected:
    /// InvalidateNode for what a client imposes on the node: nothing has changed in the device.
    virtual void InvalidateImposed() = 0;
    /// Drops what is cached below the node's own value, when anything except a write of this node
    /// sets it invalid. A node that names invalidators has to read its sources again.
    virtual void ForgetBeneath();
    /// Whether values come from the device here, so that a search for the sources of a value
    /// ends.
    virtual bool IsRegister() const { return false; }
    void InvalidateCaches();
    void InvalidateDependents();
    /// @param value  the node whose value this one shows, or null
    EAccessMode InternalGetAccessMode(IBase* value);
    /// Returns the cached access mode, or calls `compute` and caches the result if that is
    /// allowed.
    template <class Compute>
    EAccessMode CachedAccessMode(const Compute& compute);
    /// The same computation without the cache, as part of such a `compute`.
    EAccessMode ComputeAccessMode(IBase* value);
    /// The same from the mode of the value and from the children that count.
    EAccessMode ComputeAccessMode(EAccessMode mode, unsigned roles) const;

    gcstring InternalGetQualifiedName();
    gcstring InternalGetDocuURL();
    /// Records a property that the description has of this node.
    void NoteProperty(const CProperty& property);
    bool HoldsProperty(CPropertyID id) const { return m_HeldProperties.test(id); }
    void InternalGetPropertyNames(gcstring_vector& names);
    bool InternalGetProperty(const gcstring& name, gcstring& value, gcstring& attribute);
    gcstring InternalGetDisplayName() const;
    /// A text of the description as a client gets it.
    static gcstring TextOf(std::string_view text) {
        return text.empty() ? gcstring() : gcstring(text.data(), text.size());
    }
    static void InternalGetFeatures(value_vector& list, const std::vector<IValue*>& features);
    void InternalGetChildren(node_vector& list, ELinkType linkType) const;
    CallbackHandleType InternalRegisterCallback(CNodeCallback* callback);
    bool InternalDeregisterCallback(CallbackHandleType handle);
    /// Returns the node's caching mode, combined with those of everything that its value passes
    /// through. Classes with further sources of their value add those.
    virtual ECachingMode ComputeCachingMode();
    /// The same for the limits. Classes whose limits come from other nodes add those.
    virtual ECachingMode ComputeLimitsCachingMode() { return InternalGetCachingMode(); }
    /// The text of a node without a value. Classes with a value replace it.
    virtual gcstring InternalToString(bool verify, bool ignoreCache);
    virtual void InternalFromString(const gcstring& value, bool verify);

    /// How a child takes part in this node's value.
    enum EChildRole : unsigned {
        NoRole = 0,     ///< known, but neither read nor written
        ReadRole = 1,   ///< read to compute this node
        WriteRole = 2,  ///< written when this node is written
        ValueRole = 4,  ///< its value is part of this node's value
        /// read whichever source an index selects
        BesideIndexRole = 8,
        AnyRole = ~0U
    };
    /// A link to another node.
    struct Child {
        INodePrivate* node;
        unsigned roles;
    };

    /// Calls `use` with the children that have one of the roles, once for each link.
    template <class Use>
    void ForEachChild(unsigned roles, const Use& use) const {
        for (const Child& child : m_Children) {
            if (roles == AnyRole || (child.roles & roles) != 0) {
                use(*child.node);
            }
        }
    }
    void AppendChildren(NodeList& list, unsigned roles) const {
        ForEachChild(roles, [&list](INodePrivate& child) { list.push_back(&child); });
    }
    /// Runs a step of taking the description, and keeps the fault that it throws. The first fault
    /// counts.
    template <class Step>
    void KeepFaultOf(const Step& step);
    /// Returns the node that a link property names, after entering it as a child of this one.
    /// @throws NodeFault if there is no live node of that name
    INodePrivate* LinkChild(const CProperty& property, unsigned roles);

    gcstring m_Name;
    // Texts are those of the description, which the map keeps.
    std::string_view m_Extension;
    ENameSpace m_NameSpace = Custom;
    std::string_view m_DisplayName;
    std::string_view m_ToolTip;
    std::string_view m_Description;
    EVisibility m_Visibility = Beginner;
    CBooleanPolyRef m_IsImplemented;
    CBooleanPolyRef m_IsAvailable;
    CBooleanPolyRef m_IsLocked;
    CBooleanPolyRef m_BlockPolling;
    IEnumeration* m_pError = nullptr;
    INode* m_pAlias = nullptr;
    INode* m_pCastAlias = nullptr;
    ECachingMode m_CachingMode = WriteThrough;
    std::vector<IValue*> m_SelectedFeatures;
    std::vector<IValue*> m_SelectingFeatures;
    std::string_view m_EventID;
    EYesNo m_Streamable = No;
    EAccessMode m_ImposedAccessMode = RW;
    EVisibility m_ImposedVisibility = Beginner;
    int64_t m_PollingTime = -1;
    NodeList m_Invalidators;
    std::string_view m_DocuURL;
    EYesNo m_IsDeprecated = No;
    EYesNo m_IsFeature = No;
    EYesNo m_ExposeStatic = Yes;
    UserData_t m_pUserData = nullptr;

    /// In the order of the links.
    std::vector<Child> m_Children;
    NodeIDSpan m_DependingNodes;
    NodeIDSpan m_TerminalNodes;

    ECachingMode m_CachingModeCache = _UndefinedCachingMode;
    ECachingMode m_LimitsCachingModeCache = _UndefinedCachingMode;
    EAccessMode m_AccessModeCache = _UndefinedAccesMode;
    bool m_ValueCacheValid = false;
    bool m_ListOfValidValuesCacheValid = false;
    EYesNo m_AccessModeCacheability = _UndefinedYesNo;
    bool m_KeepCache = false;
    bool m_WasWritten = false;

    void* m_pAccessLog = nullptr;
    void* m_pValueLog = nullptr;
    void* m_pRangeLog = nullptr;
    void* m_pPortLog = nullptr;
    void* m_pCacheLog = nullptr;
    void* m_pPreProcLog = nullptr;
    void* m_pMiscLog = nullptr;

private:
    EAccessMode FindAccessMode();
    EYesNo ComputeAccessModeCacheability();
    EAccessMode LowerByChildren(EAccessMode mode, unsigned roles) const;
    EAccessMode LowerByReferences(EAccessMode mode) const;
    void AppendNodes(node_vector& list, NodeIDSpan nodeIDs) const;
    void CreateLoggers();
    bool IsPollingBlocked();
    /// The field that keeps a property that is no link: calls `use` with it.
    template <class Self, class Use>
    static bool WithField(Self& self, CPropertyID id, const Use& use);
    /// Returns what the node holds of its description, or of one property of it.
    CNodeData::PropertyVector_t GetHeldProperties(INodeDataMap& nodeDataMap,
                                                  const gcstring* name = nullptr);
    INodePrivate& FindLinked(const CProperty& property);
    /// The field that keeps a link: calls `use` with it and with the child's role.
    template <class Self, class Use>
    static bool WithLink(Self& self, CPropertyID id, const Use& use);
    bool IsCommonLink(CPropertyID id) const;
    /// Returns the links of the closure that count as this property; null for any other.
    const NodeIDSpan* FindClosure(CPropertyID id) const;
    /// Appends those entries of a property that the description has.
    void AppendDescribed(INodeDataMap& nodeDataMap, CPropertyID id,
                         CNodeData::PropertyVector_t& properties) const;
    CProperty MakeDescribed(INodeDataMap& nodeDataMap, const CProperty& described) const;
    /// Takes a link into its field, whatever kind of field that is.
    void TakeLink(const CProperty& property, EChildRole role, CBooleanPolyRef& field);
    void TakeLink(const CProperty& property, EChildRole role, IEnumeration*& field);
    void TakeLink(const CProperty& property, EChildRole role, INode*& field);
    void TakeLink(const CProperty& property, EChildRole role, std::vector<IValue*>& field);
    void TakeLink(const CProperty& property, EChildRole role, NodeList& field);
    void SetLinkProperty(const CProperty& property);
    [[noreturn]] void RaiseFault(const NodeFault& fault);
    NodeList GetLinked(CPropertyID id) const;
    const NodeList& GetSources();

    INodeMapPrivate* m_pNodeMap = nullptr;
    CCallState* m_pCallState = nullptr;
    CNodeData::ENodeType_t m_NodeType = CNodeData::_NotImpl_ID;
    NodeID_t m_NodeID;
    std::bitset<CPropertyID::_Undefined_ID> m_HeldProperties;
    int64_t m_ElapsedTime = 0;
    /// The registers that the value comes from, once they have been searched for.
    std::optional<NodeList> m_Sources;
    uint64_t m_LastInvalidation = 0;
    CallbackList m_Callbacks;
    std::unique_ptr<const NodeFault> m_pFault;
};

template <class Step>
void CNodeImpl::KeepFaultOf(const Step& step) {
    try {
        step();
    } catch (NodeFault& fault) {
        if (m_pFault == nullptr) {
            m_pFault = std::make_unique<const NodeFault>(std::move(fault));
        }
    }
}

template <class Compute>
EAccessMode CNodeImpl::CachedAccessMode(const Compute& compute) {
    if (m_AccessModeCache == _CycleDetectAccesMode) {
        // This node is being computed further up the stack.
        m_AccessModeCache = RW;
        GCLOGWARN(m_pAccessLog, "InternalGetAccessMode : ReadCycle detected at = '%s'",
                  m_Name.c_str());
        return RW;
    }
    if (m_AccessModeCache != _UndefinedAccesMode) {
        return m_AccessModeCache;
    }
    m_AccessModeCache = _CycleDetectAccesMode;
    try {
        // What a faulty node would be computed from may be missing.
        const EAccessMode mode = m_pFault == nullptr ? compute() : LowerByReferences(NA);
        m_AccessModeCache = InternalIsAccessModeCacheable() == Yes ? mode : _UndefinedAccesMode;
        return mode;
    } catch (...) {
        m_AccessModeCache = _UndefinedAccesMode;
        throw;
    }
}

}  // namespace GenApi_3_0_ORVANE
