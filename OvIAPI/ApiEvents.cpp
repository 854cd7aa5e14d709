// Loss of a camera, changes of features, and the queue of the camera's events.

#include "DeviceManager.h"
#include "EventCallbacks.h"
#include "FeatureAccess.h"
#include "OVIError.h"
#include "OvIAPI.h"
#include "TLClassEvent/CallbackScope.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/Device.h"

using namespace OVTLClass;

namespace {

/// The open camera behind the handle of an event call.
COvDeviceInfo& EnterEvents(OV_DEV_HANDLE hDevice, const OvPlace& place) {
    EnterApi();
    return VerifyDeviceHandle(hDevice, place);
}

/// Raises with the message in such a callback of the camera.
void CheckNotInside(CallbackKind kind, const IDevice& camera, const char* message) {
    if (CCallbackScope::IsInside(kind, &camera)) {
        OV_RAISE(CInvalidCallError, message);
    }
}

}  // namespace

OV_STATUS OVRegisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                          OVDeviceOfflineCallback callBackFun,
                                          OV_EVENT_CALLBACK_HANDLE* pHCallBack) try {
    IDevice& device = *EnterEvents(hDevice, OV_HERE).GetDevice();
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callBackFun));
    OV_CHECK_POINTER(pHCallBack);
    CheckNotInside(CallbackKind::Offline, device, "Can't register offline callback in callback");
    *pHCallBack =
        device.DoRegisterDeviceOfflineCallback(COvDeviceOfflineCallback(pUserParam, callBackFun));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice,
                                            OV_EVENT_CALLBACK_HANDLE pHCallBack) try {
    IDevice& device = *EnterEvents(hDevice, OV_HERE).GetDevice();
    // What stood behind a handle may be gone, so it is compared alone.
    if (!device.DoHasDeviceOfflineCallback(pHCallBack)) {
        OV_RAISE(CInvalidHandleError, "Invalid event callback handle");
    }
    CheckNotInside(CallbackKind::Offline, device, "Can't unregister offline callback in callback");
    device.DoUnregisterDeviceOfflineCallback(pHCallBack);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVRegisterFeatureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                    OVFeatureCallback callBackFun, OV_FEATURE_ID featureID,
                                    OV_FEATURE_CALLBACK_HANDLE* pHCallBack) try {
    const COvDeviceInfo& info = EnterEvents(hDevice, OV_HERE);
    const char* const name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callBackFun));
    OV_CHECK_POINTER(pHCallBack);
    IDevice& device = *info.GetDevice();
    CheckNotInside(CallbackKind::Event, device,
                   "Can't register feature event callback in callback");
    CFeatureControl& control = GetFeatureControl(info, featureID);
    if (control.CheckEventNode(name)) {
        device.DoActiveRemoteDeviceEventThread();
    }
    CListenerAgency listening(
        CDeviceManager::GetInstance().GetDeviceInfoFactory().GetPollingThread(), info.GetPolling());
    *pHCallBack = control.DoRegisterFeatureCallback(
        name, COvFeatureCallback(device, pUserParam, callBackFun, featureID));
    listening.Commit();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterFeatureCallback(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                      OV_FEATURE_CALLBACK_HANDLE pHCallBack) try {
    const COvDeviceInfo& info = EnterEvents(hDevice, OV_HERE);
    if (!HasFeatureCallback(info, pHCallBack)) {
        OV_RAISE(CInvalidHandleError, "Invalid feature callback handle");
    }
    const char* const name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    CheckNotInside(CallbackKind::Event, *info.GetDevice(),
                   "Can't unregister feature event callback in callback");
    CFeatureControl& control = GetFeatureControl(info, featureID);
    if (!control.CheckExist(name, pHCallBack)) {
        OV_RAISE(CInvalidParameterError, "Invalid Feature ID");
    }
    control.DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(pHCallBack));
    CDeviceManager::GetInstance().GetDeviceInfoFactory().GetPollingThread().RemoveListener(
        info.GetPolling());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVFlushEvent(OV_DEV_HANDLE hDevice) try {
    EnterEvents(hDevice, OV_HERE).GetDevice()->DoFlushRemoteDeviceEvent();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEventNumInQueue(OV_DEV_HANDLE hDevice, uint32_t* pnEventNum) try {
    IDevice& device = *EnterEvents(hDevice, OV_HERE).GetDevice();
    OV_CHECK_POINTER(pnEventNum);
    *pnEventNum = device.DoGetEventNumInQueue();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
