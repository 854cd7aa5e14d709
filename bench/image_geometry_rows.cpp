// Rows of the functions that mirror and turn images and repair defects.

#include "QyImageProc.h"
#include "image_row.h"

namespace ImageBench {

namespace {

template <QyImageMirrorMode Mode>
void Mirror(const uint8_t* src, uint8_t* dst, int width, int height) {
    QyImageMirror(src, dst, width, height, Mode);
}

template <QY_STATUS Function(const void*, void*, int32_t, int32_t)>
void Turn(const uint8_t* src, uint8_t* dst, int width, int height) {
    Function(src, dst, width, height);
}

void Repair(const uint8_t* /*src*/, uint8_t* dst, int width, int height) {
    constexpr int32_t kBits = 8;
    QyAutoRawDefectivePixelCorrect(dst, width, height, kBits);
}

}  // namespace

std::vector<Row> GeometryRows() {
    return {
        {"mirror, horizontal", Kind::MirrorHorizontal, 8, 8, Mirror<QY_MIRROR_HORIZONTAL>},
        {"mirror, vertical", Kind::MirrorVertical, 8, 8, Mirror<QY_MIRROR_VERTICAL>},
        {"rotate clockwise", Kind::TurnClockwise, 8, 8, Turn<QyRotate90CW8B>},
        {"rotate counter-clockwise", Kind::TurnCounterClockwise, 8, 8, Turn<QyRotate90CCW8B>},
        {"defect repair in place", Kind::Other, 8, 8, Repair, true},
    };
}

}  // namespace ImageBench
