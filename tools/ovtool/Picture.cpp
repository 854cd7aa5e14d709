#include "Picture.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>

#include "Error.h"
#include "QyImageProc.h"

namespace {

/// A pixel format of one sample for each pixel.
struct SampleFormat {
    int32_t code;
    const char* name;
    QyColorFilter filter;
    /// Significant bits; more than 8 stand in 16-bit words.
    int bits;
};

constexpr std::array kFormats{
    SampleFormat{0x01080001, "Mono8", QY_FILTER_NONE, 8},
    SampleFormat{0x01100003, "Mono10", QY_FILTER_NONE, 10},
    SampleFormat{0x01100005, "Mono12", QY_FILTER_NONE, 12},
    SampleFormat{0x01100007, "Mono16", QY_FILTER_NONE, 16},
    SampleFormat{0x01080008, "BayerGR8", QY_BAYER_GR, 8},
    SampleFormat{0x01080009, "BayerRG8", QY_BAYER_RG, 8},
    SampleFormat{0x0108000A, "BayerGB8", QY_BAYER_GB, 8},
    SampleFormat{0x0108000B, "BayerBG8", QY_BAYER_BG, 8},
    SampleFormat{0x0110000C, "BayerGR10", QY_BAYER_GR, 10},
    SampleFormat{0x0110000D, "BayerRG10", QY_BAYER_RG, 10},
    SampleFormat{0x0110000E, "BayerGB10", QY_BAYER_GB, 10},
    SampleFormat{0x0110000F, "BayerBG10", QY_BAYER_BG, 10},
    SampleFormat{0x01100010, "BayerGR12", QY_BAYER_GR, 12},
    SampleFormat{0x01100011, "BayerRG12", QY_BAYER_RG, 12},
    SampleFormat{0x01100012, "BayerGB12", QY_BAYER_GB, 12},
    SampleFormat{0x01100013, "BayerBG12", QY_BAYER_BG, 12},
};

const SampleFormat& FormatOf(const RawFrame& frame) {
    const auto* const found = std::find_if(
        kFormats.begin(), kFormats.end(),
        [&frame](const SampleFormat& format) { return format.code == frame.pixelFormat; });
    if (found == kFormats.end()) {
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "can't show pixel format 0x%08X; save raw files",
                      static_cast<unsigned>(frame.pixelFormat));
        throw ToolError(text.data());
    }
    return *found;
}

void CheckConversion(QY_STATUS status, const SampleFormat& format) {
    if (status != QY_OK) {
        throw ToolError("can't turn " + std::string(format.name) +
                        " into a picture: image function says " + std::to_string(status));
    }
}

/// Spreads the significant bits of each word over all 16.
void StretchTo16Bits(std::vector<uint8_t>& bytes, int bits) {
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        uint16_t word = 0;
        std::memcpy(&word, &bytes[at], sizeof(word));
        word = static_cast<uint16_t>(word << (16 - bits));
        std::memcpy(&bytes[at], &word, sizeof(word));
    }
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void FailToWrite(const std::string& path) {
    throw ToolError("can't write " + path + "; is there such a folder?");
}

}  // namespace

Picture MakePicture(const RawFrame& frame) {
    const SampleFormat& format = FormatOf(frame);
    const size_t sampleBytes = format.bits > 8 ? 2 : 1;
    const size_t samples = static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height);
    if (frame.bytes.size() < samples * sampleBytes) {
        throw ToolError("the frame holds fewer bytes than its size asks for");
    }
    Picture picture;
    picture.width = static_cast<uint32_t>(frame.width);
    picture.height = static_cast<uint32_t>(frame.height);
    picture.bitDepth = format.bits > 8 ? 16 : 8;
    if (format.filter == QY_FILTER_NONE) {
        picture.channels = 1;
        picture.bytes.assign(frame.bytes.begin(),
                             frame.bytes.begin() + static_cast<ptrdiff_t>(samples * sampleBytes));
    } else {
        picture.bytes.resize(samples * sampleBytes * 3);
        const QY_STATUS status =
            sampleBytes == 1
                ? QyRaw8toRGB24(frame.bytes.data(), picture.bytes.data(), picture.width,
                                picture.height, QY_RAW2RGB_NEIGHBOUR3, format.filter, 0)
                : QyRaw16toRGB48(frame.bytes.data(), picture.bytes.data(), picture.width,
                                 picture.height, format.bits, QY_RAW2RGB_NEIGHBOUR3, format.filter,
                                 0);
        CheckConversion(status, format);
    }
    if (picture.bitDepth == 16) {
        StretchTo16Bits(picture.bytes, format.bits);
    }
    return picture;
}

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
                 picture.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);
    png_write_info(png, info);
    if (picture.bitDepth == 16 && std::endian::native == std::endian::little) {
        png_set_swap(png);
    }
    const size_t row = static_cast<size_t>(picture.width) * static_cast<size_t>(picture.channels) *
                       static_cast<size_t>(picture.bitDepth / 8);
    for (size_t y = 0; y < picture.height; ++y) {
        png_write_row(png, picture.bytes.data() + y * row);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
}

void WriteRaw(const RawFrame& frame, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(frame.bytes.data()),
               static_cast<std::streamsize>(frame.bytes.size()));
    if (!file.flush()) {
        FailToWrite(path);
    }
}
