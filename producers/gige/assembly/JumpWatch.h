#pragma once
/// Tells jumps of a camera's block numbers from packets whose number is damaged.

#include <utility>

#include "gige/assembly/AssemblerSettings.h"
#include "gige/assembly/StreamAccount.h"
#include "gige/protocol/BigEndian.h"
#include "gige/protocol/Gvsp.h"

namespace OvGige {

/// Keeps the first packet of what may be another run of the camera: only a second packet of the
/// same block says that it isn't a damaged one.
class JumpWatch {
public:
    /// Both must outlive the watch.
    JumpWatch(const AssemblerSettings& settings, StreamAccount& account)
        : m_settings(settings), m_account(account) {}

    /// A packet of a known block came.
    void NotePacket(TimePoint now) { m_lastPacket = now; }
    /// The newest block's leader came.
    void NoteTimestamp(uint64_t timestamp) { m_lastTimestamp = timestamp; }

    /// Whether a packet that isn't next is the leader of another run. A leader that was only late
    /// is older than the newest one.
    bool IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const;
    /// Whether a packet of the same block came before.
    bool IsSuspected(uint64_t blockId) const { return m_blockId == blockId; }
    /// Suspects the block of a packet.
    void Suspect(const StreamHeader& header, ByteView data);
    /// Whether the packet that was suspected last is kept. Asked once for each packet.
    bool TakesPacket() { return std::exchange(m_isHeld, false); }
    /// The suspicion was right: ends it.
    /// @return the leader of the block, if it came; one of another block is ignored
    Bytes Confirm(uint64_t blockId);
    /// The suspicion was wrong: ignores the packet that is kept.
    void Drop();

private:
    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    uint64_t m_lastTimestamp = 0;
    TimePoint m_lastPacket{};
    uint64_t m_blockId = 0;
    Bytes m_leader;
    bool m_isHeld = false;
};

}  // namespace OvGige
