// The exported functions that convert raw formats: their checks.

#include "QyImageProc.h"
#include "convert/ConvertVector.h"
#include "support/FrameSize.h"

namespace {

using QyConvert::Word;

/// @param words  16-bit words of a pixel
QY_STATUS CheckFrame(const void* src, const void* dst, int32_t width, int32_t height,
                     size_t words) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    const auto pixelBytes = static_cast<int64_t>(words * sizeof(Word));
    return QySize::IsPossible(width, height, pixelBytes) ? QY_OK : QY_PARAMETER_OUT_OF_BOUND;
}

/// Unpacking writes more bytes than it reads, so it can't work in place.
QY_STATUS CheckPacked(const void* src, const void* dst, int32_t width, int32_t height) {
    const QY_STATUS status = CheckFrame(src, dst, width, height, 1);
    return status == QY_OK && src == dst ? QY_PARAMETER_INVALID : status;
}

size_t Samples(int32_t width, int32_t height) {
    return static_cast<size_t>(width) * static_cast<size_t>(height);
}

QY_STATUS ReduceFrame(const void* src, void* dst, int32_t width, int32_t height,
                      QyValidBit validBit, size_t channels) {
    const QY_STATUS status = CheckFrame(src, dst, width, height, channels);
    if (status != QY_OK) {
        return status;
    }
    if (static_cast<uint32_t>(validBit) > QY_BIT_4_11) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    QyConvert::Reduce(static_cast<const Word*>(src), static_cast<uint8_t*>(dst),
                      Samples(width, height) * channels, validBit, QyWriting::ThisMachine());
    return QY_OK;
}

}  // namespace

QY_STATUS QyRaw12PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height) {
    const QY_STATUS status = CheckPacked(src, dst, width, height);
    if (status == QY_OK) {
        QyConvert::Unpack12(static_cast<const uint8_t*>(src), static_cast<Word*>(dst),
                            Samples(width, height) / 2, QyWriting::ThisMachine());
    }
    return status;
}

QY_STATUS QyRaw10PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height) {
    const QY_STATUS status = CheckPacked(src, dst, width, height);
    if (status == QY_OK) {
        QyConvert::Unpack10(static_cast<const uint8_t*>(src), static_cast<Word*>(dst),
                            Samples(width, height), QyWriting::ThisMachine());
    }
    return status;
}

QY_STATUS QyRaw16toRaw8(const void* src, void* dst, int32_t width, int32_t height,
                        QyValidBit validBit) {
    return ReduceFrame(src, dst, width, height, validBit, 1);
}

QY_STATUS QyRGB48toRGB24(const void* src, void* dst, int32_t width, int32_t height,
                         QyValidBit validBit) {
    return ReduceFrame(src, dst, width, height, validBit, 3);
}
