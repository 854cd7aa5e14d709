#pragma once
/// The four forms of the output, with one interface for all.

#include <algorithm>
#include <ostream>
#include <string>

#include "Bytes.h"
#include "InstructionSets.h"
#include "QyImageProc.h"

enum class Form { Rgb24, Bgr24, Argb32, Rgb48 };

constexpr Form kForms[] = {Form::Rgb24, Form::Bgr24, Form::Argb32, Form::Rgb48};
constexpr uint8_t kAlpha = 0x7E;

/// The conversion of a frame by one function of the library.
struct Conversion {
    Form form = Form::Rgb24;
    BayerReference::Options options;
    /// By how many pixels the rows of the four-byte form are longer than those of the
    /// frame.
    int padding = 0;
    /// Distances of source and destination from an aligned address, in bytes.
    size_t offset = 0;
    int bits = 10;

    bool IsWide() const { return form == Form::Rgb48; }
    size_t SampleBytes() const { return IsWide() ? 2 : 1; }
    size_t PixelSamples() const { return form == Form::Argb32 ? 4 : 3; }
    int Limit() const { return IsWide() ? (1 << bits) - 1 : 255; }
    int Stride(int width) const { return form == Form::Argb32 ? width + padding : width; }
    size_t Bytes(int width, int height) const {
        return BayerReference::Place(Stride(width), 0, height) * PixelSamples() * SampleBytes();
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

/// The pixels of a destination, in the order of the source.
class Pixels {
public:
    Pixels(const Conversion& conversion, int width, int height)
        : m_conversion(conversion), m_width(width), m_height(height) {}

    BayerReference::Picture Read(const std::vector<uint8_t>& bytes) const {
        BayerReference::Picture picture{m_width, m_height, {}};
        ForEach([&](int /*x*/, int /*y*/, size_t place) {
            BayerReference::Pixel pixel{};
            for (size_t channel = 0; channel < m_conversion.PixelSamples(); ++channel) {
                uint16_t value = 0;
                std::memcpy(&value, bytes.data() + PlaceOf(place, channel),
                            m_conversion.SampleBytes());
                pixel[channel] = value;
            }
            picture.pixels.push_back(pixel);
        });
        return picture;
    }

    void Write(const BayerReference::Picture& picture, std::vector<uint8_t>& bytes) const {
        ForEach([&](int x, int y, size_t place) {
            for (size_t channel = 0; channel < m_conversion.PixelSamples(); ++channel) {
                const auto value = static_cast<uint16_t>(picture.At(x, y)[channel]);
                std::memcpy(bytes.data() + PlaceOf(place, channel), &value,
                            m_conversion.SampleBytes());
            }
        });
    }

private:
    template <class Run>
    void ForEach(const Run& run) const {
        for (int y = 0; y < m_height; ++y) {
            const int row = m_conversion.options.flip ? m_height - 1 - y : y;
            for (int x = 0; x < m_width; ++x) {
                run(x, y, BayerReference::Place(m_conversion.Stride(m_width), x, row));
            }
        }
    }
    size_t PlaceOf(size_t pixel, size_t channel) const {
        const bool isTurned = m_conversion.form == Form::Bgr24;
        const size_t sample = isTurned ? 2 - channel : channel;
        return (pixel * m_conversion.PixelSamples() + sample) * m_conversion.SampleBytes();
    }

    const Conversion& m_conversion;
    int m_width;
    int m_height;
};

/// The expected content of a destination whose old content is `old`.
inline std::vector<uint8_t> Expected(const Conversion& conversion, const BayerReference::Raw& raw,
                                     const std::vector<uint8_t>& old) {
    BayerReference::Options options = conversion.options;
    options.limit = conversion.Limit();
    options.alpha = kAlpha;
    const Pixels pixels(conversion, raw.width, raw.height);
    std::vector<uint8_t> bytes = old;
    pixels.Write(BayerReference::Interpolate(raw, options, pixels.Read(old)), bytes);
    return bytes;
}

/// The content of a destination before a call.
inline std::vector<uint8_t> OldBytes(const Conversion& conversion, const BayerReference::Raw& raw) {
    return OldBytes(conversion.Bytes(raw.width, raw.height));
}

/// Runs a conversion and returns the first place where the result differs; "" if it
/// doesn't.
inline std::string Compare(const Conversion& conversion, const BayerReference::Raw& raw,
                           const std::vector<uint8_t>& expected) {
    const SourceBytes<uint8_t> bytes(raw, SourceOffset(conversion.offset));
    const SourceBytes<uint16_t> words(raw, SourceOffset(conversion.offset));
    GuardedBytes out(expected.size(), conversion.offset);
    const std::vector<uint8_t> old = OldBytes(conversion, raw);
    std::copy(old.begin(), old.end(), out.Data());
    CountCase();
    const QY_STATUS status =
        CallLibrary(conversion, conversion.IsWide() ? words.Data() : bytes.Data(), out.Data(),
                    raw.width, raw.height);
    return status == QY_OK ? Difference(out, expected) : "status " + std::to_string(status);
}

/// The same on every instruction set, at each of some offsets.
inline void ExpectSameOnAll(Conversion conversion, const BayerReference::Raw& raw,
                            const std::vector<size_t>& offsets) {
    const std::vector<uint8_t> expected = Expected(conversion, raw, OldBytes(conversion, raw));
    WithEachInstructionSet([&] {
        for (const size_t offset : offsets) {
            conversion.offset = offset;
            EXPECT_EQ(Compare(conversion, raw, expected), "")
                << testing::PrintToString(conversion) << ", " << raw.width << " x " << raw.height;
        }
    });
}
