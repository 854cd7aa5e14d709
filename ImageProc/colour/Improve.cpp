// The exported functions that correct colours and tone of whole images.

#include "colour/ColourRecord.h"
#include "colour/ColourTables.h"
#include "support/FrameSize.h"
#include "tone/ToneVector.h"

namespace {

using QyColour::PackedMatrix;
using QyColour::ToneTable;
using QyImprove::PixelOrder;

struct Frame {
    const uint8_t* src;
    uint8_t* dst;
    size_t pixels;
};

/// The corrections to make. Each may be null.
struct Stages {
    const QyColorCorrectionRecord* record;
    const uint32_t* contrast;
    const uint32_t* gamma;
};

bool IsKind(const uint32_t* toneRecord, uint32_t kind) {
    constexpr size_t kKindWord = QY_TONE_RECORD_SIZE / sizeof *toneRecord - 1;
    return toneRecord == nullptr || toneRecord[kKindWord] == kind;
}

QY_STATUS Check(const void* src, const void* dst, int32_t width, int32_t height, int64_t pixelBytes,
                const Stages& stages) {
    constexpr uint32_t kGammaKind = 0;
    constexpr uint32_t kContrastKind = 1;
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (!QySize::IsPossible(width, height, pixelBytes)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    const bool isNothing =
        stages.record == nullptr && stages.contrast == nullptr && stages.gamma == nullptr;
    if (!IsKind(stages.contrast, kContrastKind) || !IsKind(stages.gamma, kGammaKind) || isNothing) {
        return QY_PARAMETER_INVALID;
    }
    return QY_OK;
}

/// Corrects pixels of `Width` bytes whose R is at `Red` and whose B is at 2 - `Red`.
/// Without a tone record, the limits of the table are the right ones as well.
template <int Width, int Red>
void CorrectColours(const Frame& frame, const PackedMatrix& matrix, const ToneTable& tone) {
    constexpr int kBlue = 2 - Red;
    const uint8_t* in = frame.src;
    uint8_t* out = frame.dst;
    for (size_t i = 0; i < frame.pixels; ++i, in += Width, out += Width) {
        const uint64_t sums = matrix.Sums(in[Red], in[1], in[kBlue]);
        if constexpr (Width == 4) {
            out[3] = in[3];
        }
        out[Red] = tone.Of(PackedMatrix::Sum<0>(sums));
        out[1] = tone.Of(PackedMatrix::Sum<1>(sums));
        out[kBlue] = tone.Of(PackedMatrix::Sum<2>(sums));
    }
}

/// Corrects the tone of every byte except the fourth of a pixel.
template <int Width>
void CorrectTone(const Frame& frame, const ToneTable& tone) {
    const auto table = tone.OfBytes();
    if constexpr (Width == 3) {
        QyTone::MapBytes(frame.src, frame.dst, frame.pixels * Width, table.data());
    } else {
        for (size_t i = 0; i < frame.pixels * Width; i += Width) {
            frame.dst[i] = table[frame.src[i]];
            frame.dst[i + 1] = table[frame.src[i + 1]];
            frame.dst[i + 2] = table[frame.src[i + 2]];
            frame.dst[i + 3] = frame.src[i + 3];
        }
    }
}

template <int Width, int Red>
QY_STATUS Improve(const void* src, void* dst, int32_t width, int32_t height, const Stages& stages) {
    const QY_STATUS status = Check(src, dst, width, height, Width, stages);
    if (status != QY_OK) {
        return status;
    }
    const Frame frame{static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst),
                      static_cast<size_t>(width) * static_cast<size_t>(height)};
    const ToneTable tone(stages.contrast, stages.gamma);
    if (stages.record == nullptr) {
        CorrectTone<Width>(frame, tone);
        return QY_OK;
    }
    // Held for the whole pass, so that one picture has one colour correction.
    const QyColour::RecordLock lock(*stages.record);
    if (const auto matrix = QyColour::SmallMatrixOf(*stages.record)) {
        const bool hasTone = stages.contrast != nullptr || stages.gamma != nullptr;
        constexpr auto kOrder =
            Width == 4 ? PixelOrder::Rgba : (Red == 0 ? PixelOrder::Rgb : PixelOrder::Bgr);
        QyImprove::CorrectBySmallMatrix(frame.src, frame.dst, frame.pixels, kOrder, *matrix,
                                        hasTone ? tone.Data() : nullptr);
    } else {
        CorrectColours<Width, Red>(frame, PackedMatrix(*stages.record), tone);
    }
    return QY_OK;
}

}  // namespace

QY_STATUS QyImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                            const QyColorCorrectionRecord* colorRecord, const uint32_t* contrastLut,
                            const uint32_t* gammaLut) {
    return Improve<3, 0>(src, dst, width, height, {colorRecord, contrastLut, gammaLut});
}

QY_STATUS QyImageImprovmentEx(const void* src, void* dst, int32_t width, int32_t height,
                              const QyColorCorrectionRecord* colorRecord,
                              const uint32_t* contrastLut, const uint32_t* gammaLut,
                              QyChannelOrder order) {
    const Stages stages{colorRecord, contrastLut, gammaLut};
    switch (order) {
        case QY_ORDER_RGB:
            return Improve<3, 0>(src, dst, width, height, stages);
        case QY_ORDER_BGR:
            return Improve<3, 2>(src, dst, width, height, stages);
        default:
            return QY_NOT_SUPPORTED;
    }
}

QY_STATUS QyARGBImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                                const QyColorCorrectionRecord* colorRecord,
                                const uint32_t* contrastLut, const uint32_t* gammaLut) {
    return Improve<4, 0>(src, dst, width, height, {colorRecord, contrastLut, gammaLut});
}
