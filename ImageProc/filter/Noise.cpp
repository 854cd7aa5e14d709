// Reduces the noise of whole images, row by row.

#include "filter/Noise.h"

#include <vector>

#include "filter/NoiseRow.h"
#include "tone/ToneVector.h"

namespace QyNoise {

namespace {

constexpr size_t kPixelBytes = 3;
constexpr size_t kLevels = 256;
constexpr size_t kMostRadius = 2;

using Tolerances = std::array<uint8_t, kLevels>;

/// For each level of a pixel, the difference that a neighbour must stay below to count.
/// It grows from dark levels to the lower middle and falls after it.
constexpr Tolerances MakeTolerances() {
    Tolerances tolerances = {28,  42,  55,  71,  82,  93,  103, 113, 120, 128, 138, 146, 151, 157,
                             161, 167, 171, 176, 180, 183, 187, 189, 192, 194, 195, 197, 199, 200,
                             202, 203, 204, 205, 205, 205, 206, 206, 206, 206, 206, 206, 206, 206,
                             206, 205, 205, 204, 204, 203, 202, 202, 201, 201, 200, 199, 198, 198,
                             197, 196, 195, 194, 193, 193, 192, 191, 190, 189};
    for (size_t level = 66; level <= 127; ++level) {
        tolerances[level] = static_cast<uint8_t>(254 - level);
    }
    tolerances[128] = 127;
    tolerances[129] = 126;
    for (size_t level = 130; level < kLevels; ++level) {
        tolerances[level] = static_cast<uint8_t>(256 - level);
    }
    return tolerances;
}

constexpr Tolerances kTolerances = MakeTolerances();
static_assert(kTolerances[65] == 189 && kTolerances[66] == 188 && kTolerances[127] == 127);
static_assert(kTolerances[130] == 126 && kTolerances[131] == 125 && kTolerances[255] == 1);

/// Copies of the rows around the one that is being changed, as they were. Rows further
/// down haven't been changed yet, so they needn't be kept.
class Rows {
public:
    explicit Rows(size_t width)
        : m_width(width),
          m_length(width + kPadding),
          m_samples(kRing * kPlanes * m_length),
          m_tolerances(m_length * kPixelBytes) {}

    void Keep(const uint8_t* row, size_t y) { KeepRow(row, m_width, Kept(y)); }
    void Reduce(uint8_t* row, size_t y, size_t radius) {
        QyTone::MapBytes(row, m_tolerances.data(), m_width * kPixelBytes, kTolerances.data());
        ReduceRow({Kept(y - radius), Kept(y), Kept(y + radius)}, m_tolerances.data(), row, m_width,
                  radius);
    }

private:
    static constexpr size_t kRing = 2 * kMostRadius + 1;
    static constexpr size_t kPlanes = 3;

    KeptRow Kept(size_t y) {
        int16_t* const green = m_samples.data() + y % kRing * kPlanes * m_length;
        return {green, green + m_length, green + 2 * m_length};
    }

    size_t m_width;
    size_t m_length;
    std::vector<int16_t> m_samples;
    std::vector<uint8_t> m_tolerances;
};

void Pass(uint8_t* image, size_t width, size_t height, size_t radius, Rows& rows) {
    if (width <= 2 * radius || height <= 2 * radius) {
        return;
    }
    const auto row = [&](size_t y) { return image + y * width * kPixelBytes; };
    for (size_t y = 0; y < 2 * radius; ++y) {
        rows.Keep(row(y), y);
    }
    for (size_t y = radius; y + radius < height; ++y) {
        rows.Keep(row(y + radius), y + radius);
        rows.Reduce(row(y), y, radius);
    }
}

}  // namespace

void Reduce(uint8_t* image, size_t width, size_t height) {
    Rows rows(width);
    for (size_t radius = 1; radius <= kMostRadius; ++radius) {
        Pass(image, width, height, radius, rows);
    }
}

}  // namespace QyNoise
