// The exported mosaic functions: checks, and the choice of a routine.

#include "bayer/Bayer.h"

#include "QyImageProc.h"
#include "bayer/BayerAdaptive.h"
#include "bayer/BayerVector.h"
#include "support/FrameSize.h"

namespace {

using QyBayer::Image;

constexpr int32_t kByteLimit = 255;

/// The checks that all forms share, after those of the pointers.
/// @param rowPixels   pixels from one row of the destination to the next
/// @param pixelBytes  bytes of a pixel of the destination
QY_STATUS CheckMethodAndSize(uint32_t width, uint32_t height, QyInterpolationMethod method,
                             uint32_t rowPixels, int64_t pixelBytes) {
    constexpr uint32_t kLeast = 4;
    constexpr uint32_t kLeastAdaptive = 6;
    if (static_cast<uint32_t>(method) > QY_RAW2RGB_NEIGHBOUR3) {
        return QY_NOT_SUPPORTED;
    }
    const uint32_t least = method == QY_RAW2RGB_ADAPTIVE ? kLeastAdaptive : kLeast;
    if (width % 2 != 0 || height % 2 != 0 || width < least || height < least ||
        !QySize::IsPossible(width, height, pixelBytes) ||
        !QySize::IsPossible(rowPixels, height, pixelBytes)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    return QY_OK;
}

/// Copies each sample to all three colours.
template <class Sample, int Width>
void CopyMono(const Image<Sample, Width>& image) {
    // A flip begins at a multiple of the width, not of the stride: applications rely on it. The two
    // differ only with four bytes a pixel.
    Sample* out = image.dst;
    auto step = static_cast<ptrdiff_t>(image.stride);
    if (image.flip) {
        out += (image.height - 1) * image.width * Width;
        step = -step;
    }
    const Sample* in = image.src;
    for (size_t y = 0; y < image.height; ++y, out += step) {
        for (size_t x = 0; x < image.width; ++x, ++in) {
            image.Put(out + x * Width, *in, *in, *in);
        }
    }
}

template <class Sample, int Width>
void InterpolateMosaic(const Image<Sample, Width>& image, QyInterpolationMethod method,
                       QyBayer::Layout layout) {
    switch (method) {
        case QY_RAW2RGB_NEIGHBOUR:
            QyBayer::InterpolateFast(image, QyBayer::Neighbours::TwoByTwo, layout);
            break;
        case QY_RAW2RGB_NEIGHBOUR3:
            QyBayer::InterpolateFast(image, QyBayer::Neighbours::ThreeByThree, layout);
            break;
        default:
            QyBayer::InterpolateAdaptive(image, layout);
            break;
    }
}

template <class Sample, int Width>
void Interpolate(const Image<Sample, Width>& image, QyInterpolationMethod method,
                 QyColorFilter filter) {
    if (filter == QY_FILTER_NONE) {
        CopyMono(image);
        return;
    }
    const bool isAdaptive = method == QY_RAW2RGB_ADAPTIVE;
    if (static_cast<uint32_t>(filter) <= QY_BAYER_BG) {
        InterpolateMosaic(image, method, QyBayer::LayoutOf(filter));
    } else if (isAdaptive) {
        QyBayer::CopyBorder(image);
    }
    if (isAdaptive) {
        for (size_t y = 0; y < image.height; ++y) {
            image.Finish(image.Out(y));
        }
    }
}

template <class Sample, int Width>
Image<Sample, Width> MakeImage(const void* src, void* dst, uint32_t width, uint32_t height,
                               uint8_t flip) {
    Image<Sample, Width> image{};
    image.src = static_cast<const Sample*>(src);
    image.dst = static_cast<Sample*>(dst);
    image.width = width;
    image.height = height;
    image.stride = static_cast<size_t>(width) * Width;
    image.flip = flip != 0;
    image.red = QyBayer::R;
    image.blue = QyBayer::B;
    image.limit = kByteLimit;
    image.machine = QyWriting::ThisMachine();
    return image;
}

}  // namespace

QY_STATUS QyBayer::ConvertRaw8(const void* src, void* dst, uint32_t width, uint32_t height,
                               const Conversion& conversion, const RowWork<uint8_t>* onRow) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    const QY_STATUS status = CheckMethodAndSize(width, height, conversion.method, width, 3);
    if (status != QY_OK) {
        return status;
    }
    auto image = MakeImage<uint8_t, 3>(src, dst, width, height, conversion.flip);
    image.onRow = onRow;
    if (conversion.order == QY_ORDER_BGR) {
        image.red = QyBayer::B;
        image.blue = QyBayer::R;
    }
    Interpolate(image, conversion.method, conversion.filter);
    return QY_OK;
}

QY_STATUS QyRaw8toRGB24(const void* src, void* dst, uint32_t width, uint32_t height,
                        QyInterpolationMethod method, QyColorFilter filter, uint8_t flip) {
    return QyRaw8toRGB24Ex(src, dst, width, height, method, filter, flip, QY_ORDER_RGB);
}

QY_STATUS QyRaw8toRGB24Ex(const void* src, void* dst, uint32_t width, uint32_t height,
                          QyInterpolationMethod method, QyColorFilter filter, uint8_t flip,
                          QyChannelOrder order) {
    if (static_cast<uint32_t>(order) > QY_ORDER_BGR) {
        return QY_NOT_SUPPORTED;
    }
    return QyBayer::ConvertRaw8(src, dst, width, height, {method, filter, flip, order}, nullptr);
}

QY_STATUS QyRaw8toARGB32(const void* src, void* dst, uint32_t width, uint32_t height,
                         int32_t stride, QyInterpolationMethod method, QyColorFilter filter,
                         uint8_t flip, uint8_t alpha) {
    const auto rowPixels = static_cast<uint32_t>(stride);
    if (dst == nullptr || width < 2 || height < 2 || stride < 0 || rowPixels < width ||
        src == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    constexpr int64_t kPixelBytes = 4;
    const QY_STATUS status = CheckMethodAndSize(width, height, method, rowPixels, kPixelBytes);
    if (status != QY_OK) {
        return status;
    }
    auto image = MakeImage<uint8_t, 4>(src, dst, width, height, flip);
    image.stride = static_cast<size_t>(stride) * kPixelBytes;
    image.alpha = alpha;
    Interpolate(image, method, filter);
    return QY_OK;
}

QY_STATUS QyRaw16toRGB48(const void* src, void* dst, uint32_t width, uint32_t height, int32_t bits,
                         QyInterpolationMethod method, QyColorFilter filter, uint8_t flip) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    constexpr int64_t kPixelBytes = 3 * sizeof(QyBayer::Word);
    const QY_STATUS status = CheckMethodAndSize(width, height, method, width, kPixelBytes);
    if (status != QY_OK) {
        return status;
    }
    auto image = MakeImage<QyBayer::Word, 3>(src, dst, width, height, flip);
    constexpr int32_t kMostBits = 16;
    image.limit = (1 << (bits < 0 ? 0 : (bits > kMostBits ? kMostBits : bits))) - 1;
    Interpolate(image, method, filter);
    return QY_OK;
}
