// The state of the library, and how every exported function begins.

#include "api/DeviceManager.h"

#include <typeinfo>

#include "Base/EachFrame.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvException.h"

using namespace OVTLClass;

OV_EACH_FRAME CDeviceManager& CDeviceManager::GetInstance() {
    static CDeviceManager manager;
    return manager;
}

OV_EACH_FRAME void CDeviceManager::CheckInit() const {
    if (!m_initialised) {
        OV_RAISE(CNotInitApiError, "Not init API");
    }
}

CFeatureName CDeviceManager::GetFeatureName(OV_FEATURE_ID featureID) const {
    const CFeatureName* const name = m_featureTable.Find(featureID);
    if (name == nullptr) {
        OV_RAISE(CInvalidParameterError, "Invalid feature ID");
    }
    return *name;
}

OV_EACH_FRAME CDeviceManager& EnterApi() {
    CDeviceManager& manager = CDeviceManager::GetInstance();
    manager.CheckInit();
    return manager;
}

OV_EACH_FRAME void CheckPointer(const void* pointer, const OvPlace& place) {
    if (pointer == nullptr) {
        OV_RAISE_AT(CInvalidParameterError, place, "NULL Pointer");
    }
}

OV_EACH_FRAME COvDeviceInfo& VerifyDeviceHandle(OV_DEV_HANDLE hDevice, const OvPlace& place) {
    // The handle is a pointer and isn't looked up: null and a camera that is no longer open
    // are noticed, but a handle whose camera was closed points to freed memory. Using one is
    // the application's mistake.
    auto* const handle = static_cast<IOvDeviceInfo*>(hDevice);
    // Compared rather than cast: every call passes here, and no class derives from this one.
    if (handle != nullptr && typeid(*handle) == typeid(COvDeviceInfo)) {
        auto& info = static_cast<COvDeviceInfo&>(*handle);
        if (info.GetDevice()->DoIsDeviceOpen()) {
            return info;
        }
    }
    OV_RAISE_AT(CInvalidHandleError, place, "Invalid device handle");
}

OV_EACH_FRAME COvDeviceInfo& EnterCamera(OV_DEV_HANDLE hDevice, const OvPlace& place) {
    EnterApi();
    return VerifyDeviceHandle(hDevice, place);
}
