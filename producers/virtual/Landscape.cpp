/// @file The part of the scene that doesn't move, painted from back to front. Positions
/// are fractions of the picture: u to the right, v downwards, both 0 to 1.
#include <algorithm>
#include <cmath>

#include "Noise.h"
#include "Picture.h"

namespace OvVirtual {
namespace {

constexpr float kHorizon = 0.53F;
constexpr float kAspect = static_cast<float>(kSensorWidth) / static_cast<float>(kSensorHeight);

Color Mix(const Color& a, const Color& b, float share) {
    return {a.r + (b.r - a.r) * share, a.g + (b.g - a.g) * share, a.b + (b.b - a.b) * share};
}

Color Scale(const Color& color, float factor) {
    return {color.r * factor, color.g * factor, color.b * factor};
}

bool Within(float value, float low, float high) {
    return value >= low && value < high;
}

/// Distance as a fraction of the picture's height.
float Distance(float u, float v, float centerU, float centerV) {
    return std::hypot((u - centerU) * kAspect, v - centerV);
}

Color Sky(float u, float v) {
    Color color = Mix({0.22F, 0.45F, 0.80F}, {0.76F, 0.87F, 0.95F}, Step(0, kHorizon, v));
    const float cloud = Rough(u * 5 + 3, v * 14, 5) - 0.25F * v;
    color = Mix(color, {0.97F, 0.97F, 0.98F}, 0.85F * Step(0.48F, 0.68F, cloud));
    const float sun = Distance(u, v, 0.82F, 0.15F);
    color = Mix(color, {1.0F, 0.93F, 0.70F}, 0.75F * std::exp(-sun * 9));
    return Mix(color, {1.0F, 0.98F, 0.86F}, 1 - Step(0.042F, 0.046F, sun));
}

/// Far mountains with snow on their tops.
void Mountains(float u, float v, Color& color) {
    const float ridge =
        kHorizon - 0.03F -
        0.20F * Rough(u * 3.2F + 7, 0.5F, 5) * Step(-0.2F, 0.35F, u) * Step(1.3F, 0.6F, u);
    if (v < ridge) {
        return;
    }
    const float rock = Rough(u * 40, v * 60, 3);
    Color mountain = Scale({0.48F, 0.53F, 0.64F}, 0.80F + 0.35F * rock);
    const float snow = Step(0.42F, 0.37F, v + 0.05F * rock) * Step(0.35F, 0.55F, rock);
    mountain = Mix(mountain, {0.95F, 0.96F, 0.99F}, snow);
    color = Mix(mountain, {0.74F, 0.82F, 0.90F}, Step(ridge, kHorizon + 0.03F, v) * 0.6F);
}

void Hill(float u, float v, float base, float height, float bend, const Color& tint, Color& color) {
    const float ridge = base - height * Rough(u * bend + base * 40, 2.5F, 3);
    if (v < ridge) {
        return;
    }
    const float trees = Rough(u * 90, v * 120, 3);
    color = Scale(tint, 0.72F + 0.5F * trees - 0.8F * (v - ridge));
}

void Meadow(float u, float v, Color& color) {
    const float edge = 0.615F + 0.012F * std::sin(u * 9);
    if (v < edge) {
        return;
    }
    const float depth = (v - edge) / (1 - edge);
    const float grass = Rough(u * 210, v * 90, 3);
    color = Mix({0.42F, 0.60F, 0.20F}, {0.24F, 0.46F, 0.12F}, depth);
    color = Scale(color, 0.70F + 0.6F * grass);
    const auto cellX = static_cast<int32_t>(u * 160);
    const auto cellY = static_cast<int32_t>(v * 134);
    const bool flower = depth > 0.35F && Scatter(cellX, cellY) > 0.965F;
    const float du = u * 160 - static_cast<float>(cellX) - 0.5F;
    const float dv = v * 134 - static_cast<float>(cellY) - 0.5F;
    if (flower && du * du + dv * dv < 0.05F) {
        color =
            Scatter(cellY, cellX) > 0.5F ? Color{0.95F, 0.85F, 0.15F} : Color{0.95F, 0.95F, 0.97F};
    }
}

void Road(float u, float v, Color& color) {
    if (!Within(v, 0.80F, 0.90F)) {
        return;
    }
    const float gravel = Noise(u * 900, v * 700);
    color = Scale({0.36F, 0.36F, 0.38F}, 0.9F + 0.2F * gravel);
    const bool edge = Within(v, 0.805F, 0.809F) || Within(v, 0.891F, 0.895F);
    const bool dash = Within(v, 0.848F, 0.852F) && std::fmod(u * 14, 1.0F) < 0.55F;
    if (edge || dash) {
        color = {0.92F, 0.92F, 0.88F};
    }
}

/// A red house of planks with a dark roof, white frames and a chimney.
void House(float u, float v, Color& color) {
    const bool chimney = Within(u, 0.335F, 0.355F) && Within(v, 0.44F, 0.50F);
    if (chimney) {
        color = {0.45F, 0.26F, 0.20F};
    }
    if (Within(v, 0.455F, 0.56F) && std::fabs(u - 0.28F) < 0.135F - 0.9F * (0.56F - v)) {
        const float tile = std::fmod(v * 150, 1.0F);
        color = Scale({0.30F, 0.22F, 0.21F}, 0.8F + 0.3F * tile);
    }
    if (!Within(u, 0.16F, 0.40F) || !Within(v, 0.56F, 0.73F)) {
        return;
    }
    const float plank = std::fmod(u * 190, 1.0F);
    color =
        Scale({0.72F, 0.13F, 0.10F}, plank < 0.12F ? 0.75F : 0.95F + 0.1F * Noise(u * 190, v * 9));
    const bool doorFrame = Within(u, 0.255F, 0.305F) && v > 0.625F;
    const bool door = Within(u, 0.260F, 0.300F) && v > 0.631F;
    const bool windowV = Within(v, 0.602F, 0.668F);
    const bool pane = Within(v, 0.607F, 0.663F) && std::fabs(v - 0.635F) > 0.002F;
    const auto windowAt = [&](float left) {
        if (windowV && Within(u, left, left + 0.056F)) {
            const bool glass = pane && Within(u, left + 0.004F, left + 0.052F) &&
                               std::fabs(u - left - 0.028F) > 0.0018F;
            color = glass
                        ? Mix({0.45F, 0.62F, 0.75F}, {0.75F, 0.85F, 0.92F}, Step(0.663F, 0.607F, v))
                        : Color{0.94F, 0.94F, 0.92F};
        }
    };
    if (doorFrame) {
        color = door ? Color{0.24F, 0.33F, 0.22F} : Color{0.94F, 0.94F, 0.92F};
    }
    windowAt(0.180F);
    windowAt(0.324F);
}

void Tree(float u, float v, Color& color) {
    if (Within(v, 0.58F, 0.74F) && std::fabs(u - 0.525F) < 0.007F + 0.02F * Step(0.70F, 0.74F, v)) {
        color = Scale({0.36F, 0.25F, 0.16F}, 0.8F + 0.4F * Noise(u * 300, v * 40));
    }
    const float crown = Distance(u, v, 0.525F, 0.50F) + 0.05F * Rough(u * 26, v * 22, 3);
    if (crown < 0.125F) {
        const float light =
            0.55F + 0.35F * Step(0.62F, 0.38F, v) + 0.35F * Rough(u * 110, v * 90, 2);
        color = Scale({0.20F, 0.42F, 0.13F}, light);
    }
}

/// Four rows of six colours, as photographers use them to judge a picture:
/// natural colours, mixed ones, primaries, and greys.
constexpr uint8_t kChart[24][3] = {
    {115, 82, 68},   {194, 150, 130}, {98, 122, 157}, {87, 108, 67},   {133, 128, 177},
    {103, 189, 170}, {214, 126, 44},  {80, 91, 166},  {193, 90, 99},   {94, 60, 108},
    {157, 188, 64},  {224, 163, 46},  {56, 61, 150},  {70, 148, 73},   {175, 54, 60},
    {231, 199, 31},  {187, 86, 149},  {8, 133, 161},  {243, 243, 242}, {200, 200, 200},
    {160, 160, 160}, {122, 122, 121}, {85, 85, 85},   {52, 52, 52}};

void Chart(float u, float v, Color& color) {
    const bool post =
        Within(v, 0.76F, 0.80F) && (Within(u, 0.70F, 0.71F) || Within(u, 0.90F, 0.91F));
    if (post) {
        color = {0.45F, 0.33F, 0.20F};
    }
    if (!Within(u, 0.66F, 0.95F) || !Within(v, 0.56F, 0.78F)) {
        return;
    }
    color = {0.06F, 0.06F, 0.06F};
    const float column = (u - 0.667F) / 0.0465F;
    const float row = (v - 0.567F) / 0.0525F;
    const bool patch = Within(column, 0, 6) && Within(row, 0, 4) &&
                       std::fmod(column, 1.0F) < 0.90F && std::fmod(row, 1.0F) < 0.90F;
    if (patch) {
        const auto& rgb = kChart[static_cast<size_t>(row) * 6 + static_cast<size_t>(column)];
        color = {static_cast<float>(rgb[0]) / 255, static_cast<float>(rgb[1]) / 255,
                 static_cast<float>(rgb[2]) / 255};
    }
}

}  // namespace

Color LandscapeAt(size_t x, size_t y) {
    const float u = (static_cast<float>(x) + 0.5F) / static_cast<float>(kSensorWidth);
    const float v = (static_cast<float>(y) + 0.5F) / static_cast<float>(kSensorHeight);
    Color color;
    if (v < 0.63F) {
        color = Sky(u, v);
        Mountains(u, v, color);
        Hill(u, v, 0.56F, 0.10F, 4, {0.36F, 0.52F, 0.34F}, color);
        Hill(u, v, 0.60F, 0.09F, 3, {0.30F, 0.50F, 0.20F}, color);
    }
    Meadow(u, v, color);
    Road(u, v, color);
    House(u, v, color);
    Tree(u, v, color);
    Chart(u, v, color);
    return {std::clamp(color.r, 0.0F, 1.0F), std::clamp(color.g, 0.0F, 1.0F),
            std::clamp(color.b, 0.0F, 1.0F)};
}

}  // namespace OvVirtual
