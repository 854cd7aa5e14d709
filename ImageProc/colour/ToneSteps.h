#pragma once
/// A tone table as the steps in which it grows, which vectors look up without memory.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace QyImprove {

/// A table that grows slowly from 4096 values to bytes. Its bytes are those of the lowest 256
/// values; for parts of 16 values above them, the byte of each part's first value, and the
/// places within the part after which the byte grows by 1.
struct ToneSteps {
    static constexpr size_t kParts = 256;
    static constexpr size_t kPartValues = 16;
    /// The most steps of a part.
    static constexpr size_t kMost = 4;
    using Table = std::array<uint8_t, kParts>;

    Table low;
    Table first;
    /// The last place in a part before each of its steps; the last place of all for a step
    /// that it doesn't have.
    std::array<Table, kMost> before;
    /// How many steps the parts have at most.
    size_t count;
};

/// The steps of a table of 4096 bytes, if it falls nowhere above its lowest 256 values and no
/// part has too many steps.
std::optional<ToneSteps> ToneStepsOf(const uint8_t* tone);

}  // namespace QyImprove
