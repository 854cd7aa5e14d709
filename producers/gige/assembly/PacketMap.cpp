#include "gige/assembly/PacketMap.h"

#include <algorithm>
#include <bit>

namespace OvGige {

void PacketMap::Reset(uint64_t capacity) {
    m_capacity = static_cast<uint32_t>(std::min<uint64_t>(capacity, kCapacityMax));
    m_words.assign(m_capacity / kBits + 1, Word{});
    m_count = 0;
    m_goneCount = 0;
}

uint32_t PacketMap::First(uint32_t from, uint32_t end, bool isMissing) const {
    end = std::min(end, m_capacity);
    uint64_t wanted = ~uint64_t{0} << from % kBits;
    for (uint32_t base = from / kBits * kBits; base < end; base += kBits) {
        const Word& word = m_words[base / kBits];
        const uint64_t settled = word.here | word.gone;
        if (const uint64_t found = (isMissing ? ~settled : settled) & wanted; found != 0) {
            return std::min(end, base + static_cast<uint32_t>(std::countr_zero(found)));
        }
        wanted = ~uint64_t{0};
    }
    return std::max(from, end);
}

}  // namespace OvGige
