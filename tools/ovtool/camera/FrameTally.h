#pragma once
/// How many frames came, and how many didn't.

#include <cstdint>
#include <limits>
#include <optional>

/// Counts frames by their numbers, so that those taken and those lost add up to what the
/// camera sent.
class FrameTally {
public:
    void Count(uint64_t number) {
        ++m_frames;
        if (number == kUnknown) {
            m_isNumbered = false;
            return;
        }
        // A number that isn't higher comes from a counter that began anew.
        if (m_last && number > *m_last) {
            m_lost += static_cast<int64_t>(number - *m_last - 1);
        }
        m_last = number;
    }

    int64_t Frames() const { return m_frames; }
    /// Numbers that were left out between two frames; nothing when frames have no numbers.
    std::optional<int64_t> Lost() const {
        return m_isNumbered ? std::optional(m_lost) : std::nullopt;
    }

private:
    /// What the library has for a number that the producer doesn't know.
    static constexpr uint64_t kUnknown = std::numeric_limits<uint64_t>::max();

    int64_t m_frames = 0;
    int64_t m_lost = 0;
    bool m_isNumbered = true;
    std::optional<uint64_t> m_last;
};
