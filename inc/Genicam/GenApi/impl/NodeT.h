#pragma once

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Adds INode to a node class: each operation takes the map's lock and runs its internal form.
template <class Base>
class NodeT : public Base {
public:
    gcstring GetName(bool fullQualified = false) override {
        return Locked(
            [&] { return fullQualified ? Base::InternalGetQualifiedName() : Base::m_Name; });
    }
    ENameSpace GetNameSpace() override {
        return Locked([&] { return this->InternalGetNameSpace(); });
    }
    EVisibility GetVisibility() override {
        return Locked([&] { return this->InternalGetVisibility(); });
    }
    void InvalidateNode() override {
        InvalidateAndFire([&] { Base::InvalidateSources(); });
    }
    bool IsCachable() override {
        return Locked([&] { return this->InternalGetCachingMode() != NoCache; });
    }
    EYesNo IsAccessModeCacheable() override {
        return Locked([&] { return this->InternalIsAccessModeCacheable(); });
    }
    ECachingMode GetCachingMode() override {
        return Locked([&] { return this->InternalGetCachingMode(); });
    }
    int64_t GetPollingTime() override {
        return Locked([&] { return this->InternalGetPollingTime(); });
    }
    gcstring GetToolTip() override {
        return Locked([&] { return Base::TextOf(Base::m_ToolTip); });
    }
    gcstring GetDescription() override {
        return Locked([&] { return Base::TextOf(Base::m_Description); });
    }
    gcstring GetDisplayName() override {
        return Locked([&] { return Base::InternalGetDisplayName(); });
    }
    gcstring GetDeviceName() override {
        return Locked([&] { return Base::GetMap().GetDeviceName(); });
    }
    void GetChildren(node_vector& list, ELinkType linkType) override {
        Locked([&] { Base::InternalGetChildren(list, linkType); });
    }
    void GetParents(node_vector& list) override {
        Locked([&] { Base::InternalGetChildren(list, ParentNodes); });
    }
    CallbackHandleType RegisterCallback(CNodeCallback* callback) override {
        return Locked([&] { return Base::InternalRegisterCallback(callback); });
    }
    bool DeregisterCallback(CallbackHandleType handle) override {
        return Locked([&] { return Base::InternalDeregisterCallback(handle); });
    }
    INodeMap* GetNodeMap() override { return &Base::GetMap(); }
    gcstring GetEventID() override {
        return Locked([&] { return Base::TextOf(Base::m_EventID); });
    }
    bool IsStreamable() override {
        return Locked([&] { return Base::m_Streamable == Yes; });
    }
    void GetPropertyNames(gcstring_vector& names) override {
        Locked([&] { Base::InternalGetPropertyNames(names); });
    }
    using Base::GetProperty;
    bool GetProperty(const gcstring& name, gcstring& value, gcstring& attribute) override {
        return Locked([&] { return Base::InternalGetProperty(name, value, attribute); });
    }
    void ImposeAccessMode(EAccessMode mode) override {
        Locked([&] { Base::m_ImposedAccessMode = mode; });
        InvalidateImposed();
    }
    void ImposeVisibility(EVisibility visibility) override {
        Locked([&] { Base::m_ImposedVisibility = visibility; });
        InvalidateImposed();
    }
    INode* GetAlias() override {
        return Locked([&] { return Base::m_pAlias; });
    }
    INode* GetCastAlias() override {
        return Locked([&] { return Base::m_pCastAlias; });
    }
    gcstring GetDocuURL() override {
        return Locked([&] { return Base::InternalGetDocuURL(); });
    }
    bool IsDeprecated() override {
        return Locked([&] { return Base::m_IsDeprecated == Yes; });
    }
    EInterfaceType GetPrincipalInterfaceType() override {
        return Locked([&] { return this->InternalGetPrincipalInterfaceType(); });
    }
    bool IsFeature() override {
        return Locked([&] { return Base::m_IsFeature == Yes; });
    }

    void SetProperty(const CProperty& property) override {
        Base::KeepFaultOf([&] { Base::SetProperty(property); });
        Base::NoteProperty(property);
    }
    void FinalConstruct() override {
        Base::KeepFaultOf([&] { Base::FinalConstruct(); });
    }

    bool IsSelector() override {
        return Locked([&] { return !Base::m_SelectedFeatures.empty(); });
    }
    void GetSelectedFeatures(value_vector& list) override {
        Locked([&] { Base::InternalGetFeatures(list, Base::m_SelectedFeatures); });
    }
    void GetSelectingFeatures(value_vector& list) override {
        Locked([&] { Base::InternalGetFeatures(list, Base::m_SelectingFeatures); });
    }
    UserData_t GetUserData() override {
        return Locked([&] { return Base::m_pUserData; });
    }
    UserData_t SetUserData(UserData_t data) override {
        return Locked([&] { return std::exchange(Base::m_pUserData, data); });
    }

protected:
    /// Drops what followed from the access mode or visibility before. The registers are left
    /// alone: nothing has changed in the device.
    void InvalidateImposed() override {
        InvalidateAndFire([] {});
    }

private:
    template <class Further>
    void InvalidateAndFire(const Further& invalidateFurther) {
        CallbackList callbacks;
        {
            const AutoLock lock(Base::GetLock());
            Base::SetInvalid(simAll);
            invalidateFurther();
            Base::CollectCallbacksToFire(callbacks, true);
            SortCallbacks(callbacks);
            FireCallbacks(callbacks, cbPostInsideLock);
        }
        FireCallbacks(callbacks, cbPostOutsideLock);
    }
    template <class Action>
    auto Locked(const Action& action) {
        const AutoLock lock(Base::GetLock());
        return action();
    }
};

}  // namespace GenApi_3_0_ORVANE
