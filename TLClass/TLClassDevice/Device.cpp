#include "TLClassDevice/Device.h"

#include "TLClassFeature/FeatureControl.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IInterface.h"
#include "TLClassStream/DataStreamFactory.h"
#include "TLClassSupport/OvException.h"
#include "TLClassXML/XMLLoadAgency.h"

namespace OVTLClass {

namespace {

constexpr const char* kAlreadyOpen = "The device has already been opened";

}  // namespace

/// An open device module of a producer.
class CDevice::CIFOpenDeviceAgency : public CAgency {
public:
    CIFOpenDeviceAgency(const CGenTLLib& lib, void* interfaceHandle, const std::string& id,
                        int32_t accessMode) {
        OV_VERIFY(lib.IFOpenDevice(interfaceHandle, id.c_str(), accessMode, &m_handle), lib);
        Arm([&lib, handle = m_handle] {
            OV_LOG_UNDO_IF_FAILED(CIFOpenDeviceAgency, lib.DevClose(handle), lib);
        });
    }
    void* GetHandle() const { return m_handle; }

private:
    void* m_handle = nullptr;
};

/// The streams of a device, made and closed.
class CDevice::CUpdateDSListAgency : public CAgency {
public:
    CUpdateDSListAgency(CDevice& device, void* deviceHandle) {
        Arm([&device] { device.__ResetDSList(); });
        device.__UpdateDSList(deviceHandle);
    }
};

CDevice::CDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
                 void* interfaceHandle, const DEV_INFO& info)
    : IDevice(std::move(lib)),
      m_interface(std::move(owner)),
      m_interfaceHandle(interfaceHandle),
      m_remoteXml(GetLib()),
      m_offlineEventLock(LockRank::OfflineChannel, static_cast<IDevice*>(this)),
      m_offlineEvent(GetLib(), static_cast<IDevice*>(this)),
      m_remoteEvent(GetLib()),
      m_deviceLock(LockRank::Device, static_cast<IDevice*>(this)) {
    CDevice::DoUpdateDeviceInformation(info);
}

CDevice::~CDevice() = default;

void CDevice::DoOpenDevice(int32_t accessMode) {
    const CAutoLock lock(m_deviceLock);
    if (!m_open) {
        __Open(accessMode);
    } else if (accessMode != m_accessMode) {
        OV_RAISE(CInvalidAccessError, kAlreadyOpen);
    }
}

void CDevice::DoOpenClosedDevice(int32_t accessMode) {
    const auto checkClosed = [this] {
        if (m_open) {
            OV_RAISE(CInvalidAccessError, kAlreadyOpen);
        }
    };
    // Looked at twice. Another thread may open the camera between the looks.
    // In a callback of this camera, for which a close would wait, it takes no lock.
    checkClosed();
    const CAutoLock lock(m_deviceLock);
    checkClosed();
    __Open(accessMode);
}

void CDevice::__Open(int32_t accessMode) {
    CIFOpenDeviceAgency opened(GetLib(), m_interfaceHandle, DoGetDeviceInfo().id.value, accessMode);
    CXMLLoadAgency localLoaded(GetAnalyzer(), opened.GetHandle());
    auto localControl = std::make_unique<CFeatureControl>(GetNodeMapRef());
    // The port of the camera itself belongs to the device: the producer closes both.
    void* const remotePort = __GetRemotePort(opened.GetHandle());
    CXMLLoadAgency remoteLoaded(m_remoteXml, remotePort);
    auto remoteControl = std::make_unique<CFeatureControl>(m_remoteXml.GetNodeMapRef());

    {
        const CAutoLock listLock(m_interface->GetDeviceListLock());
        // The last step that can fail, so it is kept at once.
        CUpdateDSListAgency(*this, opened.GetHandle()).Commit();
    }
    // Nothing below throws.
    remoteLoaded.Commit();
    localLoaded.Commit();
    opened.Commit();
    SetFeatureControl(std::move(localControl));
    m_remoteFeatureControl = std::move(remoteControl);
    m_accessMode = accessMode;
    m_handle = opened.GetHandle();
    m_remoteHandle = remotePort;
    m_open = true;
}

void* CDevice::__GetRemotePort(void* deviceHandle) const {
    void* port = nullptr;
    OV_VERIFY(GetLib().DevGetPort(deviceHandle, &port), GetLib());
    return port;
}

void CDevice::__UpdateDSList(void* deviceHandle) {
    // A stream owns its device. A search may lose the camera while it is opened.
    const auto self = std::dynamic_pointer_cast<IDevice>(m_interface->GetChild(this));
    if (!self) {
        OV_RAISE(CUnexpectedError, "The interface doesn't list the device any more");
    }
    for (const std::string& id :
         COvInformationAgency::GetAllDataStreamIDOfDevice(GetLib(), deviceHandle)) {
        _AddChild(CDataStreamFactory::CreateDataStream(GetLibPointer(), self, deviceHandle, id));
    }
}

void CDevice::__ResetDSList() {
    _ClearChildrenList();
}

void CDevice::DoCloseDevice() {
    const CAutoLock lock(m_deviceLock);
    if (!m_open) {
        return;
    }
    // From the users to what they use: callbacks first, which use everything below, then
    // streams, which read the remote node map, and maps before their ports.
    GetFeatureControl()->DoUnregisterAllFeatureCallback();
    m_remoteFeatureControl->DoUnregisterAllFeatureCallback();
    m_offlineEvent.UnRegisterAllDeviceOfflineCallback();
    _ForEachChild<IDataStream>([](IDataStream& stream) { stream.DoStopDataStreamAcquisition(); });
    _ForEachChild<IDataStream>([](IDataStream& stream) { stream.DoCloseDataStream(); });
    __ResetDSList();
    // Its thread delivers to the remote node map, which goes next.
    m_remoteEvent.StopGetRemoteDeviceEventThread();
    m_offlineEvent.StopGetDeviceOfflineEventThread();
    m_offlineEvent.UnregisterDeviceOfflineEvent();
    m_offlineEvent.Clear();
    m_remoteFeatureControl.reset();
    OV_RUN_LOGGED([this] { m_remoteXml.UnloadXML(); });
    SetFeatureControl(nullptr);
    OV_RUN_LOGGED([this] { GetAnalyzer().UnloadXML(); });
    // A camera that is gone fails here, and has to be closed all the same.
    OV_LOG_IF_FAILED(GetLib().DevClose(m_handle), GetLib());
    m_handle = nullptr;
    m_remoteHandle = nullptr;
    m_open = false;
}

DEV_INFO CDevice::DoGetDeviceInfo() {
    const CAutoLock lock(m_infoLock);
    return m_info;
}

COMMON_DEVICE_INFO CDevice::DoGetCommonDeviceInfo() {
    const CAutoLock lock(m_infoLock);
    return m_commonInfo;
}

void CDevice::DoUpdateDeviceInformation(const DEV_INFO& info) {
    const CAutoLock lock(m_infoLock);
    m_info.id = info.id;
    m_info.vendor.Renew(info.vendor);
    m_info.model.Renew(info.model);
    m_info.tlType.Renew(info.tlType);
    m_info.displayName.Renew(info.displayName);
    m_info.accessStatus.Renew(info.accessStatus);
    if (info.pCommonInfo != nullptr) {
        __RenewCommonInformation(*info.pCommonInfo);
    }
}

void CDevice::__RenewCommonInformation(const COMMON_DEVICE_INFO& newer) {
    m_commonInfo.serialNumber.Renew(newer.serialNumber);
    m_commonInfo.version.Renew(newer.version);
    // A producer may report the old name long after another was written.
    if (!m_toldUserId.valid || newer.userId.value != m_toldUserId.value) {
        m_commonInfo.userId.Renew(newer.userId);
    }
    m_toldUserId.Renew(newer.userId);
}

void CDevice::DoSetUserId(const std::string& userId) {
    const CAutoLock lock(m_infoLock);
    m_commonInfo.userId = {userId, true};
}

CDevice::DataStreamList CDevice::DoGetDataStreamList() {
    return _GetGcObjectList<IDataStream>();
}

IFeatureControl* CDevice::DoGetRemoteDeviceFeatureControl() {
    return m_remoteFeatureControl.get();
}

GenApi_3_0_ORVANE::CNodeMapRef* CDevice::DoGetRemoteDeviceNodeMapRef() {
    return m_remoteXml.GetNodeMapRef();
}

void CDevice::DoIpConfiguration(int32_t mode, const std::string& ip, const std::string& mask,
                                const std::string& gateway, const std::string& userId) {
    const std::string id = DoGetDeviceInfo().id.value;
    OV_VERIFY(GetLib().IFIpConfiguration(m_interfaceHandle, id.c_str(), mode, ip.c_str(),
                                         mask.c_str(), gateway.c_str(), userId.c_str()),
              GetLib());
}

void CDevice::DoForceIp(const std::string& ip, const std::string& mask,
                        const std::string& gateway) {
    const std::string id = DoGetDeviceInfo().id.value;
    OV_VERIFY(GetLib().IFForceIp(m_interfaceHandle, id.c_str(), ip.c_str(), mask.c_str(),
                                 gateway.c_str()),
              GetLib());
}

void CDevice::DoResetDevice(int32_t mode) {
    const std::string id = DoGetDeviceInfo().id.value;
    OV_VERIFY(GetLib().IFResetDevice(m_interfaceHandle, id.c_str(), mode), GetLib());
}

}  // namespace OVTLClass
