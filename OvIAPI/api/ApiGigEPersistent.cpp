// The address with which an open GigE Vision camera starts from now on.

#include <array>
#include <cstring>

#include "OvIAPI.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"
#include "api/FeatureAccess.h"
#include "errors/OVIError.h"
#include "gige/Ipcalc.h"

using namespace OVTLClass;

namespace {

constexpr size_t kFeatures = 3;
/// Checks, reads and writes go in this order.
constexpr std::array<const char*, kFeatures> kNames = {
    "GevPersistentIPAddress", "GevPersistentSubnetMask", "GevPersistentDefaultGateway"};
/// The names in the failure of a text that doesn't fit.
constexpr std::array<const char*, kFeatures> kWords = {"IP", "subnet mask", "default gateway"};

/// A text of the caller, with its size as input and output.
struct TextTarget {
    char* text;
    size_t* size;
};
using TextTargets = std::array<TextTarget, kFeatures>;
using Texts = std::array<std::string, kFeatures>;

CFeatureControl& ControlOf(const COvDeviceInfo& info) {
    return GetFeatureControl(info, OV_FEATURE_LEVEL_REMOTE_DEVICE);
}

/// @param refusal  text of the failure up to the feature's name; it differs between
///                 reading and writing
void CheckImplemented(const IFeatureControl& control, const char* refusal, const OvPlace& place) {
    for (const char* const name : kNames) {
        if (!control.DoIsImplemented(name)) {
            OV_RAISE_AT(CNotImplementedError, place, std::string(refusal) + name);
        }
    }
}

Texts ReadTexts(const IFeatureControl& control) {
    Texts texts;
    for (size_t i = 0; i < kFeatures; ++i) {
        texts[i] =
            COvString::ConvertInt32ToIPString(static_cast<int32_t>(control.DoGetInt(kNames[i])));
    }
    return texts;
}

size_t SizeOf(const std::string& text) {
    return text.size() + 1;
}

/// Writes no text unless all of them fit. A size without a text is a question, and its
/// answer is written even if another text doesn't fit.
void CopyTexts(const Texts& texts, const TextTargets& targets, const OvPlace& place) {
    for (size_t i = 0; i < kFeatures; ++i) {
        if (targets[i].text == nullptr) {
            *targets[i].size = SizeOf(texts[i]);
        }
    }
    for (size_t i = 0; i < kFeatures; ++i) {
        if (SizeOf(texts[i]) > *targets[i].size) {
            OV_RAISE_AT(CNeedMoreBufferError, place,
                        std::string("Need more buffer to get device persistent ") + kWords[i]);
        }
    }
    for (size_t i = 0; i < kFeatures; ++i) {
        if (targets[i].text != nullptr) {
            std::memcpy(targets[i].text, texts[i].c_str(), SizeOf(texts[i]));
            *targets[i].size = SizeOf(texts[i]);
        }
    }
}

void CheckAddresses(const char* ip, const char* mask, const char* gateway, const OvPlace& place) {
    const Cipcalc calculator;
    if (!calculator.IsValidIP(ip)) {
        OV_RAISE_AT(CInvalidParameterError, place, "Invalid IP");
    }
    if (!calculator.IsValidIP(gateway)) {
        OV_RAISE_AT(CInvalidParameterError, place, "Invalid GateWay");
    }
    if (!calculator.IsValidMask(mask)) {
        OV_RAISE_AT(CInvalidParameterError, place, "Invalid SubNetMask");
    }
}

}  // namespace

OV_STATUS OVGetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, char* pszIP, size_t* pnIPLength,
                                         char* pszSubnetMask, size_t* pnSubnetMaskLength,
                                         char* pszDefaultGateway,
                                         size_t* pnDefaultGatewayLength) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pnIPLength);
    OV_CHECK_POINTER(pnSubnetMaskLength);
    OV_CHECK_POINTER(pnDefaultGatewayLength);
    const CFeatureControl& control = ControlOf(info);
    CheckImplemented(control, "Not implemented ", OV_HERE);
    CopyTexts(ReadTexts(control),
              {{{pszIP, pnIPLength},
                {pszSubnetMask, pnSubnetMaskLength},
                {pszDefaultGateway, pnDefaultGatewayLength}}},
              OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVSetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, const char* pszIP,
                                         const char* pszSubnetMask,
                                         const char* pszDefaultGateway) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszIP);
    OV_CHECK_POINTER(pszSubnetMask);
    OV_CHECK_POINTER(pszDefaultGateway);
    const CFeatureControl& control = ControlOf(info);
    CheckImplemented(control, "Not Implemented ", OV_HERE);
    // All before the first is written: a camera that keeps a wrong address can't be
    // reached after its next start.
    CheckAddresses(pszIP, pszSubnetMask, pszDefaultGateway, OV_HERE);
    const std::array<const char*, kFeatures> texts = {pszIP, pszSubnetMask, pszDefaultGateway};
    // Three writes, of which a later one may fail: the camera has no step that takes all
    // at once.
    for (size_t i = 0; i < kFeatures; ++i) {
        control.DoSetInt(kNames[i], Cipcalc().StringToInt(texts[i]));
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
