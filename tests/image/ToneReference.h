#pragma once
/// Tone, value by value: tables from their curves, and images pixel by pixel.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ToneReference {

using Table = std::vector<uint32_t>;
using Image = std::vector<uint8_t>;

struct Point {
    double x;
    double y;
};

/// A segment of a curve from b to c, with the neighbours a and d.
inline void Draw(std::vector<double>& table, const Point& a, const Point& b, const Point& c,
                 const Point& d, bool begins, bool ends) {
    const double dx = c.x - b.x;
    const double slopeAtB = begins ? 0 : (c.y - a.y) / (c.x - a.x);
    const double slopeAtC = ends ? 0 : (d.y - b.y) / (d.x - b.x);
    double c1 = b.y + slopeAtB * dx / 3;
    double c2 = c.y - slopeAtC * dx / 3;
    if (begins && ends) {
        c1 = (c.y - b.y) / 3 + b.y;
        c2 = 2 * (c.y - b.y) / 3 + b.y;
    } else if (begins) {
        c1 = (c2 - b.y) * 0.5 + b.y;
    } else if (ends) {
        c2 = (c1 - c.y) * 0.5 + c.y;
    }
    const auto n = static_cast<double>(table.size() - 1);
    const auto steps = static_cast<size_t>(std::trunc(n * dx + 0.5));
    const auto start = static_cast<size_t>(std::trunc(b.x * n + 0.5));
    for (size_t i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / dx / n;
        const double u = 1 - t;
        const double y =
            u * u * u * b.y + 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t * c.y;
        if (start + i < table.size()) {
            table[start + i] = y < 0 ? 0 : (y > 1 ? 1 : y);
        }
    }
}

inline Table ToWords(const std::vector<double>& curve) {
    const auto last = static_cast<double>(curve.size() - 1);
    Table table;
    for (const double y : curve) {
        table.push_back(static_cast<uint32_t>(std::trunc(y * last + 0.5)));
    }
    return table;
}

inline Table Contrast(int contrast, int bits) {
    const int scale = 1 << (bits - 8);
    const double last = (1 << bits) - 1;
    const int dark = 63 * scale;
    const int bright = 191 * scale;
    const int offset = contrast * scale / 2;
    const Point points[] = {{0, 0},
                            {dark / last, (dark - offset) / last},
                            {0.5, 0.5},
                            {bright / last, (bright + offset) / last},
                            {1, 1}};
    std::vector<double> curve(size_t{1} << bits);
    Draw(curve, points[0], points[0], points[1], points[2], true, false);
    Draw(curve, points[0], points[1], points[2], points[3], false, false);
    Draw(curve, points[1], points[2], points[3], points[4], false, false);
    Draw(curve, points[2], points[3], points[4], points[4], false, true);
    return ToWords(curve);
}

inline Table Lightness(int lightness, int bits) {
    const int scale = 1 << (bits - 8);
    const double last = (1 << bits) - 1;
    const double ratio = static_cast<double>(lightness * scale) / (150 * scale);
    const double middle = (220 * scale + 100 * scale) * 0.5;
    const double half = ratio * (220 * scale - 100 * scale) * 0.5;
    const Point begin{0, 0};
    const Point bend{std::trunc(middle - half) / last, std::trunc(middle + half) / last};
    const Point end{1, 1};
    const Point beyond{1.1, 1.0};
    std::vector<double> curve(size_t{1} << bits);
    Draw(curve, begin, begin, bend, end, true, false);
    Draw(curve, begin, bend, end, beyond, false, false);
    return ToWords(curve);
}

inline Table Gamma(int bits, double gamma) {
    const double last = (1 << bits) - 1;
    Table table;
    for (int i = 0; i < 1 << bits; ++i) {
        table.push_back(static_cast<uint32_t>(std::trunc(std::pow(i / last, 1 / gamma) * last)));
    }
    return table;
}

inline Table GammaRecord(double gamma) {
    Table table;
    for (int i = 0; i <= 4096; ++i) {
        table.push_back(
            static_cast<uint32_t>(std::trunc(std::pow(i * (1.0 / 4096), 1 / gamma) * 4096)));
    }
    table[4096] = 0;
    return table;
}

inline Table ContrastRecord(int contrast) {
    Table table = Contrast(contrast, 12);
    table.push_back(1);
    return table;
}

inline Image Lut(int contrast, int lightness, double gamma) {
    const Table tone = Gamma(12, gamma);
    const Table light = Lightness(lightness, 12);
    const Table curve = Contrast(contrast, 12);
    Image lut;
    for (size_t i = 0; i < 256; ++i) {
        lut.push_back(static_cast<uint8_t>(curve[light[tone[i * 16]]] >> 4));
    }
    return lut;
}

inline Image ThroughTable(const Image& image, const Table& table) {
    Image out;
    for (const uint8_t byte : image) {
        out.push_back(static_cast<uint8_t>(table[byte]));
    }
    return out;
}

inline uint8_t Clip(int value) {
    return static_cast<uint8_t>(std::clamp(value, 0, 255));
}

inline Image Saturate(const Image& image, int factor) {
    constexpr int kScale = 1 << 20;
    const int k = 1024 - 16 * factor;
    const int a = 256 + (16 * factor - 1024) * 183552 / kScale;
    const int b = k * 103936 / kScale;
    const int c = k * 79616 / kScale;
    const int d = k * 153856 / kScale;
    const int e = k * 29952 / kScale;
    Image out(image.size());
    for (size_t i = 0; i < image.size(); i += 3) {
        const int s0 = image[i];
        const int s1 = image[i + 1];
        const int s2 = image[i + 2];
        const auto grey = static_cast<uint8_t>((150 * s1 + 77 * s0 + 29 * s2) >> 8);
        out[i] = factor == 0 ? grey : Clip((c * s2 + b * s1 + a * s0) >> 8);
        out[i + 1] = factor == 0 ? grey : Clip((a * s1 + d * s0 + e * s2) >> 8);
        out[i + 2] = factor == 0 ? grey : Clip((c * s1 + b * s0 + a * s2) >> 8);
    }
    return out;
}

/// The sharpening filter with all its 21 coefficients, times a strength.
class Sharpening {
public:
    Sharpening(const Image& image, int width, int height, int channels, float factor)
        : m_image(image),
          m_width(width),
          m_height(height),
          m_channels(channels),
          m_strength(static_cast<int>(factor * 20.0F)) {}

    Image Run() const {
        Image out = m_image;
        for (int y = 2; y <= m_height - 3; ++y) {
            for (int x = 2; x <= m_width - 3 && m_width > 4; ++x) {
                Put(out, x, y);
            }
        }
        return out;
    }

private:
    size_t Place(int x, int y) const {
        return static_cast<size_t>(y * m_width + x) * static_cast<size_t>(m_channels);
    }
    int Centre(int x, int y) const { return m_image[Place(x, y) + (m_channels == 3 ? 1 : 0)]; }
    int Filter(int x, int y) const {
        static constexpr int kWeights[5][5] = {{0, -1, -2, -1, 0},
                                               {-1, 0, 2, 0, -1},
                                               {-2, 2, 8, 2, -2},
                                               {-1, 0, 2, 0, -1},
                                               {0, -1, -2, -1, 0}};
        int sum = 0;
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                sum += kWeights[dy + 2][dx + 2] * Centre(x + dx, y + dy);
            }
        }
        return sum;
    }
    int Delta(int x, int y) const {
        const int d = Filter(x, y) * m_strength;
        if (d < -128) {
            return std::clamp((d + 128) >> 8, -512, 511);
        }
        return d > 128 ? std::clamp((d - 128) >> 8, -512, 511) : 0;
    }
    void Put(Image& out, int x, int y) const {
        const int before = Centre(x, y);
        const int after = Clip(before + Delta(x, y));
        for (size_t i = 0; i < static_cast<size_t>(m_channels); ++i) {
            const size_t place = Place(x, y) + i;
            out[place] = Clip(m_image[place] - before + after);
        }
    }

    const Image& m_image;
    int m_width;
    int m_height;
    int m_channels;
    int m_strength;
};

}  // namespace ToneReference
