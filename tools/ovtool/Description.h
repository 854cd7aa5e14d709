#pragma once
/// A camera's own description, which the library keeps to itself.

#include <cstdint>
#include <string>
#include <vector>

/// The file as the camera has it.
struct CameraDescription {
    std::vector<char> bytes;
    bool zipped = false;
};

/// Reads the description from the camera by its producer, while the library is
/// closed. Raises when the camera isn't there, when another program holds it and
/// when its description lies elsewhere.
/// @param deviceId  as in the device list, maybe cut
/// @param timeout   for each search, in milliseconds
CameraDescription FetchDescription(const std::string& deviceId, uint32_t timeout);
