#include "pipeline/Picture.h"

#include <png.h>

#include <array>
#include <bit>
#include <cstdio>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

#include "support/Error.h"

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

int ColourType(int channels) {
    if (channels == 1) {
        return PNG_COLOR_TYPE_GRAY;
    }
    return channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
}

[[noreturn]] void FailToWrite(const std::string& path) {
    throw ToolError("can't write " + path + "; is there such a folder?");
}

}  // namespace

void WritePng(const Picture& picture, const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        FailToWrite(path);
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        FailToWrite(path);
    }
    png_init_io(png, file.get());
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
}

void WriteBytes(const std::vector<uint8_t>& bytes, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        FailToWrite(path);
    }
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
