#pragma once
/// Smooth random functions, the same in every run: the roughness of hills,
/// clouds, and grass.

#include <cmath>
#include <cstdint>

namespace OvVirtual {

/// 0 to 1, without a relation between adjacent arguments.
inline float Scatter(int32_t x, int32_t y) {
    auto h = static_cast<uint32_t>(x) * 0x9E3779B1U ^ static_cast<uint32_t>(y) * 0x85EBCA77U;
    h ^= h >> 15;
    h *= 0x2C1B3C6DU;
    h ^= h >> 12;
    h *= 0x297A2D39U;
    h ^= h >> 15;
    return static_cast<float>(h >> 8) * (1.0F / 16777216.0F);
}

/// 0 below `low`, 1 above `high`, smooth between them.
inline float Step(float low, float high, float value) {
    const float t = std::fmin(std::fmax((value - low) / (high - low), 0.0F), 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

/// 0 to 1, smooth; one bump per unit.
inline float Noise(float x, float y) {
    const float fx = std::floor(x);
    const float fy = std::floor(y);
    const auto ix = static_cast<int32_t>(fx);
    const auto iy = static_cast<int32_t>(fy);
    const float tx = Step(0, 1, x - fx);
    const float ty = Step(0, 1, y - fy);
    const float upper = Scatter(ix, iy) * (1 - tx) + Scatter(ix + 1, iy) * tx;
    const float lower = Scatter(ix, iy + 1) * (1 - tx) + Scatter(ix + 1, iy + 1) * tx;
    return upper * (1 - ty) + lower * ty;
}

/// Noise of several sizes on top of each other, 0 to 1.
inline float Rough(float x, float y, int octaves) {
    float sum = 0;
    float weight = 0.5F;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * Noise(x, y);
        weight *= 0.5F;
        x = x * 2.03F + 17.0F;
        y = y * 2.03F + 31.0F;
    }
    return sum / (1 - 2 * weight);
}

}  // namespace OvVirtual
