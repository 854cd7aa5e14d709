#include "gige/assembly/JumpWatch.h"

#include "gige/protocol/GvspBlock.h"

namespace OvGige {

bool JumpWatch::IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const {
    if (header.format != PacketFormat::Leader && header.format != PacketFormat::AllIn) {
        return false;
    }
    const auto leader = ParseLeader(data);
    return leader &&
           (leader->timestamp > m_lastTimestamp || now - m_lastPacket >= m_settings.retention);
}

void JumpWatch::Suspect(const StreamHeader& header, ByteView prefix, ByteView data) {
    Drop();
    m_header = header;
    m_isNew = !data.empty();
    if (m_isNew) {
        m_prefixSize = prefix.size();
        m_packet.assign(prefix.begin(), prefix.end());
        Append(m_packet, data);
        m_packetSize = m_packet.size();
    }
}

std::optional<JumpWatch::Kept> JumpWatch::Resolve(uint64_t blockId) {
    const StreamHeader header = std::exchange(m_header, {});
    if (m_packetSize == 0) {
        return {};
    }
    const ByteView packet = ByteView(m_packet).first(std::exchange(m_packetSize, 0));
    if (header.blockId != blockId) {
        m_account.ignored.Add();
        return {};
    }
    return Kept{header, packet.first(m_prefixSize), packet.subspan(m_prefixSize)};
}

}  // namespace OvGige
