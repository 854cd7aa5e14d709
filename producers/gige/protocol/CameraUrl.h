#pragma once
/// Where a camera says that its description is.

#include <optional>
#include <string>
#include <string_view>

namespace OvGige {

/// A text like "Local:Camera.zip;F000;2B39", taken apart.
struct CameraUrl {
    enum class Place {
        Camera,  ///< in the camera's memory, at `address`
        Host,    ///< a file of this machine, at `path`
        Web,     ///< at the URL `path`
    };

    Place place = Place::Camera;
    std::string fileName;  ///< without folders
    std::string path;      ///< of `Host` and `Web`
    uint64_t address = 0;
    uint64_t size = 0;  ///< in bytes, as the camera says

    bool operator==(const CameraUrl&) const = default;
};

/// Reads the URL as cameras write it: letters in either case, numbers with or without "0x",
/// spaces around them, slashes before the name, a schema version after a question mark.
/// Nothing is returned for what names no file.
std::optional<CameraUrl> ParseCameraUrl(std::string_view text);

}  // namespace OvGige
