#pragma once
/// Puts packets where they belong in their blocks.

#include <memory>

#include "gige/assembly/BlockRow.h"
#include "gige/assembly/JumpWatch.h"
#include "gige/assembly/ResendPlan.h"

namespace OvGige {

class BlockFiller {
public:
    /// All must outlive the filler.
    BlockFiller(const AssemblerSettings& settings, StreamAccount& account, const BlockRow& row,
                ResendPlan& resends, JumpWatch& jumps);

    /// Makes a block ready for packets of the form that the first one has.
    void Open(Block& block, std::shared_ptr<OvProducer::Buffer> buffer, const StreamHeader& header,
              TimePoint now);
    /// Takes a good packet of a block, whose data may lie at its place already.
    void Take(Block& block, const StreamHeader& header, ByteView prefix, ByteView data,
              TimePoint now);
    /// The form of the last data packets.
    const DataForm& Form() const { return m_form; }

private:
    void TakeLeader(Block& block, ByteView payload, TimePoint now);
    void TakeTrailer(Block& block, const StreamHeader& header, ByteView payload, TimePoint now);
    void TakeWhole(Block& block, ByteView payload, TimePoint now);
    void TakeData(Block& block, const StreamHeader& header, ByteView prefix, ByteView data,
                  TimePoint now);
    bool FitForm(Block& block, const StreamHeader& header, size_t length);
    void SetForm(const DataForm& form);
    void DropShort(Block& block, uint32_t followingId, TimePoint now);
    void Place(Block& block, size_t offset, ByteView data);
    void NotePacket(Block& block, bool wasAsked, TimePoint now);
    void Ignore() { m_account.ignored.Add(); }
    /// Packets that had been taken turned out to be damaged.
    void Disown(uint32_t packets) {
        m_account.used.Remove(packets);
        m_account.ignored.Add(packets);
    }

    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    const BlockRow& m_row;
    ResendPlan& m_resends;
    JumpWatch& m_jumps;
    DataForm m_form;
    Stride m_stride;
};

}  // namespace OvGige
