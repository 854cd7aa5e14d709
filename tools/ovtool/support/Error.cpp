#include "support/Error.h"

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

const char* HintFor(OV_STATUS status) {
    switch (status) {
        case OV_STATUS_NOT_FOUND_TL:
            return "Put a producer (.cti) into the folder of liboviapi.so.";
        case OV_STATUS_NOT_FOUND_DEVICE:
        case OV_STATUS_OFFLINE:
            return "Check cable and power, then look at the cameras with: ovtool list";
        case OV_STATUS_INVALID_ACCESS:
            return "Another program may hold the camera, or the feature is locked now.";
        case OV_STATUS_OUT_OF_RANGE:
            return "The limits stand in: ovtool features";
        case OV_STATUS_NOT_IMPLEMENTED:
            return "The camera's features stand in: ovtool features";
        default:
            return nullptr;
    }
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

void Check(OV_STATUS status, const std::string& what) {
    if (status == OV_STATUS_SUCCESS) {
        return;
    }
    std::string text = "can't " + what + ": " + LastErrorText();
    if (const char* const hint = HintFor(status)) {
        text.append("\n").append(hint);
    }
    throw ToolError(text);
}

void CheckImage(QY_STATUS status, const std::string& what) {
    if (status != QY_OK) {
        throw ToolError("can't " + what + ": " + TextOf(status) + " (status " +
                        std::to_string(status) + ")");
    }
}
