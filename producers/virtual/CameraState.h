#pragma once
/// What a camera keeps while nobody has it open, and its form as text.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "virtual/CameraFiles.h"
#include "virtual/CameraSelectors.h"
#include "virtual/CameraSettings.h"

namespace OvVirtual {

struct CameraState {
    /// Sets: 0 the factory's, 1 and 2 the user's.
    static constexpr size_t kUserSets = 3;

    CameraSettings settings;
    std::array<CameraSettings, kUserSets> userSets;
    CameraSelectors selectors;
    int64_t userSetDefault = 0;
    std::string userId;
    std::optional<CameraFiles::Content> userFile;  ///< empty when it isn't there
};

/// As a camera comes from the factory.
CameraState FactoryState(bool color);

/// One line for the camera, then one block of lines for the selectors, one for the
/// settings and one for each user set: an address and its value a line. One line
/// for the user's file ends it.
std::string ToText(const CameraState& state);

/// Empty unless every line is as ToText writes it, with values that the
/// camera's registers would take.
std::optional<CameraState> StateFromText(const std::string& text, bool color);

}  // namespace OvVirtual
