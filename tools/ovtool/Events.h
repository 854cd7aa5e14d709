#pragma once
/// What a camera tells on its own.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Session.h"

struct EventOptions {
    /// Entries of "EventSelector"; empty: all whose features the library knows.
    std::vector<std::string> names;
    /// Ends after that many events.
    std::optional<uint32_t> count;
    double seconds = 5;
    /// No frames flow meanwhile.
    bool idle = false;
};

/// Prints events as they come; with `json` one document a line. Afterwards the
/// camera's notifications are as before. Raises when the camera is lost.
void PrintEvents(const CameraChoice& choice, const EventOptions& options, bool json);
