// Raw formats and tone.

#include "QyImageProc.h"
#include "Sharpen.h"
#include "image_ratio.h"

namespace {

using ImageRatio::Row;

constexpr Row kRows[] = {
    {"Unpack12", 12, 16,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QyRaw12PackedToRaw16(src, dst, w, h); }},
    {"Unpack10", 11, 16,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QyRaw10PackedToRaw16(src, dst, w, h); }},
    {"Raw16ToRaw8", 16, 8,
     [](const uint8_t* src, uint8_t* dst, int w, int h) {
         QyRaw16toRaw8(src, dst, w, h, QY_BIT_4_11);
     }},
    {"Rgb48ToRgb24", 48, 24,
     [](const uint8_t* src, uint8_t* dst, int w, int h) {
         QyRGB48toRGB24(src, dst, w, h, QY_BIT_4_11);
     }},
    {"Brightness", 8, 8,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QyBrightness(src, dst, w * h, 30); }},
    {"Contrast", 8, 8,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QyContrast(src, dst, w * h, 30); }},
    {"Saturation", 24, 24,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QySaturation(src, dst, w * h, 100); }},
    {"SaturationGrey", 24, 24,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QySaturation(src, dst, w * h, 0); }},
    {"Sharpen24B", 24, 24,
     [](const uint8_t* src, uint8_t* dst, int w, int h) { QySharpen24B(src, dst, w, h, 1.5F); }},
    {"Sharpen8B", 8, 8,
     [](const uint8_t* src, uint8_t* dst, int w, int h) {
         QySharpen::OneByte(src, dst, static_cast<size_t>(w), static_cast<size_t>(h), 1.5F);
     }},
};

[[maybe_unused]] const bool kRegistered = [] {
    for (const Row& row : kRows) {
        ImageRatio::Register(row);
    }
    return true;
}();

}  // namespace
