#include "gige/assembly/BlockIds.h"

namespace OvGige {

int64_t BlockIds::Distance(uint64_t id, bool isExtended) const {
    if (isExtended) {
        return static_cast<int64_t>(id - m_id);
    }
    const auto from = static_cast<uint16_t>(m_id);
    const auto to = static_cast<uint16_t>(id);
    const auto steps = static_cast<int16_t>(to - from);
    // No block has the id 0, so a way past it is one block shorter than it looks.
    if (steps > 0 && to < from) {
        return steps - 1;
    }
    return steps < 0 && to > from ? steps + 1 : steps;
}

}  // namespace OvGige
