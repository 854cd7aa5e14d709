#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "OvINodes.h"
#include "commands/Commands.h"
#include "support/Error.h"

namespace {

constexpr size_t kPiece = size_t{64} * 1024;

ToolError LocalFailure(const std::string& what, const std::string& path) {
    return ToolError("can't " + what + " " + path + ": " + std::strerror(errno));
}

}  // namespace

void GetFile(const CameraChoice& choice, const std::string& name, const std::string& path) {
    const Camera camera(choice, Access::Control);
    std::vector<uint8_t> content;
    size_t moved = 0;
    do {
        const size_t offset = content.size();
        content.resize(offset + kPiece);
        moved = kPiece;
        Check(
            OvNodeReadFile(camera.Handle(), name.c_str(), offset, content.data() + offset, &moved),
            "read the camera's file " + name);
        content.resize(offset + moved);
    } while (moved == kPiece);
    // The file that is there is replaced only by a whole one.
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        throw LocalFailure("write", path);
    }
}

void PutFile(const CameraChoice& choice, const std::string& name, const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw LocalFailure("read", path);
    }
    const std::vector<char> content{std::istreambuf_iterator<char>(file),
                                    std::istreambuf_iterator<char>()};
    if (file.bad()) {
        throw LocalFailure("read", path);
    }
    const Camera camera(choice, Access::Control);
    static constexpr uint8_t kNothing = 0;
    const auto* const bytes = reinterpret_cast<const uint8_t*>(content.data());
    Check(OvNodeWriteFile(camera.Handle(), name.c_str(), content.empty() ? &kNothing : bytes,
                          content.size()),
          "write the camera's file " + name);
}

void DeleteFile(const CameraChoice& choice, const std::string& name) {
    const Camera camera(choice, Access::Control);
    Check(OvNodeDeleteFile(camera.Handle(), name.c_str()), "delete the camera's file " + name);
}
