// Loss of a camera, changes of features, and the queue of the camera's events.

#include "OvIAPI.h"
#include "TLClassEvent/CallbackScope.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvException.h"
#include "api/DeviceManager.h"
#include "api/FeatureAccess.h"
#include "errors/OVIError.h"
#include "events/EventCallbacks.h"

using namespace OVTLClass;

namespace {

/// Throws with the message if the calling thread is in a callback of that kind for the
/// camera.
void CheckNotInside(CallbackKind kind, const IDevice& camera, const char* message,
                    const OvPlace& place) {
    if (CCallbackScope::IsInside(kind, &camera)) {
        OV_RAISE_AT(CInvalidCallError, place, message);
    }
}

/// Throws with the message for a handle that isn't registered. Handles are only compared:
/// what one points to may be gone. In a callback that refuses the call anyway, only null
/// is refused here: a close on another thread may have removed the registration already.
template <class IsRegistered>
void VerifyCallbackHandle(const void* handle, CallbackKind refused, const IDevice& camera,
                          const IsRegistered& isRegistered, const char* message,
                          const OvPlace& place) {
    const bool isValid =
        handle != nullptr && (CCallbackScope::IsInside(refused, &camera) || isRegistered(handle));
    if (!isValid) {
        OV_RAISE_AT(CInvalidHandleError, place, message);
    }
}

}  // namespace

OV_STATUS OVRegisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                          OVDeviceOfflineCallback callBackFun,
                                          OV_EVENT_CALLBACK_HANDLE* pHCallBack) try {
    IDevice& device = *EnterCamera(hDevice, OV_HERE).GetDevice();
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callBackFun));
    OV_CHECK_POINTER(pHCallBack);
    CheckNotInside(CallbackKind::Offline, device, "Can't register offline callback in callback",
                   OV_HERE);
    *pHCallBack =
        device.DoRegisterDeviceOfflineCallback(COvDeviceOfflineCallback(pUserParam, callBackFun));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice,
                                            OV_EVENT_CALLBACK_HANDLE pHCallBack) try {
    IDevice& device = *EnterCamera(hDevice, OV_HERE).GetDevice();
    VerifyCallbackHandle(
        pHCallBack, CallbackKind::Offline, device,
        [&device](const void* handle) { return device.DoHasDeviceOfflineCallback(handle); },
        "Invalid event callback handle", OV_HERE);
    CheckNotInside(CallbackKind::Offline, device, "Can't unregister offline callback in callback",
                   OV_HERE);
    device.DoUnregisterDeviceOfflineCallback(pHCallBack);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVRegisterFeatureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                    OVFeatureCallback callBackFun, OV_FEATURE_ID featureID,
                                    OV_FEATURE_CALLBACK_HANDLE* pHCallBack) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callBackFun));
    OV_CHECK_POINTER(pHCallBack);
    IDevice& device = *info.GetDevice();
    CheckNotInside(CallbackKind::Event, device, "Can't register feature event callback in callback",
                   OV_HERE);
    CFeatureControl& control = GetFeatureControl(info, featureID);
    // Only the first callback on an event's feature starts the thread that reads events:
    // most programs have none and shouldn't pay for it.
    if (control.CheckEventNode(name)) {
        device.DoActiveRemoteDeviceEventThread();
    }
    // Counted before the callback is registered, so that no change is missed, and taken
    // back when the registration fails.
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
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    VerifyCallbackHandle(
        pHCallBack, CallbackKind::Event, *info.GetDevice(),
        [&info](const void* handle) { return HasFeatureCallback(info, handle); },
        "Invalid feature callback handle", OV_HERE);
    const CFeatureName name = CDeviceManager::GetInstance().GetFeatureName(featureID);
    CheckNotInside(CallbackKind::Event, *info.GetDevice(),
                   "Can't unregister feature event callback in callback", OV_HERE);
    CFeatureControl& control = GetFeatureControl(info, featureID);
    // The handle is valid, but it is another feature's.
    if (!control.CheckExist(name.Get(), pHCallBack)) {
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
    EnterCamera(hDevice, OV_HERE).GetDevice()->DoFlushRemoteDeviceEvent();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEventNumInQueue(OV_DEV_HANDLE hDevice, uint32_t* pnEventNum) try {
    IDevice& device = *EnterCamera(hDevice, OV_HERE).GetDevice();
    OV_CHECK_POINTER(pnEventNum);
    *pnEventNum = device.DoGetEventNumInQueue();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
