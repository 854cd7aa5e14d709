#pragma once
/// Where a virtual camera keeps its state from one process to the next, as a
/// real camera does as long as it has power.

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "virtual/CameraState.h"

namespace OvVirtual {

/// Makes the folder that a file is to be in, for its owner alone. One that can't be made shows
/// when the file is written.
void MakeFolderOf(const std::filesystem::path& file);

class CameraMemory {
public:
    /// @param file  empty for a camera that forgets when its process ends
    explicit CameraMemory(std::filesystem::path file) : m_file(std::move(file)) {}

    /// The state that was kept last, if there is one and it makes sense.
    std::optional<CameraState> Load(bool color);

    /// Replaces the file as a whole: another process reads the old state or
    /// the new one. A state that the file has already is not written again. False
    /// when the folder can't be written.
    bool Store(const CameraState& state);

    /// Whether the file isn't the one that was loaded last, by another process's doing.
    bool IsNewer() const;

private:
    /// Tells one file of that name from the next.
    struct Stamp {
        ino_t number = 0;
        int64_t seconds = 0;
        int64_t nanoseconds = 0;
        bool operator==(const Stamp&) const = default;
    };
    Stamp StampNow() const;
    bool Replace(const std::string& text) const;

    std::filesystem::path m_file;
    Stamp m_loaded;
    std::string m_text;  ///< what the file has, as far as is known
};

}  // namespace OvVirtual
