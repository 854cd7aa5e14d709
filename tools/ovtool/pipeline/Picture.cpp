#include "pipeline/Picture.h"

#include <png.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "support/Error.h"

namespace {

/// A file that is either written to its end or, if it is one that can be half there, removed.
class WholeFile {
public:
    explicit WholeFile(const std::string& path)
        : m_path(path), m_file(std::fopen(path.c_str(), "wb")) {
        if (m_file == nullptr) {
            throw Failure("; is there such a folder?");
        }
    }
    ~WholeFile() {
        if (m_file != nullptr) {
            std::fclose(m_file);
            Remove();
        }
    }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    std::FILE* Stream() const { return m_file; }
    /// What the last call on the stream failed of.
    ToolError Failure(const std::string& hint = "") const {
        const std::string reason = std::strerror(errno);
        return ToolError("can't write " + m_path + ": " + reason + hint);
    }
    void Close() {
        // Only now it shows whether there is room for what was written last.
        if (std::fclose(std::exchange(m_file, nullptr)) != 0) {
            const ToolError failure = Failure();
            Remove();
            throw failure;
        }
    }

private:
    /// Devices and pipes stay.
    void Remove() const {
        std::error_code error;
        if (std::filesystem::is_regular_file(std::filesystem::symlink_status(m_path, error))) {
            std::filesystem::remove(m_path, error);
        }
    }

    const std::string m_path;
    std::FILE* m_file;
};

/// libpng comes back by a jump; the exception is the caller's business.
[[noreturn]] void JumpBack(png_structp png, png_const_charp /*text*/) {
    longjmp(png_jmpbuf(png), 1);
}

void KeepQuiet(png_structp /*png*/, png_const_charp /*text*/) {}

int ColourType(int channels) {
    if (channels == 1) {
        return PNG_COLOR_TYPE_GRAY;
    }
    return channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
}

}  // namespace

void WritePng(const Picture& picture, const std::string& path) {
    WholeFile file(path);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, JumpBack, KeepQuiet);
    png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
        const ToolError failure = file.Failure();
        png_destroy_write_struct(&png, &info);
        throw failure;
    }
    png_init_io(png, file.Stream());
    png_set_IHDR(png, info, picture.width, picture.height, picture.bitDepth,
                 ColourType(picture.channels), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);
    png_write_info(png, info);
    if (picture.bitDepth == 16 && std::endian::native == std::endian::little) {
        png_set_swap(png);
    }
    if (picture.order == QY_ORDER_BGR) {
        png_set_bgr(png);
    }
    const size_t row = picture.width * picture.PixelBytes();
    for (size_t y = 0; y < picture.height; ++y) {
        png_write_row(png, picture.bytes.data() + y * row);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    file.Close();
}

void WriteBytes(const std::vector<uint8_t>& bytes, const std::string& path) {
    WholeFile file(path);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.Stream()) != bytes.size()) {
        throw file.Failure();
    }
    file.Close();
}

std::string ToText(const Picture& picture) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), "%ux%u, %d channel%s of %d bits", picture.width,
                  picture.height, picture.channels, picture.channels == 1 ? "" : "s",
                  picture.bitDepth);
    std::string result = text.data();
    if (picture.balance) {
        const auto [red, green, blue] = *picture.balance;
        std::snprintf(text.data(), text.size(), ", balance %.4g,%.4g,%.4g", red, green, blue);
        result += text.data();
    }
    return result;
}

Json ToJson(const Picture& picture) {
    Json balance = nullptr;
    if (picture.balance) {
        balance = *picture.balance;
    }
    return {{"width", picture.width},
            {"height", picture.height},
            {"channels", picture.channels},
            {"bits", picture.bitDepth},
            {"balance", balance}};
}
