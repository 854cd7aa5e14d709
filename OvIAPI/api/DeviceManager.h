#pragma once
/// The state of the library, and the checks at the beginning of every exported function.

#include <atomic>

#include "TLClassSupport/OvLock.h"
#include "api/FeatureTable.h"
#include "camera/DeviceInfo.h"
#include "devices/DeviceInfoFactory.h"
#include "errors/Place.h"

/// The one instance of the process. Its destructor closes nothing: a program may end with
/// cameras open.
class CDeviceManager {
public:
    static CDeviceManager& GetInstance();
    CDeviceManager(const CDeviceManager&) = delete;
    CDeviceManager& operator=(const CDeviceManager&) = delete;

    /// Throws "Not init API" before OVInitLib.
    void CheckInit() const;
    bool IsInitialised() const { return m_initialised; }
    void SetInitialised(bool initialised) { m_initialised = initialised; }

    /// Throws "Invalid feature ID" if no feature has the identifier.
    OVTLClass::CFeatureName GetFeatureName(OV_FEATURE_ID featureID) const;

    CDeviceInfoFactory& GetDeviceInfoFactory() { return m_deviceInfoFactory; }
    /// Held by OVInitLib, OVCloseLib and the two list updates from start to end.
    OVTLClass::CLock& GetApiLock() { return m_apiLock; }

private:
    CDeviceManager() = default;

    std::atomic<bool> m_initialised{false};
    const CFeatureTable m_featureTable;
    CDeviceInfoFactory m_deviceInfoFactory;
    OVTLClass::CLock m_apiLock{OVTLClass::LockRank::Api};
};

/// The first step of an exported function: returns the instance, and throws unless the
/// library is initialised.
CDeviceManager& EnterApi();

/// Throws "NULL Pointer" for a null pointer.
void CheckPointer(const void* pointer, const OvPlace& place);

/// The open camera of a handle. Throws "Invalid device handle" for null and for a camera that
/// is no longer open.
COvDeviceInfo& VerifyDeviceHandle(OV_DEV_HANDLE hDevice, const OvPlace& place);

/// Both: the beginning of every exported function that takes a handle.
COvDeviceInfo& EnterCamera(OV_DEV_HANDLE hDevice, const OvPlace& place);

#define OV_CHECK_POINTER(pointer) CheckPointer((pointer), OV_HERE)
