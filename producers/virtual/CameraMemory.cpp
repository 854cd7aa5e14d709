#include "virtual/CameraMemory.h"

#include <unistd.h>

#include <fstream>
#include <sstream>

namespace OvVirtual {

namespace fs = std::filesystem;

std::optional<CameraState> CameraMemory::Load(bool color) const {
    std::ifstream in(m_file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return StateFromText(text.str(), color);
}

bool CameraMemory::Store(const CameraState& state) const {
    if (m_file.empty()) {
        return true;
    }
    std::error_code error;
    if (fs::create_directories(m_file.parent_path(), error)) {
        fs::permissions(m_file.parent_path(), fs::perms::owner_all, error);
    }
    const fs::path fresh = m_file.string() + "." + std::to_string(getpid());
    std::ofstream out(fresh, std::ios::binary);
    out << ToText(state);
    out.close();
    if (out) {
        fs::rename(fresh, m_file, error);
    }
    if (!out || error) {
        fs::remove(fresh, error);
        return false;
    }
    return true;
}

}  // namespace OvVirtual
