// Sharpens whole images, row by row.

#include "filter/Sharpen.h"

#include <cstring>
#include <vector>

#include "QyImageProc.h"
#include "filter/SharpenRow.h"
#include "support/FrameSize.h"
#include "support/Memory.h"

namespace QySharpen {

namespace {

/// Copies of the rows around the one that is being sharpened, so that an image can be
/// sharpened in place.
class Ring {
public:
    explicit Ring(size_t width) : m_half(width / 2 + 1 + kPadding), m_samples(kRows * 2 * m_half) {}

    KeptRow Row(size_t y) {
        int16_t* const even = m_samples.data() + y % kRows * 2 * m_half;
        return {even, even + m_half};
    }
    KeptRows Around(size_t y) { return {Row(y - 2), Row(y - 1), Row(y), Row(y + 1), Row(y + 2)}; }

private:
    size_t m_half;
    std::vector<int16_t> m_samples;
};

template <int Width>
class Walk {
public:
    Walk(const uint8_t* src, uint8_t* dst, size_t width, size_t height)
        : m_src(src), m_dst(dst), m_width(width), m_height(height) {}

    void Run(float factor) {
        if (m_width < kRows || m_height < kRows) {
            Copy(0, m_height * RowBytes());
            return;
        }
        Ring ring(m_width);
        const auto strength = static_cast<int32_t>(factor * 20.0F);
        for (size_t y = 0; y + 1 < kRows; ++y) {
            Keep(ring, y);
        }
        Copy(0, kBorder * RowBytes());
        for (size_t y = kBorder; y + kBorder < m_height; ++y) {
            Keep(ring, y + kBorder);
            Sharpen(ring.Around(y), y, strength);
        }
        Copy((m_height - kBorder) * RowBytes(), kBorder * RowBytes());
    }

private:
    size_t RowBytes() const { return m_width * Width; }

    void Keep(Ring& ring, size_t y) const {
        KeepRow<Width>(m_src + y * RowBytes(), m_width, ring.Row(y));
    }
    void Copy(size_t begin, size_t size) { std::memmove(m_dst + begin, m_src + begin, size); }
    void Sharpen(const KeptRows& rows, size_t y, int32_t strength) {
        constexpr size_t kBorderBytes = kBorder * Width;
        const size_t begin = y * RowBytes();
        Copy(begin, kBorderBytes);
        SharpenRow<Width>(rows, m_src + begin, m_dst + begin, m_width, strength);
        Copy(begin + RowBytes() - kBorderBytes, kBorderBytes);
    }

    const uint8_t* m_src;
    uint8_t* m_dst;
    size_t m_width;
    size_t m_height;
};

}  // namespace

bool IsFactor(float factor) {
    return factor >= 0.1F && factor <= 5.0F;
}

void OneByte(const uint8_t* src, uint8_t* dst, size_t width, size_t height, float factor) {
    Walk<1>(src, dst, width, height).Run(factor);
}

void ThreeBytes(const uint8_t* src, uint8_t* dst, size_t width, size_t height, float factor) {
    Walk<3>(src, dst, width, height).Run(factor);
}

}  // namespace QySharpen

QY_STATUS QySharpen24B(const void* src, void* dst, int32_t width, int32_t height, float factor) {
    if (src == nullptr || dst == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    if (!QySize::IsPossible(width, height, 3) || !QySharpen::IsFactor(factor)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    return QyMemory::OrNotEnough([&] {
        QySharpen::ThreeBytes(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst),
                              static_cast<size_t>(width), static_cast<size_t>(height), factor);
        return QY_OK;
    });
}
