#pragma once
/// The tables behind colour correction and tone, brought into the forms that the
/// loops over pixels need.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <optional>

#include "QyImageProc.h"
#include "colour/ImproveVector.h"

namespace QyColour {

/// Up to two tone records and the step from 12 to 8 bits, as one table.
class ToneTable {
public:
    static constexpr int32_t kTop = 4095;

    /// Either may be null. Gamma comes first.
    ToneTable(const uint32_t* contrast, const uint32_t* gamma) {
        for (uint32_t i = 0; i <= kTop; ++i) {
            const uint32_t tone = Through(contrast, Through(gamma, i));
            m_bytes[i] = static_cast<uint8_t>(std::min(tone >> 4, kMostByte));
        }
        std::iota(m_bytes.begin() + kTop + 1, m_bytes.end(), uint8_t{0});
    }

    /// A sum of 12 bits that may lie outside of them.
    uint8_t Of(int32_t sum) const { return m_bytes[static_cast<size_t>(std::clamp(sum, 0, kTop))]; }
    /// The table, and behind it the bytes themselves for what has no tone.
    const uint8_t* Data() const { return m_bytes.data(); }
    /// The table for bytes, each taken as its place times 16.
    std::array<uint8_t, 256> OfBytes() const {
        std::array<uint8_t, 256> table{};
        for (size_t i = 0; i < table.size(); ++i) {
            table[i] = m_bytes[i * 16];
        }
        return table;
    }

private:
    static constexpr uint32_t kMostByte = 255;

    static uint32_t Through(const uint32_t* table, uint32_t value) {
        return table == nullptr ? value : table[std::min(value, uint32_t{kTop})];
    }

    std::array<uint8_t, kTop + 1 + kMostByte + 1> m_bytes;
};

/// The nine tables of a record as three: what an input adds to all three sums
/// stands side by side in one word, so that a pixel takes three look-ups.
class PackedMatrix {
public:
    explicit PackedMatrix(const QyColorCorrectionRecord& record) {
        for (size_t input = 0; input < kInputs; ++input) {
            for (size_t level = 0; level < kLevels; ++level) {
                uint64_t packed = 0;
                for (size_t sum = kInputs; sum-- > 0;) {
                    packed =
                        packed << kFieldBits |
                        static_cast<uint64_t>(record.table[sum * kInputs + input][level] + kBias);
                }
                m_columns[input][level] = packed;
            }
        }
    }

    /// The three sums of a pixel, to be taken apart by Sum().
    uint64_t Sums(uint8_t r, uint8_t g, uint8_t b) const {
        return m_columns[0][r] + m_columns[1][g] + m_columns[2][b];
    }
    template <int Index>
    static int32_t Sum(uint64_t sums) {
        constexpr uint64_t kMask = (uint64_t{1} << kFieldBits) - 1;
        const uint64_t field = sums >> (Index * kFieldBits) & kMask;
        return static_cast<int32_t>(field) - static_cast<int32_t>(kInputs) * kBias;
    }

private:
    static constexpr size_t kInputs = 3;
    static constexpr size_t kLevels = 256;
    static constexpr int kFieldBits = 20;
    /// Makes every entry positive.
    static constexpr int32_t kBias = 32768;

    std::array<std::array<uint64_t, kLevels>, kInputs> m_columns;
};

/// The matrix behind a record's tables, if they are the multiples that a camera
/// makes them and no sum leaves 16 bits.
inline std::optional<QyImprove::SmallMatrix> SmallMatrixOf(const QyColorCorrectionRecord& record) {
    constexpr int32_t kTopLevel = 255;
    constexpr int32_t kMostSum = 32767;
    QyImprove::SmallMatrix matrix{};
    std::array<int32_t, 3> most{};
    for (size_t k = 0; k < matrix.size(); ++k) {
        const int16_t* const table = record.table[k];
        matrix[k] = table[1];
        for (int32_t level = 0; level <= kTopLevel; ++level) {
            if (table[level] != table[1] * level) {
                return std::nullopt;
            }
        }
        most[k / 3] += std::abs(int32_t{table[kTopLevel]});
    }
    const bool isSmall = *std::max_element(most.begin(), most.end()) <= kMostSum;
    return isSmall ? std::optional(matrix) : std::nullopt;
}

}  // namespace QyColour
