#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassFeature/KnownNodes.h"
#include "TLClassFeature/Reading.h"
#include "TLClassSupport/OvLock.h"

namespace OVTLClass {

struct EnginePlace;

/// Feature access over a node map, which outlives it.
class CFeatureControl : public IFeatureControl {
public:
    class CFeatureCallbackHandle;

    explicit CFeatureControl(GenApi_3_0_ORVANE::CNodeMapRef* nodeMap);
    ~CFeatureControl() override;

    std::string DoGetFeatureDisplayName(CFeatureName name) const override;
    bool DoExist(CFeatureName name) const override;
    bool DoIsImplemented(CFeatureName name) const override;
    bool DoIsReadable(CFeatureName name) const override;
    bool DoIsWritable(CFeatureName name) const override;
    FEATURE_INT_RANGE DoGetIntRange(CFeatureName name) const override;
    // As those below, whose name failures give, for callers to whom a refusal is an answer.
    CReading<int64_t> GetInt(CFeatureName name) const;
    CReading<double> GetFloat(CFeatureName name) const;
    CReading<int64_t> GetEnum(CFeatureName name) const;
    CReading<bool> GetBool(CFeatureName name) const;
    CReading<std::string> GetString(CFeatureName name) const;

    int64_t DoGetInt(CFeatureName name) const override;
    int64_t DoReadInt(CFeatureName name) const override;
    void DoSetInt(CFeatureName name, int64_t value) const override;
    FEATURE_FLOAT_RANGE DoGetFloatRange(CFeatureName name) const override;
    double DoGetFloat(CFeatureName name) const override;
    void DoSetFloat(CFeatureName name, double value) const override;
    uint32_t DoGetEnumEntryNums(CFeatureName name) const override;
    void DoGetEnumDescription(CFeatureName name,
                              std::vector<FEATURE_ENUM_ENTRY_INFORMATION>& entries) const override;
    int64_t DoGetEnum(CFeatureName name) const override;
    void DoSetEnum(CFeatureName name, int64_t value) const override;
    int64_t DoGetEnumEntryValue(CFeatureName name, const std::string& entry) const override;
    bool DoGetBool(CFeatureName name) const override;
    void DoSetBool(CFeatureName name, bool value) const override;
    int64_t DoGetMaxStringLength(CFeatureName name) const override;
    std::string DoGetString(CFeatureName name) const override;
    std::string DoReadString(CFeatureName name) const override;
    void DoSetString(CFeatureName name, const std::string& value) const override;
    size_t DoGetBufferLength(CFeatureName name) const override;
    void DoGetBuffer(CFeatureName name, size_t size, uint8_t* buffer) const override;
    void DoSetBuffer(CFeatureName name, size_t size, const uint8_t* buffer) const override;
    void DoSendCommand(CFeatureName name) const override;
    IFeatureCallbackHandle* DoRegisterFeatureCallback(CFeatureName name,
                                                      const IFeatureCallback& callback) override;
    void DoUnregisterFeatureCallback(intptr_t handle) override;
    void DoUnregisterAllFeatureCallback() override;

    // The callback of a handle may be gone: the next two compare addresses only.
    /// Whether that handle is registered here for that feature.
    bool CheckExist(const std::string& name, const void* handle) const;
    /// Whether that handle is registered here for any feature.
    bool CheckExist(const void* handle) const;
    /// Whether the feature is below the category "EventControl".
    bool CheckEventNode(CFeatureName name) const;

private:
    GenApi_3_0_ORVANE::INode* __FindNode(CFeatureName name) const;
    GenApi_3_0_ORVANE::INode& __GetGenAPINode(CFeatureName name) const;
    template <class T>
    T& __GetNodeHandle(CFeatureName name) const;
    /// Calls `read` with the node, for its value.
    template <class T, class Read>
    auto __Read(CFeatureName name, const EnginePlace& place, const Read& read) const
        -> CReading<decltype(read(std::declval<T&>()))>;
    template <class T, class Read>
    auto __ReadDespite(CFeatureName name, const EnginePlace& place, const Read& read) const
        -> CReading<decltype(read(std::declval<T&>()))>;
    std::optional<CRefusal> __FindRefusal(CFeatureName name, GenApi_3_0_ORVANE::EAccessMode mode,
                                          bool hasType, const EnginePlace& place) const;
    using HandleList = std::list<std::unique_ptr<CFeatureCallbackHandle>>;

    void __Keep(HandleList& handles);
    template <class Wanted>
    void __Deregister(const Wanted& isWanted);

    GenApi_3_0_ORVANE::CNodeMapRef* m_nodeMap;
    /// As long as the control, which a module makes anew with its node map.
    mutable CKnownNodes m_known;
    mutable CLock m_callbacksLock{LockRank::FeatureCallbacks};
    HandleList m_callbacks;
};

}  // namespace OVTLClass
