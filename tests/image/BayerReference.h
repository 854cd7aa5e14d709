#pragma once
/// The mosaic interpolation, written pixel by pixel as plainly as possible, for
/// comparison with the library's routines.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace BayerReference {

using Pixel = std::array<int, 4>;  // R, G, B, alpha

/// An image in memory, row after row.
inline size_t Place(int width, int x, int y) {
    return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
}

/// A raw frame; samples are read by column and row.
struct Raw {
    int width = 0;
    int height = 0;
    std::vector<int> samples;

    int At(int x, int y) const { return samples[Place(width, x, y)]; }
};

/// A picture in source order, whatever the flip.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels;

    Pixel& At(int x, int y) { return pixels[Place(width, x, y)]; }
    const Pixel& At(int x, int y) const { return pixels[Place(width, x, y)]; }
};

/// The colour of a sample, 0 to 2, for the layouts 1 to 4.
inline int ColourAt(int filter, int x, int y) {
    static constexpr const char* kCells[] = {"RGGB", "GBRG", "GRBG", "BGGR"};
    const char name = kCells[filter - 1][(y % 2) * 2 + x % 2];
    return name == 'R' ? 0 : (name == 'G' ? 1 : 2);
}

/// The colours of the two by two samples from (x, y) on.
inline Pixel Cell(const Raw& raw, int filter, int x, int y) {
    Pixel sums{};
    for (int dy = 0; dy < 2; ++dy) {
        for (int dx = 0; dx < 2; ++dx) {
            sums[static_cast<size_t>(ColourAt(filter, x + dx, y + dy))] += raw.At(x + dx, y + dy);
        }
    }
    sums[1] >>= 1;
    return sums;
}

inline Picture Blank(const Raw& raw) {
    return {raw.width, raw.height, std::vector<Pixel>(raw.samples.size())};
}

inline Picture TwoByTwo(const Raw& raw, int filter) {
    Picture out = Blank(raw);
    for (int y = 0; y < raw.height; ++y) {
        for (int x = 0; x < raw.width; ++x) {
            if (y == raw.height - 1) {
                out.At(x, y) = Cell(raw, filter, x - x % 2, y - 1);
            } else {
                out.At(x, y) = Cell(raw, filter, std::min(x, raw.width - 2), y);
            }
        }
    }
    return out;
}

inline Pixel Inner(const Raw& raw, int filter, int x, int y) {
    const auto s = [&](int dx, int dy) { return raw.At(x + dx, y + dy); };
    const int diagonal = s(-1, -1) + s(1, -1) + s(-1, 1) + s(1, 1);
    const int own = ColourAt(filter, x, y);
    Pixel pixel{};
    if (own == 1) {
        pixel[1] = (4 * s(0, 0) + diagonal) >> 3;
        pixel[static_cast<size_t>(ColourAt(filter, x - 1, y))] = (s(-1, 0) + s(1, 0)) >> 1;
        pixel[static_cast<size_t>(ColourAt(filter, x, y - 1))] = (s(0, -1) + s(0, 1)) >> 1;
    } else {
        pixel[static_cast<size_t>(own)] = s(0, 0);
        pixel[1] = (s(-1, 0) + s(1, 0) + s(0, -1) + s(0, 1)) >> 2;
        pixel[static_cast<size_t>(2 - own)] = diagonal >> 2;
    }
    return pixel;
}

inline Picture ThreeByThree(const Raw& raw, int filter) {
    Picture out = TwoByTwo(raw, filter);
    for (int y = 1; y + 1 < raw.height; ++y) {
        for (int x = 1; x + 1 < raw.width; ++x) {
            out.At(x, y) = Inner(raw, filter, x, y);
        }
    }
    return out;
}

/// Gradients as lists of offset pairs, along columns; along rows the offsets
/// change places.
inline int Gradient(const Raw& raw, int x, int y, bool alongRows) {
    static constexpr int kPairs[12][4] = {{-1, 2, -1, 0},  {1, 2, 1, 0},    {-1, -2, -1, 0},
                                          {1, -2, 1, 0},   {-2, 2, -2, 0},  {2, 2, 2, 0},
                                          {-2, -2, -2, 0}, {2, -2, 2, 0},   {0, -2, 0, 0},
                                          {0, 2, 0, 0},    {-1, -1, -1, 1}, {1, -1, 1, 1}};
    const auto p = [&](int dx, int dy) {
        return alongRows ? raw.At(x + dy, y + dx) : raw.At(x + dx, y + dy);
    };
    int sum = std::abs(p(0, -1) + p(0, 1) - 2 * p(0, 0));
    for (const auto& pair : kPairs) {
        sum += std::abs(p(pair[0], pair[1]) - p(pair[2], pair[3]));
    }
    return sum;
}

inline int Green(const Raw& raw, int x, int y) {
    const auto p = [&](int dx, int dy) { return raw.At(x + dx, y + dy); };
    const int rows = Gradient(raw, x, y, true);
    const int columns = Gradient(raw, x, y, false);
    const int c = p(0, 0);
    const int vertical = 2 * c - p(0, -2) - p(0, 2);
    const int horizontal = 2 * c - p(-2, 0) - p(2, 0);
    if (rows == columns) {
        return ((p(0, -1) + p(0, 1) + p(-1, 0) + p(1, 0)) >> 2) + ((horizontal + vertical) >> 3);
    }
    return rows > columns ? (vertical + 2 * (p(0, -1) + p(0, 1))) >> 2
                          : (horizontal + 2 * (p(-1, 0) + p(1, 0))) >> 2;
}

/// The arguments of the interpolation, without the frame.
struct Options {
    int method = 0;
    int filter = 1;
    bool flip = false;
    /// Largest value of a sample, for the edge-directed method.
    int limit = 255;
    int alpha = 0;
};

/// The row or column from which one of the border is copied: the first three from the
/// fourth, then the last three from the fourth last.
inline int FromInside(int place, int size) {
    if (place >= 3 && place < size - 3) {
        return place;
    }
    return place < 3 ? 3 : std::max(size - 4, 3);
}

inline Picture CopyFrame(const Picture& inside, bool flip) {
    Picture out = inside;
    const auto turned = [&](int y) { return flip ? inside.height - 1 - y : y; };
    for (int y = 0; y < inside.height; ++y) {
        for (int x = 0; x < inside.width; ++x) {
            const int row = turned(FromInside(turned(y), inside.height));
            out.At(x, y) = inside.At(FromInside(x, inside.width), row);
        }
    }
    return out;
}

/// @param out  the old content of the destination, of which the result depends in frames
///             of six rows or columns
inline Picture EdgeDirected(const Raw& raw, const Options& options, Picture out) {
    const int filter = options.filter;
    const int limit = options.limit;
    const auto fit = [limit](int value) { return std::clamp(value, 0, limit); };
    const auto each = [&raw](auto run) {
        for (int y = 2; y <= raw.height - 3; ++y) {
            for (int x = 2; x <= raw.width - 3; ++x) {
                run(x, y);
            }
        }
    };
    each([&](int x, int y) {
        const bool isGreen = ColourAt(filter, x, y) == 1;
        out.At(x, y)[1] = fit(isGreen ? raw.At(x, y) : Green(raw, x, y));
    });
    each([&](int x, int y) {
        const auto difference = [&](int dx, int dy) {
            return raw.At(x + dx, y + dy) - out.At(x + dx, y + dy)[1];
        };
        const int green = out.At(x, y)[1];
        const auto own = static_cast<size_t>(ColourAt(filter, x, y));
        if (own == 1) {
            out.At(x, y)[static_cast<size_t>(ColourAt(filter, x + 1, y))] =
                fit(((difference(-1, 0) + difference(1, 0)) >> 1) + green);
            out.At(x, y)[static_cast<size_t>(ColourAt(filter, x, y + 1))] =
                fit(((difference(0, -1) + difference(0, 1)) >> 1) + green);
            return;
        }
        const int sum =
            difference(-1, -1) + difference(1, -1) + difference(-1, 1) + difference(1, 1);
        out.At(x, y)[own] = fit(raw.At(x, y));
        out.At(x, y)[2 - own] = fit((sum >> 2) + green);
    });
    return CopyFrame(out, options.flip);
}

inline Picture Mono(const Raw& raw) {
    Picture out = Blank(raw);
    for (size_t i = 0; i < raw.samples.size(); ++i) {
        out.pixels[i].fill(raw.samples[i]);
    }
    return out;
}

inline Picture Colours(const Raw& raw, const Options& options, const Picture& old) {
    if (options.filter == 0) {
        return Mono(raw);
    }
    switch (options.method) {
        case 0:
            return TwoByTwo(raw, options.filter);
        case 1:
            return EdgeDirected(raw, options, old);
        default:
            return ThreeByThree(raw, options.filter);
    }
}

/// @param old  the old content of the destination
inline Picture Interpolate(const Raw& raw, const Options& options, const Picture& old) {
    if (options.filter > 4) {
        return options.method == 1 ? CopyFrame(old, options.flip) : old;
    }
    Picture out = Colours(raw, options, old);
    for (Pixel& pixel : out.pixels) {
        pixel[3] = options.alpha;
    }
    return out;
}

}  // namespace BayerReference
