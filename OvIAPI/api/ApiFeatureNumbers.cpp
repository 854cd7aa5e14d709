// Integers, floats, enumerations, booleans and commands. Each function checks handle,
// type and name, then the caller's pointers, and only then asks the camera.

#include "OvIAPI.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/OvException.h"
#include "api/FeatureAccess.h"
#include "api/RangeRecords.h"
#include "errors/OVIError.h"
#include "frames/Acquisition.h"

using namespace OVTLClass;

OV_STATUS OVGetIntRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                        OV_INT_RANGE* pIntRange) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_INT, OV_HERE);
    OV_CHECK_POINTER(pIntRange);
    const FEATURE_INT_RANGE range = feature.Control().DoGetIntRange(feature.Name());
    FillRecord(*pIntRange, range);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_INT, OV_HERE);
    OV_CHECK_POINTER(pnValue);
    return TakeReading(feature.Control().GetInt(feature.Name()), pnValue);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_INT, OV_HERE);
    feature.Control().DoSetInt(feature.Name(), nValue);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetFloatRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                          OV_FLOAT_RANGE* pFloatRange) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_FLOAT, OV_HERE);
    OV_CHECK_POINTER(pFloatRange);
    const FEATURE_FLOAT_RANGE range = feature.Control().DoGetFloatRange(feature.Name());
    FillRecord(*pFloatRange, range);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double dValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_FLOAT, OV_HERE);
    feature.Control().DoSetFloat(feature.Name(), dValue);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double* pdValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_FLOAT, OV_HERE);
    OV_CHECK_POINTER(pdValue);
    return TakeReading(feature.Control().GetFloat(feature.Name()), pdValue);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEnumEntryNums(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                             uint32_t* pnEntryNums) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_ENUM, OV_HERE);
    OV_CHECK_POINTER(pnEntryNums);
    *pnEntryNums = feature.Control().DoGetEnumEntryNums(feature.Name());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEnumDescription(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                               OV_ENUM_DESCRIPTION* pEnumDescription, size_t* pBufferSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_ENUM, OV_HERE);
    OV_CHECK_POINTER(pBufferSize);
    std::vector<FEATURE_ENUM_ENTRY_INFORMATION> entries;
    feature.Control().DoGetEnumDescription(feature.Name(), entries);
    const size_t size = entries.size() * sizeof(OV_ENUM_DESCRIPTION);
    if (pEnumDescription != nullptr) {
        // Before the first is written: the caller gets all entries or none.
        if (size > *pBufferSize) {
            OV_RAISE(CNeedMoreBufferError, "Need more buffer to get enum description");
        }
        for (size_t i = 0; i < entries.size(); ++i) {
            pEnumDescription[i].nValue = entries[i].value;
            FillField(pEnumDescription[i].szSymbolic, entries[i].symbolic);
        }
    }
    *pBufferSize = size;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_ENUM, OV_HERE);
    OV_CHECK_POINTER(pnValue);
    return TakeReading(feature.Control().GetEnum(feature.Name()), pnValue);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_ENUM, OV_HERE);
    feature.Control().DoSetEnum(feature.Name(), nValue);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_BOOL, OV_HERE);
    OV_CHECK_POINTER(pbValue);
    return TakeReading(feature.Control().GetBool(feature.Name()), pbValue);
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool bValue) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_BOOL, OV_HERE);
    feature.Control().DoSetBool(feature.Name(), bValue);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSendCommand(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_COMMAND, OV_HERE);
    // The camera's command alone would leave the host's side as it was.
    if (featureID == OV_FEATURE_AcquisitionStart) {
        StartAcquisition(feature.Info(), OV_HERE);
    } else if (featureID == OV_FEATURE_AcquisitionStop) {
        StopAcquisition(feature.Info(), OV_HERE);
    } else {
        feature.Control().DoSendCommand(feature.Name());
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
