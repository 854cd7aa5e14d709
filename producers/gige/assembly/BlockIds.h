#pragma once
/// The order of blocks, from ids that wrap.

#include <cstdint>

namespace OvGige {

/// Short ids run from 1 to 65535 and then from 1 again; extended ids never wrap. A block's
/// number is its id as if it didn't wrap, so that numbers of one run of the camera count up.
class BlockIds {
public:
    /// Begins a run: the number of this block is its id.
    void Start(uint64_t id) {
        m_id = id;
        m_number = id;
    }
    /// The newest block's number.
    uint64_t Newest() const { return m_number; }
    /// How many blocks the id is ahead of the newest one; negative if it is before it.
    int64_t Distance(uint64_t id, bool isExtended) const;
    /// Makes the block that is `distance` blocks ahead the newest one.
    void Advance(uint64_t id, int64_t distance) {
        m_id = id;
        m_number += static_cast<uint64_t>(distance);
    }

private:
    uint64_t m_id = 0;
    uint64_t m_number = 0;
};

}  // namespace OvGige
