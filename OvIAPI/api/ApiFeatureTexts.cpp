// Texts and buffers. Their length is known only by reading them, so a caller with a null
// pointer asks for the size first.

#include <algorithm>
#include <cstring>
#include <memory>

#include "OvIAPI.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/OvException.h"
#include "api/FeatureAccess.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

OV_STATUS OVGetStringLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_STRING, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    CReading<std::string> text = feature.Control().GetString(feature.Name());
    if (const CRefusal* const refusal = text.GetRefusal()) {
        return StatusOfRefusal(*refusal);
    }
    *pnSize = text.Value().size() + 1;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetStringMaxLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_STRING, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    *pnSize = static_cast<size_t>(feature.Control().DoGetMaxStringLength(feature.Name())) + 1;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszContent,
                      size_t* pnSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_STRING, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const CFeatureControl& control = feature.Control();
    CReading<std::string> first = control.GetString(feature.Name());
    if (const CRefusal* const refusal = first.GetRefusal()) {
        return StatusOfRefusal(*refusal);
    }
    const size_t size = first.Value().size() + 1;
    if (pszContent != nullptr) {
        if (size > *pnSize) {
            OV_RAISE(CNeedMoreBufferError, "Need more buffer to get string");
        }
        const std::string text = control.DoGetString(feature.Name());
        std::memset(pszContent, 0, size);
        // The value may have grown since its size was read, so no more than that size is
        // copied. The terminating zero is there already.
        // NOLINTNEXTLINE(bugprone-not-null-terminated-result)
        std::memcpy(pszContent, text.data(), std::min(text.size(), size - 1));
    }
    *pnSize = size;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, const char* pszContent) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_STRING, OV_HERE);
    OV_CHECK_POINTER(pszContent);
    feature.Control().DoSetString(feature.Name(), pszContent);
    if (featureID == OV_FEATURE_DeviceUserID) {
        TakeUserId(feature.Info(), pszContent);
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetBufferLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_BUFFER, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    *pnSize = feature.Control().DoGetBufferLength(feature.Name());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, uint8_t* pBuffer,
                      size_t* pnSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_BUFFER, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const IFeatureControl& control = feature.Control();
    const size_t size = control.DoGetBufferLength(feature.Name());
    if (pBuffer != nullptr) {
        if (*pnSize < size) {
            OV_RAISE(CNeedMoreBufferError, "Need more buffer to get buffer");
        }
        // Reads into own memory first: a read that fails halfway must not change the caller's.
        const auto content = std::make_unique<uint8_t[]>(size);
        control.DoGetBuffer(feature.Name(), size, content.get());
        std::copy_n(content.get(), size, pBuffer);
    }
    *pnSize = size;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, const uint8_t* pBuffer,
                      size_t nSize) try {
    const CFeatureAccess feature(hDevice, featureID, OV_FEATURE_TYPE_BUFFER, OV_HERE);
    OV_CHECK_POINTER(pBuffer);
    feature.Control().DoSetBuffer(feature.Name(), nSize, pBuffer);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
