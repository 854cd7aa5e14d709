#pragma once
/// Tells jumps of a camera's block numbers from packets whose number is damaged.

#include <optional>
#include <utility>

#include "gige/assembly/AssemblerSettings.h"
#include "gige/assembly/StreamAccount.h"
#include "gige/protocol/BigEndian.h"
#include "gige/protocol/Gvsp.h"

namespace OvGige {

/// Keeps the first packet of a block that isn't next: only a second packet of the same block says
/// that it isn't a damaged one.
class JumpWatch {
public:
    struct Kept {
        StreamHeader header;
        ByteView prefix;
        ByteView data;
    };

    /// Both must outlive the watch.
    JumpWatch(const AssemblerSettings& settings, StreamAccount& account)
        : m_settings(settings), m_account(account) {}

    /// A packet of a known block came.
    void NotePacket(TimePoint now) { m_lastPacket = now; }
    /// The newest block's leader came.
    void NoteTimestamp(uint64_t timestamp) { m_lastTimestamp = timestamp; }

    /// Whether a packet that isn't next is the leader of another run of the camera. A leader that
    /// was only late is older than the newest one.
    bool IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const;
    /// Whether a packet of the same block came before.
    bool IsSuspected(uint64_t blockId) const { return m_header.blockId == blockId; }
    /// The packet whose block is suspected; one of block 0 if there is none.
    const StreamHeader& Suspected() const { return m_header; }
    /// Suspects the block of a packet, and keeps the packet unless it is empty.
    void Suspect(const StreamHeader& header, ByteView prefix, ByteView data);
    /// Whether the packet that was suspected last is kept. Asked once for each packet.
    bool TakesPacket() { return std::exchange(m_isNew, false); }
    /// A packet of the block that is now the newest came.
    /// @return the packet of that block that is kept, until the next one is suspected; one of
    ///         another block is ignored
    std::optional<Kept> Resolve(uint64_t blockId);
    /// Ignores the packet that is kept.
    void Drop() { static_cast<void>(Resolve(0)); }

private:
    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    uint64_t m_lastTimestamp = 0;
    TimePoint m_lastPacket{};
    StreamHeader m_header;    ///< of the suspected block's first packet; block 0 if there is none
    Bytes m_packet;           ///< what follows its header
    size_t m_packetSize = 0;  ///< 0 if no packet is kept
    size_t m_prefixSize = 0;
    bool m_isNew = false;
};

}  // namespace OvGige
