#pragma once
/// Frames in files, and what `ovtool convert` makes of them.

#include <png.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "ToolTest.h"

using Bytes = std::vector<uint8_t>;

/// Levels all over, the same in each run.
inline Bytes Noise(size_t size) {
    std::mt19937 random(1);
    Bytes bytes(size);
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(random());
    }
    return bytes;
}

/// 16-bit words of so many bits.
inline Bytes NoiseWords(size_t count, unsigned bits) {
    Bytes bytes = Noise(count * 2);
    for (size_t i = 1; i < bytes.size(); i += 2) {
        bytes[i] = static_cast<uint8_t>(bytes[i] & ((1U << (bits - 8)) - 1));
    }
    return bytes;
}

/// A PNG file as libpng's simple interface gives it: words in the machine's order.
struct PngFile {
    explicit PngFile(const std::string& path) {
        png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        FILE* const file = std::fopen(path.c_str(), "rb");
        if (file != nullptr) {
            png_init_io(png, file);
            png_read_png(png, info, PNG_TRANSFORM_SWAP_ENDIAN, nullptr);
            width = png_get_image_width(png, info);
            height = png_get_image_height(png, info);
            channels = png_get_channels(png, info);
            bitDepth = png_get_bit_depth(png, info);
            const size_t row = png_get_rowbytes(png, info);
            for (uint32_t y = 0; y < height; ++y) {
                const uint8_t* const begin = png_get_rows(png, info)[y];
                bytes.insert(bytes.end(), begin, begin + row);
            }
            std::fclose(file);
        }
        png_destroy_read_struct(&png, &info, nullptr);
    }

    uint32_t width = 0;
    uint32_t height = 0;
    int channels = 0;
    int bitDepth = 0;
    Bytes bytes;
};

class ConvertTest : public ToolTest {
protected:
    void WriteFrame(const Bytes& bytes) const {
        std::ofstream(frame, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    /// The command for the frame of that form.
    ToolRun Convert(const std::string& format, int width, int height,
                    const std::string& options = "") const {
        return Run(OV_TOOL_BARE, "convert " + frame + " -f " + format + " --width " +
                                     std::to_string(width) + " --height " + std::to_string(height) +
                                     " " + options);
    }

    /// The picture's bytes.
    Bytes Pixels(const std::string& format, int width, int height,
                 const std::string& options) const {
        const std::string output = (folder / "pixels.raw").string();
        const ToolRun run = Convert(format, width, height, options + " -o " + output);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
        std::ifstream file(output, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void ExpectRefused(const std::string& format, int width, int height, const std::string& options,
                       const std::string& text, int code = Exit::kFailed) const {
        ExpectFails(Convert(format, width, height, options), "ovtool: " + text + "\n", code);
    }

    const std::string frame = (folder / "frame.raw").string();
    const std::string picture = (folder / "frame.png").string();
};
