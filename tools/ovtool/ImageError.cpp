#include "ImageError.h"

#include "Error.h"

namespace {

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

void CheckImage(QY_STATUS status, const std::string& what) {
    if (status != QY_OK) {
        throw ToolError("can't " + what + ": " + TextOf(status) + " (status " +
                        std::to_string(status) + ")");
    }
}
