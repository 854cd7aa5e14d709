#pragma once
/// The four forms of the output, alike for a test.

#include <ostream>
#include <string>

#include "QyImageProc.h"
#include "frames.h"

enum class Form { Rgb24, Bgr24, Argb32, Rgb48 };

constexpr Form kForms[] = {Form::Rgb24, Form::Bgr24, Form::Argb32, Form::Rgb48};
constexpr uint8_t kAlpha = 0x7E;

/// A frame through one function of the library.
struct Conversion {
    Form form = Form::Rgb24;
    BayerReference::Options options;
    /// Pixels that a row of the four-byte form is longer than the frame.
    int padding = 0;
    /// Bytes by which source and destination miss an aligned place.
    size_t offset = 0;
    int bits = 10;

    bool IsWide() const { return form == Form::Rgb48; }
    size_t SampleBytes() const { return IsWide() ? 2 : 1; }
    size_t PixelSamples() const { return form == Form::Argb32 ? 4 : 3; }
    int Limit() const { return IsWide() ? (1 << bits) - 1 : 255; }
    int Stride(int width) const { return form == Form::Argb32 ? width + padding : width; }
    size_t Bytes(int width, int height) const {
        return static_cast<size_t>(Stride(width) * height) * PixelSamples() * SampleBytes();
    }
};

inline void PrintTo(const Conversion& conversion, std::ostream* out) {
    *out << "form " << static_cast<int>(conversion.form) << " method " << conversion.options.method
         << " filter " << conversion.options.filter << " flip " << conversion.options.flip
         << " padding " << conversion.padding << " offset " << conversion.offset << " bits "
         << conversion.bits;
}

inline QY_STATUS CallLibrary(const Conversion& conversion, const void* src, void* dst, int width,
                             int height) {
    const auto w = static_cast<uint32_t>(width);
    const auto h = static_cast<uint32_t>(height);
    const int method = conversion.options.method;
    const int filter = conversion.options.filter;
    const uint8_t flip = conversion.options.flip ? 1 : 0;
    switch (conversion.form) {
        case Form::Rgb24:
            return QyRaw8toRGB24(src, dst, w, h, method, filter, flip);
        case Form::Bgr24:
            return QyRaw8toRGB24Ex(src, dst, w, h, method, filter, flip, QY_ORDER_BGR);
        case Form::Argb32:
            return QyRaw8toARGB32(src, dst, w, h, conversion.Stride(width), method, filter, flip,
                                  kAlpha);
        default:
            return QyRaw16toRGB48(src, dst, w, h, conversion.bits, method, filter, flip);
    }
}

/// The bytes that the destination must hold, padding as it was before.
inline std::vector<uint8_t> Expected(const Conversion& conversion, const BayerReference::Raw& raw) {
    BayerReference::Options options = conversion.options;
    options.limit = conversion.Limit();
    options.old = conversion.IsWide() ? kGuard * 0x101 : kGuard;
    const BayerReference::Picture picture = BayerReference::Interpolate(raw, options);
    std::vector<uint8_t> bytes(conversion.Bytes(raw.width, raw.height), kGuard);
    const auto put = [&](size_t sample, int value) {
        const auto word = static_cast<uint16_t>(value);
        std::memcpy(bytes.data() + sample * conversion.SampleBytes(), &word,
                    conversion.SampleBytes());
    };
    const bool isTurned = conversion.form == Form::Bgr24;
    for (int y = 0; y < raw.height; ++y) {
        const int row = options.flip ? raw.height - 1 - y : y;
        for (int x = 0; x < raw.width; ++x) {
            const auto place = static_cast<size_t>(row * conversion.Stride(raw.width) + x) *
                               conversion.PixelSamples();
            const BayerReference::Pixel& pixel = picture.At(x, y);
            put(place, pixel[isTurned ? 2 : 0]);
            put(place + 1, pixel[1]);
            put(place + 2, pixel[isTurned ? 0 : 2]);
            if (conversion.form == Form::Argb32) {
                put(place + 3, kAlpha);
            }
        }
    }
    return bytes;
}

/// Runs a conversion and tells where it differs from the reference; "" for
/// nowhere.
inline std::string Compare(const Conversion& conversion, const BayerReference::Raw& raw) {
    const SourceBytes<uint8_t> bytes(raw, conversion.offset);
    const SourceBytes<uint16_t> words(raw, conversion.offset);
    GuardedBytes out(conversion.Bytes(raw.width, raw.height), conversion.offset);
    const QY_STATUS status =
        CallLibrary(conversion, conversion.IsWide() ? words.Data() : bytes.Data(), out.Data(),
                    raw.width, raw.height);
    if (status != QY_OK) {
        return "status " + std::to_string(status);
    }
    const std::vector<uint8_t> expected = Expected(conversion, raw);
    for (size_t i = 0; i < expected.size(); ++i) {
        if (out.Data()[i] != expected[i]) {
            return "byte " + std::to_string(i) + " is " + std::to_string(out.Data()[i]) +
                   " instead of " + std::to_string(expected[i]);
        }
    }
    return out.IsGuardWhole() ? "" : "a byte beside the destination was written";
}
