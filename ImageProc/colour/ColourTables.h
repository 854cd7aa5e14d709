#pragma once
/// Converts the tables of colour correction and tone into the forms that the loops over
/// pixels need.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <optional>

#include "QyImageProc.h"
#include "colour/ImproveVector.h"

namespace QyColour {

/// One table for up to two tone records and the conversion from 12 to 8 bits.
class ToneTable {
public:
    static constexpr int32_t kTop = 4095;

    /// Either may be null. Values pass gamma first.
    ToneTable(const uint32_t* contrast, const uint32_t* gamma) {
        for (uint32_t i = 0; i <= kTop; ++i) {
            const uint32_t tone = Through(contrast, Through(gamma, i));
            m_bytes[i] = static_cast<uint8_t>(std::min(tone >> 4, kMostByte));
        }
        std::iota(m_bytes.begin() + kTop + 1, m_bytes.end(), uint8_t{0});
    }

    /// The byte for a sum, which is limited to 12 bits first.
    uint8_t Of(int32_t sum) const { return m_bytes[static_cast<size_t>(std::clamp(sum, 0, kTop))]; }
    /// The table, followed by the 256 bytes in order, which map a byte without a tone to
    /// itself.
    const uint8_t* Data() const { return m_bytes.data(); }
    /// The table for bytes, which become values of 12 bits by a factor of 16.
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

/// The nine tables of a record as three: one word holds what an input adds to all three
/// sums, so that a pixel takes three look-ups instead of nine.
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

    /// The three sums of a pixel in one word, from which Sum() extracts them.
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
    /// Added to every entry, so that none is negative and borrows from its neighbour.
    static constexpr int32_t kBias = 32768;

    std::array<std::array<uint64_t, kLevels>, kInputs> m_columns;
};

/// The matrix of a record, if its tables are exact multiples of the coefficients, as
/// cameras make them, and no sum exceeds 16 bits.
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
