#include "support/Error.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <vector>

namespace {

std::string LastErrorText() {
    size_t size = 0;
    if (OVGetLastError(nullptr, nullptr, &size) != OV_STATUS_SUCCESS) {
        return "";
    }
    std::vector<char> text(size);
    return OVGetLastError(nullptr, text.data(), &size) == OV_STATUS_SUCCESS ? text.data() : "";
}

/// What stands between the brace at the beginning and the one that closes it; none elsewhere.
std::string FirstGroup(const std::string& text) {
    const size_t end = text.find('}');
    return text.empty() || text[0] != '{' || end == std::string::npos ? ""
                                                                      : text.substr(1, end - 1);
}

bool IsStatus(const std::string& group) {
    const size_t sign = !group.empty() && group[0] == '-' ? 1 : 0;
    return group.size() > sign &&
           std::all_of(group.begin() + static_cast<std::ptrdiff_t>(sign), group.end(),
                       [](unsigned char digit) { return std::isdigit(digit) != 0; });
}

bool IsPlace(const std::string& group) {
    return group.find(":line[") != std::string::npos;
}

void RemoveStart(std::string& text, const std::string& start) {
    if (text.starts_with(start)) {
        text.erase(0, start.size());
    }
}

/// The text without status, place and braces, which say nothing to who has a camera.
std::string PlainText(std::string text) {
    for (const auto& isInternal : {IsStatus, IsPlace}) {
        const std::string group = FirstGroup(text);
        if (isInternal(group)) {
            text.erase(0, group.size() + 2);
        }
    }
    if (text.starts_with('{') && text.ends_with('}')) {
        text = text.substr(1, text.size() - 2);
    }
    RemoveStart(text, "Access denied:");
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/// A producer's own code, which the library passes on.
constexpr OV_STATUS kResourceInUse = -1004;

struct Meaning {
    OV_STATUS status;
    ExitCode code;
    /// May be null.
    const char* hint;
};

constexpr const char* kCheckCable = "Check cable and power, then look at the cameras: ovtool list";
constexpr const char* kSeeFeatures = "The camera's features with their limits: ovtool features";
constexpr const char* kHeld =
    "Another program may hold the camera, or the feature can't be changed now: it is read-only, "
    "or locked by frames that flow or by another feature.";

constexpr Meaning kMeanings[] = {
    {OV_STATUS_NOT_FOUND_TL, ExitCode::NoCamera, nullptr},
    {OV_STATUS_NOT_FOUND_DEVICE, ExitCode::NoCamera, kCheckCable},
    {OV_STATUS_OFFLINE, ExitCode::Lost, kCheckCable},
    {OV_STATUS_INVALID_ACCESS, ExitCode::AccessDenied, kHeld},
    {kResourceInUse, ExitCode::AccessDenied, kHeld},
    {OV_STATUS_TIMEOUT, ExitCode::TimedOut, kCheckCable},
    {OV_STATUS_OUT_OF_RANGE, ExitCode::Failed, kSeeFeatures},
    {OV_STATUS_NOT_IMPLEMENTED, ExitCode::Failed, kSeeFeatures},
};

const Meaning* MeaningOf(OV_STATUS status) {
    const auto* const found =
        std::find_if(std::begin(kMeanings), std::end(kMeanings),
                     [status](const Meaning& meaning) { return meaning.status == status; });
    return found == std::end(kMeanings) ? nullptr : found;
}

const char* TextOf(QY_STATUS status) {
    switch (status) {
        case QY_PARAMETER_OUT_OF_BOUND:
            return "the width, the height or a value is out of bounds";
        case QY_NOT_ENOUGH_MEMORY:
            return "there is not enough memory";
        case QY_NOT_SUPPORTED:
            return "there is no such method or mode";
        default:
            return "an argument is invalid";
    }
}

}  // namespace

const char* ExitCodesText() {
    return "Exit codes: 0 done, 1 failed, 2 usage, 3 no camera or producer, 4 access denied,\n"
           "5 timed out, 6 incomplete data, 7 camera lost, 130 interrupted";
}

ToolError UsageError(const std::string& text) {
    return ToolError(text, ExitCode::Usage);
}

ToolError LossOfCamera() {
    return ToolError(std::string("the camera is lost\n") + kCheckCable, ExitCode::Lost);
}

ToolError Interruption() {
    return ToolError("interrupted", ExitCode::Interrupted);
}

ExitCode CodeOf(OV_STATUS status) {
    const Meaning* const meaning = MeaningOf(status);
    return meaning == nullptr ? ExitCode::Failed : meaning->code;
}

void Check(OV_STATUS status, const std::string& what) {
    const Meaning* const meaning = MeaningOf(status);
    Check(status, what, meaning == nullptr || meaning->hint == nullptr ? "" : meaning->hint);
}

void Check(OV_STATUS status, const std::string& what, const std::string& hint) {
    if (status == OV_STATUS_SUCCESS) {
        return;
    }
    const std::string detail = LastErrorText();
    std::string text = "can't " + what + ": " + PlainText(detail);
    text.append(hint.empty() ? "" : "\n").append(hint);
    throw ToolError(text, CodeOf(status), detail);
}

void CheckImage(QY_STATUS status, const std::string& what) {
    if (status != QY_OK) {
        throw ToolError("can't " + what + ": " + TextOf(status) + " (status " +
                        std::to_string(status) + ")");
    }
}
