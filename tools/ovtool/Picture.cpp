#include "Picture.h"

#include <png.h>

#include <bit>
#include <cstdio>
#include <fstream>
#include <memory>

#include "Error.h"

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
