// The frame of the interface: version, start, end, last error.

#include <cstring>

#include "OvIAPI.h"
#include "TLClassEvent/CallbackScope.h"
#include "TLClassMain/ITLManager.h"
#include "TLClassSupport/OvString.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

namespace {

/// The files that the library looks for beside itself. Those that aren't there are left
/// out.
constexpr const char* kProducers = "OvGVTL.cti;OvU3VTL.cti;KwTL.cti";

}  // namespace

const char* OVGetLibVersion(void) {
    return OV_VERSION;
}

OV_STATUS OVInitLib(void) try {
    CDeviceManager& manager = CDeviceManager::GetInstance();
    // Without the lock first, so that a repeated call doesn't wait for a search.
    if (manager.IsInitialised()) {
        return OV_STATUS_SUCCESS;
    }
    const CAutoLock lock(manager.GetApiLock());
    if (manager.IsInitialised()) {
        // Another thread has initialised it while this call waited for the lock.
        return OV_STATUS_SUCCESS;
    }
    ITLManager::GetInstance()->DoInit(COvString::SplitString(kProducers, ";"));
    manager.SetInitialised(true);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVCloseLib(void) try {
    CDeviceManager& manager = CDeviceManager::GetInstance();
    if (!manager.IsInitialised()) {
        return OV_STATUS_SUCCESS;
    }
    CDeviceInfoFactory& factory = manager.GetDeviceInfoFactory();
    if (CCallbackScope::IsInsideAny()) {
        // This throws. Another thread that closes the library holds the API lock while it
        // waits for the end of this callback, so this thread must not wait for that lock.
        factory.CloseAllDevice(OV_HERE);
    }
    const CAutoLock lock(manager.GetApiLock());
    if (!manager.IsInitialised()) {
        return OV_STATUS_SUCCESS;
    }
    // The cameras before their producers, which are unloaded below.
    factory.CloseAllDevice(OV_HERE);
    factory.GetKnownCameras().Clear();
    COVIError::GetInstance().Reset();
    ITLManager::GetInstance()->DoUninit();
    manager.SetInitialised(false);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

/// Stores no failure of its own, so that it can be asked twice: once for the size and
/// once for the text.
OV_STATUS OVGetLastError(int32_t* pErrorCode, char* pszErrText, size_t* pSize) {
    if (pSize == nullptr) {
        return OV_STATUS_INVALID_PARAMETER;
    }
    const COVIError& error = COVIError::GetInstance();
    const size_t needed = error.GetText().size() + 1;
    const bool fits = pszErrText == nullptr || *pSize >= needed;
    if (pszErrText != nullptr && fits) {
        std::memcpy(pszErrText, error.GetText().data(), needed);
    }
    *pSize = fits ? needed : 0;
    if (pErrorCode != nullptr) {
        *pErrorCode = error.GetStatus();
    }
    return fits ? OV_STATUS_SUCCESS : OV_STATUS_NEED_MORE_BUFFER;
}
