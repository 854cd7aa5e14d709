// The exported functions that mirror and turn images: their checks.

#include "geometry/Geometry.h"

#include "QyImageProc.h"

namespace {

/// The checks of all of them. They refuse a destination that is the source, where a
/// sample would be overwritten before it is read.
QY_STATUS CheckMove(const void* src, const void* dst, int32_t width, int32_t height) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (width < 1 || height < 1) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    return src == dst ? QY_PARAMETER_INVALID : QY_OK;
}

template <class Move>
QY_STATUS MoveSamples(const void* src, void* dst, int32_t width, int32_t height, const Move& move) {
    const QY_STATUS status = CheckMove(src, dst, width, height);
    if (status == QY_OK) {
        move(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst),
             static_cast<size_t>(width), static_cast<size_t>(height));
    }
    return status;
}

}  // namespace

QY_STATUS QyImageMirror(const void* src, void* dst, int32_t width, int32_t height,
                        QyImageMirrorMode mode) {
    if (const QY_STATUS status = CheckMove(src, dst, width, height); status != QY_OK) {
        return status;
    }
    switch (mode) {
        case QY_MIRROR_HORIZONTAL:
            return MoveSamples(src, dst, width, height, QyGeometry::ReverseRows);
        case QY_MIRROR_VERTICAL:
            return MoveSamples(src, dst, width, height, QyGeometry::ReverseOrderOfRows);
        default:
            return QY_NOT_SUPPORTED;
    }
}

QY_STATUS QyRotate90CW8B(const void* src, void* dst, int32_t width, int32_t height) {
    return MoveSamples(src, dst, width, height, QyGeometry::TurnClockwise);
}

QY_STATUS QyRotate90CCW8B(const void* src, void* dst, int32_t width, int32_t height) {
    return MoveSamples(src, dst, width, height, QyGeometry::TurnCounterClockwise);
}
