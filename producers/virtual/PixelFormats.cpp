#include "virtual/PixelFormats.h"

#include <algorithm>

namespace OvVirtual {
namespace {

enum class Layout { Bits8, Bits10, Bits12, Bits16, Packed10, Packed12, Dense10, Dense12 };

struct FormatFacts {
    PixelFormat format;
    Layout layout;
    bool bayer;
};

constexpr FormatFacts kFormats[] = {
    {PixelFormat::Mono8, Layout::Bits8, false},
    {PixelFormat::Mono10, Layout::Bits10, false},
    {PixelFormat::Mono10Packed, Layout::Packed10, false},
    {PixelFormat::Mono10p, Layout::Dense10, false},
    {PixelFormat::Mono12, Layout::Bits12, false},
    {PixelFormat::Mono12Packed, Layout::Packed12, false},
    {PixelFormat::Mono12p, Layout::Dense12, false},
    {PixelFormat::Mono16, Layout::Bits16, false},
    {PixelFormat::BayerRG8, Layout::Bits8, true},
    {PixelFormat::BayerRG10, Layout::Bits10, true},
    {PixelFormat::BayerRG10Packed, Layout::Packed10, true},
    {PixelFormat::BayerRG10p, Layout::Dense10, true},
    {PixelFormat::BayerRG12, Layout::Bits12, true},
    {PixelFormat::BayerRG12Packed, Layout::Packed12, true},
    {PixelFormat::BayerRG12p, Layout::Dense12, true},
    {PixelFormat::BayerRG16, Layout::Bits16, true},
};

const FormatFacts* FactsOf(PixelFormat format) {
    const auto* found =
        std::find_if(std::begin(kFormats), std::end(kFormats),
                     [&](const FormatFacts& facts) { return facts.format == format; });
    return found == std::end(kFormats) ? nullptr : found;
}

std::byte Byte(unsigned value) {
    return static_cast<std::byte>(value);
}

/// Two little-endian bytes for each pixel, shifted to the left by `shift`, or to the
/// right if it is negative.
void PutWide(std::span<const uint16_t> levels, int shift, std::byte* out) {
    for (const unsigned level : levels) {
        const unsigned value = shift >= 0 ? level << shift : level >> -shift;
        *out++ = Byte(value);
        *out++ = Byte(value >> 8);
    }
}

/// Three bytes for two pixels: the upper eight bits of each are in the outer bytes, the
/// rest of both in the middle one.
template <unsigned bits>
void PutPacked(std::span<const uint16_t> levels, std::byte* out) {
    constexpr unsigned kRest = bits - 8;
    constexpr unsigned kMask = (1U << kRest) - 1;
    for (size_t i = 0; i < levels.size(); i += 2) {
        const unsigned first = levels[i] >> (12 - bits);
        const unsigned second = levels[i + 1] >> (12 - bits);
        *out++ = Byte(first >> kRest);
        *out++ = Byte((second & kMask) << 4 | (first & kMask));
        *out++ = Byte(second >> kRest);
    }
}

/// Pixels follow each other bit by bit, the lowest bit first.
template <unsigned bits>
void PutDense(std::span<const uint16_t> levels, std::byte* out) {
    uint64_t pending = 0;
    unsigned count = 0;
    for (const uint64_t level : levels) {
        pending |= (level >> (12 - bits)) << count;
        for (count += bits; count >= 8; count -= 8) {
            *out++ = static_cast<std::byte>(pending);
            pending >>= 8;
        }
    }
}

}  // namespace

bool IsBayer(PixelFormat format) {
    const FormatFacts* facts = FactsOf(format);
    return facts != nullptr && facts->bayer;
}

bool Offers(bool color, PixelFormat format) {
    const FormatFacts* facts = FactsOf(format);
    return facts != nullptr && (facts->bayer == color || format == PixelFormat::Mono8);
}

void PackRow(PixelFormat format, std::span<const uint16_t> levels, std::byte* out) {
    switch (FactsOf(format)->layout) {
        case Layout::Bits8:
            for (const unsigned level : levels) {
                *out++ = Byte(level >> 4);
            }
            break;
        case Layout::Bits10:
            PutWide(levels, -2, out);
            break;
        case Layout::Bits12:
            PutWide(levels, 0, out);
            break;
        case Layout::Bits16:
            PutWide(levels, 4, out);
            break;
        case Layout::Packed10:
            PutPacked<10>(levels, out);
            break;
        case Layout::Packed12:
            PutPacked<12>(levels, out);
            break;
        case Layout::Dense10:
            PutDense<10>(levels, out);
            break;
        case Layout::Dense12:
            PutDense<12>(levels, out);
            break;
    }
}

}  // namespace OvVirtual
