#pragma once
/// Raw frames to interpolate, and memory that detects writes beyond its ends.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "BayerReference.h"

enum class Content { Random, Ramp, Edges, Extremes, Constant, Gradient, Checkerboard, HotPixel };

constexpr Content kContents[] = {Content::Random,       Content::Ramp,     Content::Edges,
                                 Content::Extremes,     Content::Constant, Content::Gradient,
                                 Content::Checkerboard, Content::HotPixel};

/// The samples of a frame of some content.
class Scene {
public:
    Scene(int width, int height, Content content, int limit)
        : m_width(width),
          m_height(height),
          m_content(content),
          m_limit(limit),
          m_random(static_cast<unsigned>(width * 977 + height)) {}

    int Next(int x, int y) {
        switch (m_content) {
            case Content::Random:
                return static_cast<int>(m_random() % static_cast<unsigned>(m_limit + 1));
            case Content::Ramp:
                return (7 * x + 13 * y) % (m_limit + 1);
            case Content::Edges:
                return x > m_width / 2 || x + y > m_height ? m_limit : m_limit / 8;
            case Content::Extremes:
                return m_random() % 2 == 0 ? 0 : m_limit;
            case Content::Constant:
                return m_limit - m_limit / 3;
            case Content::Gradient:
                return m_limit * (x + y) / (m_width + m_height);
            case Content::Checkerboard:
                return (x + y) % 2 * m_limit;
            case Content::HotPixel:
                return x == m_width / 2 && y == m_height / 2 ? m_limit : m_limit / 16;
        }
        return 0;
    }

private:
    int m_width;
    int m_height;
    Content m_content;
    int m_limit;
    std::mt19937 m_random;
};

inline BayerReference::Raw MakeRaw(int width, int height, Content content, int limit) {
    BayerReference::Raw raw{width, height, {}};
    Scene scene(width, height, content, limit);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            raw.samples.push_back(scene.Next(x, y));
        }
    }
    return raw;
}

/// Offsets within a cache line, and beyond its end.
constexpr size_t kAddresses = 65;

/// The offset of the source for an offset of the destination, which is another one.
constexpr size_t SourceOffset(size_t offset) {
    return 3 * offset;
}

/// Bytes of which no two adjacent ones are equal, for memory that a call may read.
inline std::vector<uint8_t> OldBytes(size_t size) {
    constexpr size_t kPeriod = 256;
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < std::min(size, kPeriod); ++i) {
        bytes[i] = static_cast<uint8_t>(i * i * 31 + i * 7 + 3);
    }
    for (size_t i = kPeriod; i < size; i += kPeriod) {
        std::copy_n(bytes.begin(), std::min(size - i, kPeriod),
                    bytes.begin() + static_cast<ptrdiff_t>(i));
    }
    return bytes;
}

/// The byte of memory that must not be written.
constexpr uint8_t kGuard = 0xA5;

/// Memory that begins `offset` bytes after an aligned address, with guard bytes before
/// and after it.
class GuardedBytes {
public:
    GuardedBytes(size_t size, size_t offset)
        : m_begin(kMargin + offset), m_size(size), m_bytes(size + 2 * kMargin + offset, kGuard) {}

    uint8_t* Data() { return m_bytes.data() + m_begin; }
    size_t Size() const { return m_size; }

    bool IsGuardWhole() const {
        const auto isGuard = [](uint8_t byte) { return byte == kGuard; };
        const auto begin = m_bytes.begin() + static_cast<ptrdiff_t>(m_begin);
        return std::all_of(m_bytes.begin(), begin, isGuard) &&
               std::all_of(begin + static_cast<ptrdiff_t>(m_size), m_bytes.end(), isGuard);
    }
    bool IsUntouched() const {
        for (const uint8_t byte : m_bytes) {
            if (byte != kGuard) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr size_t kMargin = 64;
    size_t m_begin;
    size_t m_size;
    std::vector<uint8_t> m_bytes;
};

/// The samples in memory of exactly their size, so that the address sanitizer sees a read
/// beyond them.
/// @tparam Sample  a byte or a 16-bit word
template <class Sample>
class SourceBytes {
public:
    SourceBytes(const BayerReference::Raw& raw, size_t offset)
        : m_offset(offset), m_bytes(offset + raw.samples.size() * sizeof(Sample)) {
        for (size_t i = 0; i < raw.samples.size(); ++i) {
            const auto sample = static_cast<Sample>(raw.samples[i]);
            std::memcpy(m_bytes.data() + offset + i * sizeof sample, &sample, sizeof sample);
        }
    }
    const uint8_t* Data() const { return m_bytes.data() + m_offset; }

private:
    size_t m_offset;
    std::vector<uint8_t> m_bytes;
};
