#include "virtual/Environment.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

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
    // The comparison also refuses NaN.
    if (*end != '\0' || !(value >= 0)) {
        return std::nullopt;
    }
    return value;
}

/// Any user may create a folder in a shared place, so its owner is checked.
bool IsOursOrFree(const std::filesystem::path& folder) {
    struct stat found {};
    if (lstat(folder.c_str(), &found) != 0) {
        return true;
    }
    return S_ISDIR(found.st_mode) && found.st_uid == getuid();
}

/// A folder of the user that lasts until the machine is switched off, as a camera's
/// memory lasts while it has power.
std::filesystem::path StateFolder() {
    const char* chosen = std::getenv("OV_VIRTUAL_STATE");
    if (chosen != nullptr && *chosen != '\0') {
        return std::string(chosen) == "off" ? "" : chosen;
    }
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0') {
        return std::filesystem::path(runtime) / "oviapi";
    }
    const std::filesystem::path folder = "/tmp/oviapi-" + std::to_string(getuid());
    return IsOursOrFree(folder) ? folder : "";
}

}  // namespace

Environment ReadEnvironment() {
    Environment environment;
    if (const auto cameras = NumberOf("OV_VIRTUAL_CAMERAS"); cameras && *cameras <= kCamerasMax) {
        environment.cameras = static_cast<unsigned>(*cameras);
    }
    environment.stateFolder = StateFolder();
    environment.frameRate = NumberOf("OV_VIRTUAL_FRAME_RATE");
    return environment;
}

}  // namespace OvVirtual
