// Rows of the mosaic functions.

#include "QyImageProc.h"
#include "image_row.h"

namespace ImageBench {

namespace {

template <QyInterpolationMethod Method>
void Rgb24(const uint8_t* src, uint8_t* dst, int width, int height) {
    QyRaw8toRGB24(src, dst, static_cast<uint32_t>(width), static_cast<uint32_t>(height), Method,
                  QY_BAYER_RG, 0);
}

template <QyInterpolationMethod Method>
void Argb32(const uint8_t* src, uint8_t* dst, int width, int height) {
    QyRaw8toARGB32(src, dst, static_cast<uint32_t>(width), static_cast<uint32_t>(height), width,
                   Method, QY_BAYER_RG, 0, 0xFF);
}

template <QyInterpolationMethod Method>
void Rgb48(const uint8_t* src, uint8_t* dst, int width, int height) {
    constexpr int32_t kBits = 16;
    QyRaw16toRGB48(src, dst, static_cast<uint32_t>(width), static_cast<uint32_t>(height), kBits,
                   Method, QY_BAYER_RG, 0);
}

}  // namespace

std::vector<Row> BayerRows() {
    return {
        {"Bayer to RGB, method 0", Kind::Cells, 8, 24, Rgb24<QY_RAW2RGB_NEIGHBOUR>},
        {"Bayer to RGB, method 2", Kind::Bilinear, 8, 24, Rgb24<QY_RAW2RGB_NEIGHBOUR3>},
        {"Bayer to RGB, method 1", Kind::EdgeAware, 8, 24, Rgb24<QY_RAW2RGB_ADAPTIVE>},
        {"to four bytes, method 2", Kind::BilinearFourBytes, 8, 32, Argb32<QY_RAW2RGB_NEIGHBOUR3>},
        {"16-bit, method 0", Kind::Other, 16, 48, Rgb48<QY_RAW2RGB_NEIGHBOUR>},
        {"16-bit, method 2", Kind::Bilinear16, 16, 48, Rgb48<QY_RAW2RGB_NEIGHBOUR3>},
        {"16-bit, method 1", Kind::EdgeAware16, 16, 48, Rgb48<QY_RAW2RGB_ADAPTIVE>},
    };
}

}  // namespace ImageBench
