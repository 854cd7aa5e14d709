#include "Steps.h"

#include <map>

namespace {

constexpr int32_t kEntryPointMissing = -1;
constexpr int32_t kNotImplemented = -1003;
constexpr int32_t kAccessDenied = -1005;
constexpr int32_t kInvalidId = -1007;
constexpr int32_t kInvalidParameter = -1009;
constexpr int32_t kTimeout = -1011;
constexpr int32_t kDeviceGone = -10000;

OV_STATUS StatusOf(int32_t code) {
    static const std::map<int32_t, OV_STATUS> kStatus = {
        {kNotImplemented, OV_STATUS_NOT_IMPLEMENTED},
        {kAccessDenied, OV_STATUS_INVALID_ACCESS},
        {kInvalidParameter, OV_STATUS_INVALID_PARAMETER},
        {kTimeout, OV_STATUS_TIMEOUT},
        {kDeviceGone, OV_STATUS_OFFLINE},
    };
    const auto found = kStatus.find(code);
    return found == kStatus.end() ? code : found->second;
}

/// Failures of these classes name the place where the code is told apart, the
/// others the place of the call.
std::string PlaceOf(int32_t code) {
    const bool isCallers = code == kEntryPointMissing || code == kTimeout || StatusOf(code) == code;
    return isCallers ? "" : "{ThrowExceptionIfFailed:line[";
}

std::string MessageOf(const std::string& call, int32_t code, bool mute) {
    if (code == kEntryPointMissing) {
        return "The TL library is not complete";
    }
    return (code == kAccessDenied ? "Access denied:" : "") +
           (mute ? "Failed to get last error description" : "Planned failure of " + call);
}

Outcome Raised(const std::string& call, int32_t code, bool mute) {
    return {StatusOf(code), PlaceOf(code), "]}{" + MessageOf(call, code, mute) + "}"};
}

/// The stop keeps the whole text of the failure, place and all.
Outcome Reported(const std::string& call, int32_t code, bool mute) {
    return {code == kDeviceGone ? OV_STATUS_OFFLINE : OV_STATUS_ERROR, "",
            "]}{" + MessageOf(call, code, mute) + "}}"};
}

/// An import notes the whole text of the failure, and has one status for all.
Outcome Noted(const std::string& call, int32_t code, bool mute) {
    return {OV_STATUS_ERROR, "{OVImportConfigFile:line[",
            "]}{" + MessageOf(call, code, mute) + "}}"};
}

}  // namespace

Steps operator+(Steps first, const Steps& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Steps DescriptionSteps(Fate fate, const std::string& why) {
    return {
        {"GCGetNumPortURLs", 1, fate, why},
        {"GCGetPortURLInfo", 2, fate, why},
        {"GCReadPort", 1, fate, why},
        {"GCGetPortInfo", 2, fate, why},
    };
}

bool IsFault(const std::string& call, int32_t code) {
    const bool isLacking = code == kEntryPointMissing || code == kNotImplemented;
    return !isLacking || (call != "GCGetNumPortURLs" && call != "GCGetPortURLInfo");
}

Outcome OutcomeOf(const Step& step, int32_t code, bool persistent, bool mute) {
    switch (step.fate) {
        case Fate::Raised:
            return Raised(step.call, code, mute);
        case Fate::RaisedUnlessMissing:
            return code == kNotImplemented ? Outcome{} : Raised(step.call, code, mute);
        case Fate::RaisedUnlessUnknown:
            return code == kNotImplemented || code == kInvalidId || code == kInvalidParameter
                       ? Outcome{}
                       : Raised(step.call, code, mute);
        case Fate::Healed:
            return persistent ? Raised(step.call, code, mute) : Outcome{};
        case Fate::ReportedByStop:
            return Reported(step.call, code, mute);
        case Fate::NotedByImport:
            return Noted(step.call, code, mute);
        case Fate::BlankStreamId:
            return {kInvalidId, "",
                    mute ? "]}{Failed to get last error description}"
                         : "]}{The device has no stream ''}"};
        case Fate::CameraNotFound:
            return {OV_STATUS_NOT_FOUND_DEVICE, "", "]}{Not Found Device}"};
        case Fate::TriesElsewhere:
            return {OV_STATUS_NOT_FOUND_DEVICE, "", "]}{Can't open device by IP: 10.1.2.3}"};
        case Fate::Swallowed:
        case Fate::SwallowedListLater:
        case Fate::SwallowedListUntold:
            break;
    }
    return {};
}
