#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "GenApi/IDestroy.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/Version.h"
#include "core/CallState.h"
#include "core/INodeDescriptions.h"

namespace GenApi_3_0_ORVANE {

/// Finds nodes by name, in both name spaces.
class string2node_t {
public:
    /// Makes a table without nodes.
    string2node_t();

    /// Makes room for that many nodes.
    void Reserve(size_t count);

    /// Enters a node, which keeps its name and outlives the table. A second node of one name and
    /// space is an assertion.
    void Insert(INodePrivate* node);
    /// Returns the node of that name and space; null if there is none.
    INodePrivate* Find(std::string_view name, ENameSpace nameSpace) const;
    /// Returns the nodes in the order in which they were entered.
    const std::vector<INodePrivate*>& GetAll() const { return m_All; }

private:
    struct Spaces {
        INodePrivate* custom = nullptr;
        INodePrivate* standard = nullptr;
    };
    struct Hash {
        size_t operator()(std::string_view name) const;
    };

    /// The names are the nodes' own.
    std::unordered_map<std::string_view, Spaces, Hash> m_Spaces;
    std::vector<INodePrivate*> m_All;
};

/// Owns the nodes of one description, their one lock, the counter of nested writes and the entry
/// point of the call that a client is in.
class CNodeMap : public virtual INodeMapPrivate,
                 public IDeviceInfo,
                 public IDestroy,
                 public IUserData {
public:
    /// Makes a map without nodes.
    /// @param deviceName  part of the names of log categories
    /// @param lock        shared with other maps, and outlives them; null for a lock of its own
    explicit CNodeMap(const gcstring& deviceName, CLock* lock = nullptr);
    /// Destroys the nodes.
    ~CNodeMap() override;
    CNodeMap(const CNodeMap&) = delete;
    CNodeMap& operator=(const CNodeMap&) = delete;

    /// @name INodeMap
    /// @{
    void GetNodes(node_vector& nodes) override;
    INode* GetNode(const gcstring& name) override;
    void InvalidateNodes() override;
    bool Connect(IPort* port, const gcstring& name) override;
    bool Connect(IPort* port) override { return Connect(port, "Device"); }
    gcstring GetDeviceName() override { return m_DeviceName; }
    void Poll(int64_t elapsedTime) override;
    CLock& GetLock() override { return m_CallState.GetLock(); }
    uint64_t GetNumNodes() override { return Names().GetAll().size(); }
    bool ParseSwissKnifes(gcstring_vector* errorList) override;
    /// @}

    /// @name INodeMapPrivate, for the factory and the nodes
    /// @{
    void RegisterNode(INodePrivate* node, CNodeData::ENodeType_t nodeType, NodeID_t id) override;
    void FinalConstruct() override;
    void SetNumNodes(size_t count) override { m_Node2NodeID.resize(count, nullptr); }
    INodePrivate* GetNodeByID(NodeID_t id) override;
    const std::vector<INodePrivate*>& GetParents(NodeID_t id) override;
    const INodeDescriptions* GetDescriptions() const override { return m_Descriptions.get(); }
    void SetProperty(const CProperty& property) override;
    bool GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                     CNodeData::PropertyVector_t& properties) override;
    Counter& GetBathometer() override { return m_CallState.GetBathometer(); }
    void SetEntryPoint(EMethod method, INodePrivate* node, bool ignoreCache) override {
        m_CallState.SetEntryPoint(method, node, ignoreCache);
    }
    void ResetEntryPoint() override { m_CallState.ResetEntryPoint(); }
    gcstring GetEntryPoint() override { return m_CallState.GetEntryPoint(); }
    bool IsLoggingEnabled() override { return m_IsLoggingEnabled; }
    bool IsDeviceLoggingEnabled() override { return m_IsDeviceLoggingEnabled; }
    CCallState& GetCallState() override { return m_CallState; }
    /// @}

    /// @name IDeviceInfo
    /// @{
    gcstring GetModelName() override { return m_ModelName; }
    gcstring GetVendorName() override { return m_VendorName; }
    gcstring GetToolTip() override { return m_ToolTip; }
    gcstring GetStandardNameSpace() override;
    void GetGenApiVersion(Version_t& version, uint16_t& build) override;
    void GetSchemaVersion(Version_t& version) override { version = m_SchemaVersion; }
    void GetDeviceVersion(Version_t& version) override { version = m_DeviceVersion; }
    gcstring GetProductGuid() override { return m_ProductGuid; }
    gcstring GetProductVersionGuid() override { return m_VersionGuid; }
    /// @}

    /// Replaces the list with the versions of the schema that a description may follow.
    void GetSupportedSchemaVersions(gcstring_vector& list) { list = m_SupportedSchemaVersions; }
    /// The same without a map.
    static void ListSupportedSchemaVersions(gcstring_vector& list);

    /// Keeps what the nodes are made of, which has their texts and links.
    void SetDescriptions(std::shared_ptr<const INodeDescriptions> descriptions) {
        m_Descriptions = std::move(descriptions);
    }

    /// Deletes the map.
    void Destroy() override;
    /// @name IUserData
    /// @{
    UserData_t GetUserData() override;
    UserData_t SetUserData(UserData_t data) override;
    /// @}

private:
    /// Calls `use` with the field that keeps a property; false if there is none.
    template <class Self, class Use>
    static bool WithField(Self& self, CPropertyID id, const Use& use);
    /// @throws LogicalErrorException before FinalConstruct
    const string2node_t& Names() const;
    std::vector<std::vector<INodePrivate*>> FindParents() const;

    gcstring m_ModelName;
    gcstring m_VendorName;
    gcstring m_ToolTip;
    EStandardNameSpace m_StandardNameSpace = _UndefinedStandardNameSpace;
    Version_t m_SchemaVersion;
    Version_t m_DeviceVersion;
    gcstring m_ProductGuid;
    gcstring m_VersionGuid;
    gcstring_vector m_SupportedSchemaVersions;
    gcstring m_DeviceName;
    gcstring m_NodeName;
    std::vector<INodePrivate*> m_Node2NodeID;
    std::unique_ptr<string2node_t> m_pNames;
    std::vector<INodePrivate*> m_PollingList;
    /// By identifier; empty until somebody asks.
    std::vector<std::vector<INodePrivate*>> m_Parents;
    bool m_IsLoggingEnabled = true;
    bool m_IsDeviceLoggingEnabled = true;
    CLock m_OwnLock;
    CCallState m_CallState;
    UserData_t m_pUserData = nullptr;
    std::shared_ptr<const INodeDescriptions> m_Descriptions;
};

}  // namespace GenApi_3_0_ORVANE
