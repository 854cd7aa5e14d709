// The device list: updating and reading it, opening and closing cameras. Only an update that
// the caller asks for takes the lock of the library. The search that reading or opening may
// start doesn't: the tables of cameras have locks of their own.

#include "OvIAPI.h"
#include "TLClassSupport/OvException.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

namespace {

void UpdateList(OvSearchMode mode, uint32_t* count, uint32_t timeout) {
    CDeviceManager& manager = CDeviceManager::GetInstance();
    const CAutoLock lock(manager.GetApiLock());
    // Another thread may have closed the library while this call waited for the lock.
    manager.CheckInit();
    manager.GetDeviceInfoFactory().SetSearchMode(mode);
    manager.GetDeviceInfoFactory().UpdateDeviceList(count, timeout);
}

}  // namespace

OV_STATUS OVUpdateDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut) try {
    EnterApi();
    OV_CHECK_POINTER(pnDeviceNum);
    UpdateList(OvSearchMode::LocalNetwork, pnDeviceNum, nTimeOut);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUpdateAllDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut) try {
    EnterApi();
    OV_CHECK_POINTER(pnDeviceNum);
    UpdateList(OvSearchMode::WholeNetwork, pnDeviceNum, nTimeOut);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* pDeviceInfo, size_t* pSize) try {
    CDeviceManager& manager = EnterApi();
    OV_CHECK_POINTER(pSize);
    manager.GetDeviceInfoFactory().GetAllDeviceBaseInfo(pDeviceInfo, pSize, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetDeviceIPInfo(uint32_t nIndex, OV_DEVICE_IP_INFO* pstDeviceIPInfo) try {
    CDeviceManager& manager = EnterApi();
    OV_CHECK_POINTER(pstDeviceIPInfo);
    manager.GetDeviceInfoFactory().GetKnownCameras().GetIPInfo(nIndex, *pstDeviceIPInfo, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVOpenDeviceByIndex(uint32_t nDeviceIndex, OV_DEV_HANDLE* phDevice) try {
    CDeviceManager& manager = EnterApi();
    OV_CHECK_POINTER(phDevice);
    // The short form has no access mode: a program that says nothing means to use the
    // camera.
    *phDevice = manager.GetDeviceInfoFactory().OpenDeviceByIndex(nDeviceIndex, OV_ACCESS_EXCLUSIVE,
                                                                 OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVOpenDevice(const OV_OPEN_PARAM* pOpenParam, OV_DEV_HANDLE* phDevice) try {
    CDeviceManager& manager = EnterApi();
    OV_CHECK_POINTER(pOpenParam);
    OV_CHECK_POINTER(pOpenParam->pszContent);
    OV_CHECK_POINTER(phDevice);
    if (*pOpenParam->pszContent == '\0') {
        OV_RAISE(CInvalidParameterError, "OV_OPEN_PARAM::pszContent's length is 0");
    }
    // An enumeration of C holds any number.
    if (pOpenParam->openMode < OV_OPEN_SN || pOpenParam->openMode > OV_OPEN_USERID) {
        OV_RAISE(CInvalidParameterError, "Error Open Mode");
    }
    if (pOpenParam->accessMode < OV_ACCESS_READONLY ||
        pOpenParam->accessMode > OV_ACCESS_EXCLUSIVE) {
        OV_RAISE(CInvalidParameterError, "Error Access Mode");
    }
    *phDevice = manager.GetDeviceInfoFactory().OpenDevice(*pOpenParam, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVCloseDevice(OV_DEV_HANDLE hDevice) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    CDeviceManager::GetInstance().GetDeviceInfoFactory().CloseDevice(info, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
