#pragma once
/// Which packets of a block have come, which never will, and which were asked for.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OvGige {

/// Three bits for each packet. Keeps its memory from block to block.
class PacketMap {
public:
    /// Most packets that a map can hold: a block of 4 GiB in the smallest packets in use.
    static constexpr uint32_t kCapacityMax = uint32_t{1} << 22;

    /// Forgets all, and makes room for the packets below `capacity`, at most `kCapacityMax`.
    void Reset(uint64_t capacity);
    uint32_t Capacity() const { return m_capacity; }

    // The following take numbers below the capacity.

    bool Has(uint32_t id) const { return (m_words[id / kBits].here & Bit(id)) != 0; }
    void Insert(uint32_t id) { m_count += Set(m_words[id / kBits].here, id); }
    /// Forgets a packet that has come.
    void Erase(uint32_t id) {
        m_count -= Has(id) ? 1 : 0;
        m_words[id / kBits].here &= ~Bit(id);
    }
    bool WasAsked(uint32_t id) const { return (m_words[id / kBits].asked & Bit(id)) != 0; }
    void MarkAsked(uint32_t id) { Set(m_words[id / kBits].asked, id); }
    /// Marks a packet that the camera no longer has.
    void MarkGone(uint32_t id) { m_goneCount += Set(m_words[id / kBits].gone, id); }

    /// How many packets have come.
    uint32_t Count() const { return m_count; }
    /// How many packets never will.
    uint32_t GoneCount() const { return m_goneCount; }

    /// The first packet from `from` on that may still come but hasn't; `end` if there is none
    /// before it.
    uint32_t FirstMissing(uint32_t from, uint32_t end) const { return First(from, end, true); }
    /// The first packet from `from` on that isn't missing; `end` if there is none before it.
    uint32_t FirstSettled(uint32_t from, uint32_t end) const { return First(from, end, false); }

private:
    static constexpr uint32_t kBits = 64;

    struct Word {
        uint64_t here = 0;
        uint64_t gone = 0;
        uint64_t asked = 0;
    };

    static uint64_t Bit(uint32_t id) { return uint64_t{1} << id % kBits; }
    /// Returns 1 if the bit wasn't set.
    static uint32_t Set(uint64_t& bits, uint32_t id) {
        const bool isNew = (bits & Bit(id)) == 0;
        bits |= Bit(id);
        return isNew ? 1 : 0;
    }
    uint32_t First(uint32_t from, uint32_t end, bool isMissing) const;

    std::vector<Word> m_words;
    uint32_t m_capacity = 0;
    uint32_t m_count = 0;
    uint32_t m_goneCount = 0;
};

}  // namespace OvGige
