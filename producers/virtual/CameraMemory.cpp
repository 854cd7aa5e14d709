#include "virtual/CameraMemory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace OvVirtual {

namespace fs = std::filesystem;

void MakeFolderOf(const fs::path& file) {
    std::error_code error;
    if (fs::create_directories(file.parent_path(), error)) {
        fs::permissions(file.parent_path(), fs::perms::owner_all, error);
    }
}

std::optional<CameraState> CameraMemory::Load(bool color) {
    // One that comes meanwhile is newer.
    m_loaded = StampNow();
    std::ifstream in(m_file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    m_text = text.str();
    return StateFromText(m_text, color);
}

CameraMemory::Stamp CameraMemory::StampNow() const {
    struct stat file {};
    if (stat(m_file.c_str(), &file) != 0) {
        return {};
    }
    return {file.st_ino, file.st_mtim.tv_sec, file.st_mtim.tv_nsec};
}

bool CameraMemory::IsNewer() const {
    return StampNow() != m_loaded;
}

bool CameraMemory::Store(const CameraState& state) {
    if (m_file.empty()) {
        return true;
    }
    std::string text = ToText(state);
    if (text == m_text) {
        return true;
    }
    const bool isStored = Replace(text);
    m_text = isStored ? std::move(text) : "";
    return isStored;
}

bool CameraMemory::Replace(const std::string& text) const {
    MakeFolderOf(m_file);
    std::error_code error;
    const fs::path fresh = m_file.string() + "." + std::to_string(getpid());
    std::ofstream out(fresh, std::ios::binary);
    out << text;
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
