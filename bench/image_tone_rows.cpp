// Rows of the functions for raw formats, tone and sharpening.

#include "QyImageProc.h"
#include "image_row.h"

namespace ImageBench {

namespace {

constexpr float kSharpness = 1.5F;

void SharpenOneByte(const uint8_t* src, uint8_t* dst, int width, int height) {
    QyMonoImgRecord record{};
    record.Sharpness = 1;
    record.SharpFactor = kSharpness;
    // The cast is safe: only the repair of defects changes the source, and it is off.
    QyMono8ImgProcess(const_cast<uint8_t*>(src), dst, width, height, &record);
}

}  // namespace

std::vector<Row> FormatRows() {
    return {
        {"12-bit unpacking", Kind::Other, 12, 16,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QyRaw12PackedToRaw16(src, dst, w, h);
         }},
        {"10-bit unpacking", Kind::Other, 32.0 / 3, 16,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QyRaw10PackedToRaw16(src, dst, w, h);
         }},
        {"16 to 8 bits", Kind::Other, 16, 8,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QyRaw16toRaw8(src, dst, w, h, QY_BIT_4_11);
         }},
        {"RGB48 to RGB24", Kind::Other, 48, 24,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QyRGB48toRGB24(src, dst, w, h, QY_BIT_4_11);
         }},
    };
}

std::vector<Row> ToneRows() {
    return {
        {"brightness", Kind::Brightness, 8, 8,
         [](const uint8_t* src, uint8_t* dst, int w, int h) { QyBrightness(src, dst, w * h, 30); }},
        {"contrast", Kind::Contrast, 8, 8,
         [](const uint8_t* src, uint8_t* dst, int w, int h) { QyContrast(src, dst, w * h, 30); }},
        {"saturation", Kind::Matrix, 24, 24,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QySaturation(src, dst, w * h, 100);
         }},
        {"sharpen, three bytes", Kind::SharpenThreeBytes, 24, 24,
         [](const uint8_t* src, uint8_t* dst, int w, int h) {
             QySharpen24B(src, dst, w, h, kSharpness);
         }},
        {"sharpen, one byte", Kind::SharpenOneByte, 8, 8, SharpenOneByte},
    };
}

}  // namespace ImageBench
