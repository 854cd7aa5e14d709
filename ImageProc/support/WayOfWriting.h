#pragma once
/// The choice whether a picture is written through the caches or past them.
///
/// Writing past the caches spares the memory a read of each line that is overwritten, which is
/// twice as fast as long as the caches keep nothing of the picture, and several times as slow if
/// they have its lines. How much they keep isn't known: a virtual machine, or a server with many
/// cores, names a cache of which a program gets little. So what decides is the time that the
/// first lines of a picture take.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace QyWriting {

/// Nanoseconds since some moment.
using Clock = int64_t (*)();

/// What is known of the machine.
struct Machine {
    /// Pictures of at most so many bytes are written through the caches. The next picture is
    /// often written to the same memory, and changing the way there costs more than the better
    /// way brings for a small picture.
    size_t kept;
    /// Larger pictures are written past the caches.
    size_t largest;
    Clock now;
};

/// The machine on which the program runs.
Machine ThisMachine();

/// Says for each part of a picture how it is to be written. A picture of a size in between
/// begins with stripes that are written both ways in turns and timed; the rest takes the faster
/// way.
class WayOfWriting {
public:
    static constexpr size_t kStripeBytes = size_t{64} << 10;
    /// Stripes of each way. The fastest of each counts, because others may be interrupted.
    static constexpr int kStripes = 3;

    WayOfWriting(size_t pictureBytes, const Machine& machine)
        : m_isPast(pictureBytes > machine.largest),
          m_isDecided(m_isPast || pictureBytes <= machine.kept),
          m_now(machine.now) {}

    /// Whether the next bytes are to be written past the caches.
    bool IsPast(size_t bytes) {
        if (!m_isDecided) {
            Try(bytes);
        }
        return m_isPast;
    }

private:
    static constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

    void Try(size_t bytes);
    void EndStripe();

    bool m_isPast;
    bool m_isDecided;
    Clock m_now;
    /// The first stripe isn't timed: it finds the caches as the program left them.
    int m_stripe = 0;
    size_t m_written = 0;
    int64_t m_begin = 0;
    /// The least times of a stripe through the caches and of one past them.
    std::array<int64_t, 2> m_least = {kNever, kNever};
};

}  // namespace QyWriting
