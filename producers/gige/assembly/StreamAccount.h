#pragma once
/// What became of the blocks and packets of a stream since its start.

#include <atomic>
#include <cstdint>

namespace OvGige {

/// A counter that one thread changes and any thread reads.
class Count {
public:
    void Add(uint64_t more = 1) { m_value.store(Value() + more, std::memory_order_relaxed); }
    /// Takes back what turned out to be something else.
    void Remove(uint64_t less) { m_value.store(Value() - less, std::memory_order_relaxed); }
    void Reset() { m_value.store(0, std::memory_order_relaxed); }
    uint64_t Value() const { return m_value.load(std::memory_order_relaxed); }

private:
    std::atomic<uint64_t> m_value{0};
};

struct StreamAccount {
    // Every block that the camera has numbered is in one of the first five, once it is over.
    Count complete;
    Count incomplete;
    Count noBuffer;      ///< there was no buffer to put it into
    Count lostOnWire;    ///< no packet of it came
    Count lostInSocket;  ///< no packet of it came, and the system had dropped some
    Count leftOut;       ///< of the incomplete ones: not delivered, because the user wants it so
    Count restarts;      ///< how often the camera began to count anew

    // Every packet that came is in one of the first four.
    Count used;
    Count doubled;   ///< had come before
    Count refused;   ///< a status in place of a packet that was asked for
    Count ignored;   ///< malformed, too late, of a block without a buffer or beyond its end
    Count asked;     ///< packets that were asked for again
    Count answered;  ///< of them, those that came
    Count missing;  ///< of blocks of which others came; a block may be complete without its trailer
    Count dropped;  ///< by the system, because the socket was full

    void Reset();
};

}  // namespace OvGige
