#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassSupport/OvLock.h"

namespace OVTLClass {

/// Feature access over a node map, which outlives it.
class CFeatureControl : public IFeatureControl {
public:
    class CFeatureCallbackHandle;

    explicit CFeatureControl(GenApi_3_0_ORVANE::CNodeMapRef* nodeMap);
    ~CFeatureControl() override;

    std::string DoGetFeatureDisplayName(const std::string& name) const override;
    bool DoExist(const std::string& name) const override;
    bool DoIsImplemented(const std::string& name) const override;
    bool DoIsReadable(const std::string& name) const override;
    bool DoIsWritable(const std::string& name) const override;
    FEATURE_INT_RANGE DoGetIntRange(const std::string& name) const override;
    int64_t DoGetInt(const std::string& name) const override;
    int64_t DoReadInt(const std::string& name) const override;
    void DoSetInt(const std::string& name, int64_t value) const override;
    FEATURE_FLOAT_RANGE DoGetFloatRange(const std::string& name) const override;
    double DoGetFloat(const std::string& name) const override;
    void DoSetFloat(const std::string& name, double value) const override;
    uint32_t DoGetEnumEntryNums(const std::string& name) const override;
    void DoGetEnumDescription(const std::string& name,
                              std::vector<FEATURE_ENUM_ENTRY_INFORMATION>& entries) const override;
    int64_t DoGetEnum(const std::string& name) const override;
    void DoSetEnum(const std::string& name, int64_t value) const override;
    int64_t DoGetEnumEntryValue(const std::string& name, const std::string& entry) const override;
    bool DoGetBool(const std::string& name) const override;
    void DoSetBool(const std::string& name, bool value) const override;
    int64_t DoGetMaxStringLength(const std::string& name) const override;
    std::string DoGetString(const std::string& name) const override;
    std::string DoReadString(const std::string& name) const override;
    void DoSetString(const std::string& name, const std::string& value) const override;
    size_t DoGetBufferLength(const std::string& name) const override;
    void DoGetBuffer(const std::string& name, size_t size, uint8_t* buffer) const override;
    void DoSetBuffer(const std::string& name, size_t size, const uint8_t* buffer) const override;
    void DoSendCommand(const std::string& name) const override;
    IFeatureCallbackHandle* DoRegisterFeatureCallback(const std::string& name,
                                                      const IFeatureCallback& callback) override;
    void DoUnregisterFeatureCallback(intptr_t handle) override;
    void DoUnregisterAllFeatureCallback() override;

    // The callback of a handle may be gone: the next two compare addresses only.
    /// Whether that handle is registered here for that feature.
    bool CheckExist(const std::string& name, const void* handle) const;
    /// Whether that handle is registered here for any feature.
    bool CheckExist(const void* handle) const;
    /// Whether the feature is below the category "EventControl".
    bool CheckEventNode(const std::string& name) const;

private:
    GenApi_3_0_ORVANE::INode* __FindNode(const std::string& name) const;
    GenApi_3_0_ORVANE::INode& __GetGenAPINode(const std::string& name) const;
    template <class T>
    T& __GetNodeHandle(const std::string& name) const;
    using HandleList = std::list<std::unique_ptr<CFeatureCallbackHandle>>;

    void __Keep(HandleList& handles);
    template <class Wanted>
    void __Deregister(const Wanted& isWanted);

    GenApi_3_0_ORVANE::CNodeMapRef* m_nodeMap;
    mutable CLock m_callbacksLock{LockRank::FeatureCallbacks};
    HandleList m_callbacks;
};

}  // namespace OVTLClass
