#pragma once
/// Where a camera comes from: what its producer tells of itself, of the
/// interface and of the camera. The library keeps this to itself, so that the
/// producers are asked directly, while the library is closed.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Json.h"

/// Facts by name; those that a producer doesn't give are null.
struct Origin {
    Json camera;
    Json interface;
    Json producer;
};

/// Asks each producer beside the library for a camera, in the library's order.
/// Nothing when none has it.
/// @param deviceId  as in the device list, maybe cut
/// @param timeout   for each search, in milliseconds
std::optional<Origin> FindOrigin(const std::string& deviceId, uint32_t timeout);
