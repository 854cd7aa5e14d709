#include "gige/assembly/JumpWatch.h"

#include "gige/protocol/GvspBlock.h"

namespace OvGige {
namespace {

/// Leaders are no longer, unless they have many parts.
constexpr size_t kLeaderMax = 576;

}  // namespace

bool JumpWatch::IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const {
    if (header.format != PacketFormat::Leader && header.format != PacketFormat::AllIn) {
        return false;
    }
    const auto leader = ParseLeader(data);
    return leader &&
           (leader->timestamp > m_lastTimestamp || now - m_lastPacket >= m_settings.retention);
}

void JumpWatch::Suspect(const StreamHeader& header, ByteView data) {
    Drop();
    m_isHeld = header.format == PacketFormat::Leader && !data.empty() && data.size() <= kLeaderMax;
    m_blockId = header.blockId;
    m_leader.assign(data.begin(), m_isHeld ? data.end() : data.begin());
}

Bytes JumpWatch::Confirm(uint64_t blockId) {
    if (m_blockId != blockId) {
        Drop();
    }
    m_blockId = 0;
    return std::exchange(m_leader, {});
}

void JumpWatch::Drop() {
    if (!m_leader.empty()) {
        m_account.ignored.Add();
    }
    m_blockId = 0;
    m_leader.clear();
}

}  // namespace OvGige
