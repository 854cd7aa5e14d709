// The noise reduction in loops over single bytes, for comparison with the vectors.

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "NoiseReference.h"
#include "image_row.h"

namespace ImageBench {

namespace {

constexpr ptrdiff_t kPixelBytes = 3;
constexpr size_t kLevels = 256;

std::array<int, kLevels> MakeTolerances() {
    std::array<int, kLevels> tolerances{};
    for (size_t level = 0; level < kLevels; ++level) {
        tolerances[level] = NoiseReference::Tolerance(static_cast<int>(level));
    }
    return tolerances;
}

int Taken(int difference, int tolerance) {
    return std::abs(difference) < tolerance ? difference : 0;
}

/// @param kept     the pixel in a copy of the image as it was
/// @param offsets  offsets of the neighbours
void ReducePixel(const uint8_t* kept, const std::array<ptrdiff_t, 8>& offsets, uint8_t* out) {
    static const std::array<int, kLevels> tolerances = MakeTolerances();
    const int first = kept[0] - kept[1];
    const int third = kept[2] - kept[1];
    const std::array<int, 3> limits = {tolerances[kept[0]], tolerances[kept[1]],
                                       tolerances[kept[2]]};
    std::array<int, 3> sums{};
    for (const ptrdiff_t offset : offsets) {
        const uint8_t* const near = kept + offset;
        sums[0] += Taken(near[0] - near[1] - first, limits[0]);
        sums[1] += Taken(near[1] - kept[1], limits[1]);
        sums[2] += Taken(near[2] - near[1] - third, limits[2]);
    }
    const int green = kept[1] + sums[1] / 15;
    out[0] = NoiseReference::Clip(first + green + sums[0] / 9);
    out[1] = NoiseReference::Clip(green);
    out[2] = NoiseReference::Clip(third + green + sums[2] / 9);
}

void Pass(std::vector<uint8_t>& kept, uint8_t* image, int width, int height, int radius) {
    std::memcpy(kept.data(), image, kept.size());
    const ptrdiff_t row = width * kPixelBytes;
    const ptrdiff_t down = radius * row;
    const ptrdiff_t right = radius * kPixelBytes;
    const std::array<ptrdiff_t, 8> offsets = {-down - right, -down, -down + right, -right, right,
                                              down - right,  down,  down + right};
    for (int y = radius; y + radius < height; ++y) {
        for (int x = radius; x + radius < width; ++x) {
            const ptrdiff_t place = y * row + x * kPixelBytes;
            ReducePixel(kept.data() + place, offsets, image + place);
        }
    }
}

void ReduceNoisePlainly(const uint8_t* /*src*/, uint8_t* dst, int width, int height) {
    std::vector<uint8_t> kept(static_cast<size_t>(width) * static_cast<size_t>(height) *
                              kPixelBytes);
    Pass(kept, dst, width, height, 1);
    Pass(kept, dst, width, height, 2);
}

}  // namespace

std::vector<Rival> PlainRivals() {
    return {{"scalar form", Kind::NoiseReduction, ReduceNoisePlainly, true}};
}

}  // namespace ImageBench
