#include "Error.h"

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
