#pragma once
/// Which lost packets are asked for again, and when.

#include "gige/assembly/Block.h"
#include "gige/assembly/BlockClient.h"
#include "gige/assembly/StreamAccount.h"

namespace OvGige {

/// Requests and their answers compete with the stream for the line, and some cameras stop to
/// answer if they are asked too much: so there are limits for each block and each second.
class ResendPlan {
public:
    ResendPlan(const AssemblerSettings& settings, StreamAccount& account, BlockClient& client)
        : m_settings(settings), m_account(account), m_client(client) {}

    /// Packets below `end` should have come before the one that came now.
    void NoteGap(Block& block, uint32_t end, TimePoint now) const;
    /// Follows a packet that is a status in place of data.
    void Refuse(Block& block, Status status, uint32_t packetId, TimePoint now) const;
    /// Asks for what is due.
    void Act(Block& block, TimePoint now);
    /// When `Act` has something to do next.
    TimePoint Due(const Block& block) const;
    /// Whether packets of the block may still be asked for.
    bool MayAsk(const Block& block) const;

private:
    /// Packets in a row.
    struct Run {
        uint32_t first = 0;
        uint32_t count = 0;
    };

    uint32_t Limit(const Block& block) const;
    TimePoint TailDue(const Block& block) const;
    void AskGaps(Block& block, TimePoint now);
    void AskTail(Block& block, TimePoint now);
    void Repeat(Block& block, TimePoint now);
    uint32_t AskMissing(Block& block, uint32_t from, uint32_t end, TimePoint now);
    void AskTrailer(Block& block, TimePoint now);
    uint32_t Grant(Block& block, uint32_t wanted, TimePoint now);
    void Add(const Block& block, Run run);
    void Send(const Block& block);

    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    BlockClient& m_client;
    Run m_pending;
    TimePoint m_secondBegin{};
    uint32_t m_askedInSecond = 0;
};

}  // namespace OvGige
