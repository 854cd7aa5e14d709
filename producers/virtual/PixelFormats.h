#pragma once
/// The pixel formats of the virtual cameras, and the packing of 12-bit levels into them.

#include <cstddef>
#include <cstdint>
#include <span>

#include "GenTL/PixelFormatCode.h"

namespace OvVirtual {

using PixelFormat = GenTL::PixelFormatCode;

/// Bits that a pixel takes in memory.
constexpr size_t BitsOf(PixelFormat format) {
    return static_cast<uint32_t>(format) >> 16 & 0xFF;
}

/// Whether it is a Bayer format.
bool IsBayer(PixelFormat format);

/// Whether the colour camera, or without `color` the mono camera, offers the format.
bool Offers(bool color, PixelFormat format);

/// Writes a row of 12-bit levels in a format that a camera offers. The number of levels must be
/// a multiple of 4.
void PackRow(PixelFormat format, std::span<const uint16_t> levels, std::byte* out);

}  // namespace OvVirtual
