#pragma once
/// The forms of raw frames that the image functions can take.

#include <cstddef>
#include <cstdint>
#include <string>

#include "GenTL/PixelFormatCode.h"
#include "QyImageProc.h"

/// How samples lie in memory.
enum class Packing {
    None,        ///< a byte, or a 16-bit word, for each sample
    TwoInThree,  ///< two of 12 bits in three bytes
    ThreeInWord  ///< three of 10 bits in a 32-bit word
};

/// A form of a frame's bytes.
struct PixelFormat {
    /// As cameras name it; 0 for forms that only files have.
    GenTL::PixelFormatCode code;
    const char* name;
    /// The colours of one sample a pixel.
    QyColorFilter filter;
    /// Significant bits of a sample; more than 8 stand in 16-bit words.
    int bits;
    Packing packing = Packing::None;
    int channels = 1;
    QyChannelOrder order = QY_ORDER_RGB;

    bool IsMosaic() const { return filter != QY_FILTER_NONE; }
    /// Bytes of a frame of that size.
    size_t Bytes(size_t width, size_t height) const;
};

/// Null when it is not known.
const PixelFormat* FindPixelFormat(uint32_t code);

/// By name or by number. Raises with all names when it is not known.
const PixelFormat& RequirePixelFormat(const std::string& nameOrCode);
