#include "TLClassInterface/Interface.h"

#include "TLClassFeature/FeatureControl.h"
#include "TLClassInfo/FeatureAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/ITL.h"
#include "TLClassSupport/OvException.h"
#include "TLClassXML/XMLLoadAgency.h"

namespace OVTLClass {

/// An open interface module of a producer.
class CInterface::CTLOpenInterfaceAgency : public CAgency {
public:
    CTLOpenInterfaceAgency(const CGenTLLib& lib, void* tl, const std::string& id) {
        OV_VERIFY(lib.TLOpenInterface(tl, id.c_str(), &m_handle), lib);
        Arm([&lib, handle = m_handle] {
            OV_LOG_UNDO_IF_FAILED(CTLOpenInterfaceAgency, lib.IFClose(handle), lib);
        });
    }
    void* GetHandle() const { return m_handle; }

private:
    void* m_handle = nullptr;
};

CInterface::CInterface(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<ITL> tl,
                       void* tlHandle, const IF_INFO& info)
    : IInterface(std::move(lib)), m_tl(std::move(tl)), m_tlHandle(tlHandle) {
    CInterface::DoUpdateInterfaceInformation(info);
}

CInterface::~CInterface() = default;

IF_INFO CInterface::DoGetInterfaceInfo() {
    const CAutoLock lock(m_infoLock);
    return m_info;
}

void CInterface::DoUpdateInterfaceInformation(const IF_INFO& info) {
    const CAutoLock lock(m_infoLock);
    m_info = info;
    // Borrowed by the record for the length of an update.
    m_info.pSpecialInfo = nullptr;
    m_info.pCommonInfo = nullptr;
}

CInterface::DeviceList CInterface::DoGetDeviceList() {
    return _GetGcObjectList<IDevice>();
}

CInterface::DeviceList CInterface::DoGetLostOpenDeviceList() {
    const CAutoLock lock(m_lostLock);
    return m_lostOpen;
}

void CInterface::__SetLostOpenDevices(DeviceList lost) {
    const CAutoLock lock(m_lostLock);
    m_lostOpen.swap(lost);
}

void CInterface::DoOpenInterface() {
    if (m_open) {
        return;
    }
    CTLOpenInterfaceAgency opened(GetLib(), m_tlHandle, DoGetInterfaceInfo().id.value);
    CXMLLoadAgency loaded(GetAnalyzer(), opened.GetHandle());
    auto control = std::make_unique<CFeatureControl>(GetNodeMapRef());
    // Read once: an adapter's description doesn't change while it is open.
    m_commonInfo = CCommonFeatureAgency::GetInterfaceFeatureBySelf(*control);
    __DoAcquireInterfaceSpecialInformation(*control);
    SetFeatureControl(std::move(control));
    loaded.Commit();
    opened.Commit();
    m_handle = opened.GetHandle();
    m_open = true;
}

void CInterface::DoCloseInterface() {
    if (!m_open) {
        return;
    }
    // A lost device that nobody closed would hold this interface, and itself
    // be held by it, for ever.
    _ForEachChild<IDevice>([](IDevice& device) { device.DoCloseDevice(); });
    DeviceList lost;
    OV_RUN_LOGGED([&] { lost = DoGetLostOpenDeviceList(); });
    for (const auto& device : lost) {
        OV_RUN_LOGGED([&device] { device->DoCloseDevice(); });
    }
    _ClearChildrenList();
    // Emptied after the close, which uses the list.
    __SetLostOpenDevices({});
    OV_RUN_LOGGED([this] { __DoResetInterfaceSpecialInformation(); });
    OV_RUN_LOGGED([this] { __DoResetAllDeviceSpecialInformation(); });
    SetFeatureControl(nullptr);
    OV_RUN_LOGGED([this] { GetAnalyzer().UnloadXML(); });
    m_commonInfo = {};
    OV_LOG_IF_FAILED(GetLib().IFClose(m_handle), GetLib());
    m_handle = nullptr;
    m_open = false;
}

void CInterface::SetInterfaceLostStatus() {
    // Its producer has forgotten the interface, so that a failure says nothing.
    GetLib().IFClose(m_handle);
    m_handle = nullptr;
}

std::shared_ptr<IInterface> CInterface::GetSelf() {
    auto self = std::dynamic_pointer_cast<IInterface>(m_tl->GetChild(this));
    if (!self) {
        // A search on another thread may lose the interface at any time.
        OV_RAISE(CUnexpectedError, "The system doesn't list the interface any more");
    }
    return self;
}

void CInterface::__DoAcquireInterfaceSpecialInformation(const IFeatureControl& /*control*/) {}

void CInterface::__DoResetInterfaceSpecialInformation() {}

void CInterface::__DoAcquireAllDeviceSpecialInformation(const IFeatureControl& /*control*/,
                                                        size_t /*count*/) {}

void CInterface::__DoResetAllDeviceSpecialInformation() {}

std::vector<SPECIAL_INFO*> CInterface::__DoGetAllDeviceSpecialInformation(size_t count) {
    return std::vector<SPECIAL_INFO*>(count, nullptr);
}

}  // namespace OVTLClass
