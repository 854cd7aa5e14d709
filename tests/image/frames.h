#pragma once
/// Raw frames to interpolate, and memory whose edges tell of a write too far.

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "bayer_reference.h"

enum class Content { Random, Ramp, Edges, Extremes };

inline BayerReference::Raw MakeRaw(int width, int height, Content content, int limit) {
    BayerReference::Raw raw{width, height, {}};
    std::mt19937 random(static_cast<unsigned>(width * 977 + height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int value = 0;
            switch (content) {
                case Content::Random:
                    value = static_cast<int>(random() % static_cast<unsigned>(limit + 1));
                    break;
                case Content::Ramp:
                    value = (7 * x + 13 * y) % (limit + 1);
                    break;
                case Content::Edges:
                    value = x > width / 2 || x + y > height ? limit : limit / 8;
                    break;
                case Content::Extremes:
                    value = random() % 2 == 0 ? 0 : limit;
                    break;
            }
            raw.samples.push_back(value);
        }
    }
    return raw;
}

/// Bytes that differ from one place to the next, for memory that a call may read.
inline std::vector<uint8_t> OldBytes(size_t size) {
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(i * i * 31 + i * 7 + 3);
    }
    return bytes;
}

/// A byte that no test puts anywhere on purpose.
constexpr uint8_t kGuard = 0xA5;

/// Memory that begins `offset` bytes behind an aligned place and is followed and
/// preceded by guard bytes.
class GuardedBytes {
public:
    GuardedBytes(size_t size, size_t offset)
        : m_begin(kMargin + offset), m_size(size), m_bytes(size + 2 * kMargin + offset, kGuard) {}

    uint8_t* Data() { return m_bytes.data() + m_begin; }
    size_t Size() const { return m_size; }

    bool IsGuardWhole() const {
        for (size_t i = 0; i < m_bytes.size(); ++i) {
            if ((i < m_begin || i >= m_begin + m_size) && m_bytes[i] != kGuard) {
                return false;
            }
        }
        return true;
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

/// The samples as they lie in memory, exactly as long as they are so that the
/// address sanitizer sees a read beyond them.
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
