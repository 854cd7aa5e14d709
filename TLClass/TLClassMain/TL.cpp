#include "TLClassMain/TL.h"

#include "TLClassFeature/FeatureControl.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IInterface.h"
#include "TLClassXML/XMLLoadAgency.h"

namespace OVTLClass {

/// An open system module of a producer.
class CTL::CTLOpenAgency : public CAgency {
public:
    explicit CTLOpenAgency(const CGenTLLib& lib) {
        OV_VERIFY(lib.TLOpen(&m_handle), lib);
        Arm([&lib, handle = m_handle] {
            OV_LOG_UNDO_IF_FAILED(CTLOpenAgency, lib.TLClose(handle), lib);
        });
    }
    void* GetHandle() const { return m_handle; }

private:
    void* m_handle = nullptr;
};

CTL::CTL(std::shared_ptr<const CGenTLLib> lib, TL_INFO info)
    : ITL(std::move(lib)), m_info(std::move(info)) {}

CTL::~CTL() = default;

void CTL::DoOpenTL() {
    if (m_open) {
        return;
    }
    CTLOpenAgency opened(GetLib());
    CXMLLoadAgency loaded(GetAnalyzer(), opened.GetHandle());
    auto control = std::make_unique<CFeatureControl>(GetNodeMapRef());
    __DoAcquireTLSpecialInformation(*control);
    SetFeatureControl(std::move(control));
    loaded.Commit();
    opened.Commit();
    m_handle = opened.GetHandle();
    m_open = true;
}

void CTL::DoCloseTL() {
    if (!m_open) {
        return;
    }
    // Before the system: closing it voids the handles of all its modules.
    _ForEachChild<IInterface>([](IInterface& child) { child.DoCloseInterface(); });
    _ClearChildrenList();
    __CloseLostInterfaces();
    SetFeatureControl(nullptr);
    OV_RUN_LOGGED([this] { GetAnalyzer().UnloadXML(); });
    OV_LOG_IF_FAILED(GetLib().TLClose(m_handle), GetLib());
    m_handle = nullptr;
    m_open = false;
}

void CTL::__CloseLostInterfaces() {
    const CAutoLock lock(m_lostLock);
    for (const auto& lost : m_lost) {
        // It may still hold open cameras, whose producer side ends with it.
        OV_RUN_LOGGED([&lost] { lost->DoCloseInterface(); });
    }
    m_lost.clear();
}

CTL::InterfaceList CTL::DoGetInterfaceList() {
    return _GetGcObjectList<IInterface>();
}

CTL::InterfaceList CTL::DoGetLostInterfaceList() {
    const CAutoLock lock(m_lostLock);
    return m_lost;
}

void CTL::__DoAcquireTLSpecialInformation(const IFeatureControl& /*control*/) {}

std::vector<SPECIAL_INFO*> CTL::__DoGetAllInterfaceSpecialInformation(size_t count) {
    return std::vector<SPECIAL_INFO*>(count, nullptr);
}

void CTL::__DoResetTLSpecialInformation() {}

void CTL::__DoAcquireAllInterfaceSpecialInformation(const IFeatureControl& /*control*/,
                                                    size_t /*count*/) {}

void CTL::__DoResetAllInterfaceSpecialInformation() {}

}  // namespace OVTLClass
