/// @file The moving parts of the scene: a balloon in the sky and a car on the road.
#include <algorithm>
#include <cmath>

#include "Noise.h"
#include "Picture.h"

namespace OvVirtual {
namespace {

/// Fills a sprite by a function that returns colour and cover of a pixel.
template <typename Paint>
Sprite MakeSprite(size_t width, size_t height, Paint paint) {
    Sprite sprite;
    sprite.width = width;
    sprite.height = height;
    sprite.colors.resize(width * height);
    sprite.cover.resize(width * height);
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x) {
            paint(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F,
                  sprite.colors[y * width + x], sprite.cover[y * width + x]);
        }
    }
    return sprite;
}

/// Paints a disc with a soft rim of about a pixel and a half.
void Disc(float x, float y, float centerX, float centerY, float radius, const Color& tint,
          Color& color, float& cover) {
    const float inside = Step(radius + 0.75F, radius - 0.75F, std::hypot(x - centerX, y - centerY));
    if (inside > 0) {
        color = tint;
        cover = std::max(cover, inside);
    }
}

void Box(float x, float y, float left, float top, float right, float bottom, const Color& tint,
         Color& color, float& cover) {
    if (x >= left && x < right && y >= top && y < bottom) {
        color = tint;
        cover = 1;
    }
}

}  // namespace

Sprite MakeBalloon() {
    return MakeSprite(220, 320, [](float x, float y, Color& color, float& cover) {
        constexpr Color kGores[] = {{0.85F, 0.12F, 0.12F},
                                    {0.96F, 0.80F, 0.12F},
                                    {0.14F, 0.30F, 0.75F},
                                    {0.95F, 0.95F, 0.93F}};
        // The envelope: a sphere at the top that narrows to the mouth.
        const float narrow = y < 110 ? 1.0F : 1.0F - 0.72F * Step(110, 255, y);
        const float half = y < 110 ? std::sqrt(std::max(0.0F, 108.0F * 108 - (y - 110) * (y - 110)))
                                   : 108.0F * narrow;
        const float side = (x - 110) / std::max(half, 1.0F);
        if (y < 250 && std::fabs(side) <= 1) {
            const float angle = std::asin(std::clamp(side, -1.0F, 1.0F)) / 3.1416F + 0.5F;
            const auto gore = static_cast<size_t>(angle * 8) % 4;
            const float light = 1.0F - 0.45F * Step(-0.9F, 1.0F, -side);
            color = {kGores[gore].r * light, kGores[gore].g * light, kGores[gore].b * light};
            cover = Step(1.0F, 1.0F - 1.5F / std::max(half, 2.0F), std::fabs(side));
        }
        const float rope = 12 + (285 - y) * 0.55F;
        if (y >= 250 && y < 286 && std::fabs(std::fabs(x - 110) - rope) < 1.2F) {
            color = {0.25F, 0.2F, 0.15F};
            cover = 1;
        }
        Box(x, y, 94, 284, 126, 314, {0.50F, 0.33F, 0.18F}, color, cover);
        Box(x, y, 92, 284, 128, 289, {0.38F, 0.24F, 0.12F}, color, cover);
    });
}

Sprite MakeCar() {
    return MakeSprite(320, 130, [](float x, float y, Color& color, float& cover) {
        constexpr Color kPaint{0.95F, 0.72F, 0.08F};
        constexpr Color kGlass{0.55F, 0.70F, 0.80F};
        // The cabin widens downwards. Its windows end at the roof and the pillars.
        const float across = std::fabs(x - 150);
        const float half = 52 + (y - 8) * 0.85F;
        if (y >= 8 && y < 60 && across < half) {
            const bool window = y > 16 && across > 4 && across < half - 9;
            color = window ? kGlass : kPaint;
            cover = 1;
        }
        Box(x, y, 8, 58, 312, 104, kPaint, color, cover);
        Box(x, y, 8, 92, 312, 104, {0.75F, 0.55F, 0.05F}, color, cover);
        Box(x, y, 298, 64, 312, 76, {0.98F, 0.97F, 0.85F}, color, cover);
        Box(x, y, 8, 64, 18, 78, {0.75F, 0.08F, 0.08F}, color, cover);
        Box(x, y, 148, 60, 150, 100, {0.70F, 0.50F, 0.05F}, color, cover);
        for (const float wheel : {70.0F, 250.0F}) {
            Disc(x, y, wheel, 100, 28, {0.10F, 0.10F, 0.11F}, color, cover);
            Disc(x, y, wheel, 100, 14, {0.70F, 0.71F, 0.73F}, color, cover);
        }
    });
}

Place BalloonPlace(uint64_t moment) {
    constexpr uint64_t kWay = kSensorWidth + 220;
    const uint64_t at = (moment * 3 + 700) % kWay;
    const double bob = std::sin(static_cast<double>(moment % 1000) * 6.283185307179586 / 250.0);
    return {static_cast<int64_t>(at) - 220, 180 + static_cast<int64_t>(30.0 * bob)};
}

Place CarPlace(uint64_t moment) {
    constexpr uint64_t kWay = kSensorWidth + 320;
    const uint64_t at = (moment * 9 + 1400) % kWay;
    return {static_cast<int64_t>(at) - 320, 1690};
}

}  // namespace OvVirtual
