// An identifier holds the type and the module of a feature in its bits. So a wrong type
// is refused before anything is looked up.

#include "api/FeatureAccess.h"

#include <algorithm>
#include <iterator>

#include "TLClassFeature/FeatureControl.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"
#include "TLClassSupport/OvException.h"

using namespace OVTLClass;

namespace {

IFeatureControl* ControlOfLevel(const COvDeviceInfo& info, OV_FEATURE_LEVEL level) {
    IDevice& device = *info.GetDevice();
    switch (level) {
        case OV_FEATURE_LEVEL_REMOTE_DEVICE:
            return device.DoGetRemoteDeviceFeatureControl();
        case OV_FEATURE_LEVEL_TL:
            return device.DoGetInterface()->DoGetTL()->GetFeatureControl();
        case OV_FEATURE_LEVEL_INTERFACE:
            return device.DoGetInterface()->GetFeatureControl();
        case OV_FEATURE_LEVEL_LOCAL_DEVICE:
            return device.GetFeatureControl();
        case OV_FEATURE_LEVEL_STREAM:
            return info.GetStream()->GetFeatureControl();
        default:
            OV_RAISE_STATUS(OV_STATUS_ERROR, "UnKnown Feature Level");
    }
}

COvDeviceInfo& VerifyFeatureCall(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                 OV_FEATURE_TYPE type, const OvPlace& place) {
    COvDeviceInfo& info = EnterCamera(hDevice, place);
    CheckFeatureType(featureID, type);
    return info;
}

}  // namespace

void CheckFeatureType(OV_FEATURE_ID featureID, OV_FEATURE_TYPE type) {
    constexpr OV_FEATURE_ID kTypeBits = 0xF0000000U;
    if ((featureID & kTypeBits) != type) {
        OV_RAISE(CErrorTypeError, "FeatureID type error");
    }
}

CFeatureControl& GetFeatureControl(const COvDeviceInfo& info, OV_FEATURE_ID featureID) {
    const OV_FEATURE_LEVEL level = featureID & OV_FEATURE_LEVEL_MASK;
    // The only class that derives from its interface; a cast that finds that out would take longer
    // than the read of a cached value.
    auto* const control = static_cast<CFeatureControl*>(ControlOfLevel(info, level));
    if (control == nullptr) {
        OV_RAISE(CUnexpectedError, "dynamic_cast OVTLClass::CFeatureControl failed");
    }
    // The features of this module may be past their polling time.
    info.GetPolling().PollBeforeCall(level);
    return *control;
}

/// A handle doesn't say which module it belongs to.
bool HasFeatureCallback(const COvDeviceInfo& info, const void* handle) {
    constexpr OV_FEATURE_LEVEL kLevels[] = {OV_FEATURE_LEVEL_REMOTE_DEVICE, OV_FEATURE_LEVEL_TL,
                                            OV_FEATURE_LEVEL_INTERFACE,
                                            OV_FEATURE_LEVEL_LOCAL_DEVICE, OV_FEATURE_LEVEL_STREAM};
    return std::any_of(std::begin(kLevels), std::end(kLevels), [&](OV_FEATURE_LEVEL level) {
        const auto* const control = static_cast<CFeatureControl*>(ControlOfLevel(info, level));
        return control != nullptr && control->CheckExist(handle);
    });
}

void TakeUserId(COvDeviceInfo& info, const std::string& userId) {
    info.SetUserId(userId);
    info.GetDevice()->DoSetUserId(userId);
    CDeviceManager::GetInstance().GetDeviceInfoFactory().GetKnownCameras().SetUserId(info.deviceId,
                                                                                     userId);
}

CFeatureAccess::CFeatureAccess(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, OV_FEATURE_TYPE type,
                               const OvPlace& place)
    : m_info(VerifyFeatureCall(hDevice, featureID, type, place)),
      m_featureID(featureID),
      m_name(CDeviceManager::GetInstance().GetFeatureName(featureID)) {}
