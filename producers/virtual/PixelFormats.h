/// @file
/// The pixel formats of the virtual cameras and how 12-bit levels go into them.
#ifndef OV_VIRTUAL_PIXEL_FORMATS_H
#define OV_VIRTUAL_PIXEL_FORMATS_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace OvVirtual {

enum class PixelFormat : std::uint32_t {
    Mono8 = 0x01080001,
    Mono10 = 0x01100003,
    Mono10Packed = 0x010C0004,
    Mono10p = 0x010A0046,
    Mono12 = 0x01100005,
    Mono12Packed = 0x010C0006,
    Mono12p = 0x010C0047,
    Mono16 = 0x01100007,
    BayerRG8 = 0x01080009,
    BayerRG10 = 0x0110000D,
    BayerRG10Packed = 0x010C0027,
    BayerRG10p = 0x010A0058,
    BayerRG12 = 0x01100011,
    BayerRG12Packed = 0x010C002B,
    BayerRG12p = 0x010C0059,
    BayerRG16 = 0x0110002F,
};

/// Bits that a pixel takes in memory.
constexpr std::size_t BitsOf(PixelFormat format) {
    return static_cast<std::uint32_t>(format) >> 16 & 0xFF;
}

/// Whether pixels stand for the colours of the filter, not for grey.
bool IsBayer(PixelFormat format);

/// Whether a camera with such a sensor offers the format.
bool Offers(bool color, PixelFormat format);

/// Writes a row of 12-bit levels; `levels` are a multiple of 4.
void PackRow(PixelFormat format, std::span<const std::uint16_t> levels, std::byte* out);

}  // namespace OvVirtual

#endif
