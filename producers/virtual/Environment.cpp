#include "virtual/Environment.h"

#include <cstdlib>

namespace OvVirtual {
namespace {

constexpr double kCamerasMax = 16;

std::optional<double> NumberOf(const char* variable) {
    const char* text = std::getenv(variable);
    if (text == nullptr || *text == '\0') {
        return std::nullopt;
    }
    char* end = nullptr;
    const double value = std::strtod(text, &end);
    // The comparison also refuses what is no number at all.
    if (*end != '\0' || !(value >= 0)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

Environment ReadEnvironment() {
    Environment environment;
    if (const auto cameras = NumberOf("OV_VIRTUAL_CAMERAS"); cameras && *cameras <= kCamerasMax) {
        environment.cameras = static_cast<unsigned>(*cameras);
    }
    environment.frameRate = NumberOf("OV_VIRTUAL_FRAME_RATE");
    return environment;
}

}  // namespace OvVirtual
