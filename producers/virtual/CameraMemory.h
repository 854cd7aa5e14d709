#pragma once
/// Where a virtual camera keeps its state from one process to the next, as a
/// real camera does as long as it has power.

#include <filesystem>

#include "virtual/CameraState.h"

namespace OvVirtual {

class CameraMemory {
public:
    /// @param file  empty for a camera that forgets when its process ends
    explicit CameraMemory(std::filesystem::path file) : m_file(std::move(file)) {}

    /// The state that was kept last, if there is one and it makes sense.
    std::optional<CameraState> Load(bool color) const;

    /// Replaces the file as a whole: another process reads the old state or
    /// the new one. False when the folder can't be written.
    bool Store(const CameraState& state) const;

private:
    std::filesystem::path m_file;
};

}  // namespace OvVirtual
