#pragma once
/// Chance that a seed repeats, on every machine and in any order.

#include <cstdint>

namespace OvSimulator {

/// Spreads every bit of the number over all bits.
constexpr uint64_t Mix(uint64_t number) {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
    number = (number ^ number >> 27) * 0x94D049BB133111EB;
    return number ^ number >> 31;
}

/// What may happen to a packet or a block.
enum class Cause : uint64_t {
    Missing = 1,
    Doubled,
    Late,
    Foreign,
    Pending,
    Lost,
    Delayed,
    Reordered,
    Corrupted,
    Truncated,
    WrongLeader,
    JumpBack,
    LostMessage,
    DoubledMessage,
    IgnoredAcknowledgement,
    ForeignMessage,
    WrongChunk,
};

/// Where something may happen: numbers that say which of its kind it is.
struct Occasion {
    uint64_t block = 0;
    uint64_t packet = 0;
};

/// Answers the same question in the same way each time.
class Chance {
public:
    explicit constexpr Chance(uint64_t seed) : m_seed(seed) {}

    /// @param share  of all occasions, 0 to 1
    constexpr bool Hits(double share, Cause cause, Occasion occasion) const {
        constexpr double kOne = 0x1p53;
        return static_cast<double>(Draw(cause, occasion) >> 11) < share * kOne;
    }
    /// A number below `end`, which isn't 0.
    constexpr uint64_t Below(uint64_t end, Cause cause, Occasion occasion) const {
        return Mix(Draw(cause, occasion)) % end;
    }

private:
    constexpr uint64_t Draw(Cause cause, Occasion occasion) const {
        return Mix(Mix(Mix(Mix(m_seed) ^ static_cast<uint64_t>(cause)) ^ occasion.block) ^
                   occasion.packet);
    }

    uint64_t m_seed;
};

}  // namespace OvSimulator
