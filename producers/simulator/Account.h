#pragma once
/// What a simulated camera did, by cause, so that a test or a user can hold it against what
/// arrived at the other end.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace OvSimulator {

enum class Count : size_t {
    Commands,          ///< that were meant for this camera
    Ignored,           ///< packets that no camera answers
    Repeated,          ///< commands that came again
    Discoveries,       ///< answered searches
    ForcedAddresses,   ///< commands that gave the camera an address or took it away
    AddressesRefused,  ///< addresses that this machine didn't let the camera have
    RegisterReads,     ///< registers, not commands
    RegisterWrites,
    MemoryReads,  ///< commands
    MemoryWrites,
    Refusals,         ///< answers with an error
    ControlTaken,     ///< by an application
    ControlDenied,    ///< to a second application
    ControlGiven,     ///< back by its owner
    ControlLost,      ///< by an owner who fell silent
    Answers,          ///< packets sent on the control channel
    NetworkFailures,  ///< of this machine, to send or to receive
    Blocks,           ///< frames sent, each with a number
    StreamPackets,    ///< sent, those of `ResentPackets` and `TestPackets` included
    StreamBytes,      ///< with the headers of IP
    PacketsTooLarge,  ///< that the network doesn't take in one piece
    TestPackets,
    ResendCommands,
    AskedPackets,      ///< that those commands asked for
    ResentPackets,     ///< sent again
    RefusedResends,    ///< commands answered by a packet that says why not
    Actions,           ///< signals asserted
    ScheduledActions,  ///< commands that were kept for their time
    LateActions,       ///< commands that came after their time
    ActionsOfOthers,   ///< commands with other keys or masks
    Events,            ///< that happened while somebody wanted them
    DroppedEvents,     ///< of these, since too many waited
    Messages,          ///< with events, each counted once
    RepeatedMessages,
    Acknowledgements,
    AbandonedMessages,  ///< that nobody acknowledged
    // What was done wrong on purpose.
    MissingAnswers,
    DoubledAnswers,
    LateAnswers,
    ForeignAnswers,
    PendingAnswers,
    ControlRefused,  ///< to whoever asked
    Deaths,          ///< the camera fell silent for ever
    UnheardPackets,  ///< that came after that, or while it was off the bus
    AddressChanges,  ///< that nobody asked for
    LostPackets,     ///< of the stream, as those that follow
    TruncatedPackets,
    CorruptedPackets,
    DoubledPackets,
    DelayedPackets,
    ReorderedPackets,
    DamagedBlocks,  ///< with a packet that was lost, truncated or corrupted
    WrongLeaders,
    JumpsBack,
    WrongChunks,
    LostMessages,
    DoubledMessages,
    IgnoredAcknowledgements,
    ForeignMessages,
    Total
};

/// The counts of one camera. Any thread may use it.
class Account {
public:
    void Add(Count count, uint64_t number = 1) {
        m_counts[static_cast<size_t>(count)].fetch_add(number, std::memory_order_relaxed);
    }
    uint64_t operator[](Count count) const {
        return m_counts[static_cast<size_t>(count)].load(std::memory_order_relaxed);
    }

private:
    std::array<std::atomic<uint64_t>, static_cast<size_t>(Count::Total)> m_counts{};
};

/// The count's name for people and machines: "controlTaken".
std::string_view NameOf(Count count);

/// All counts with their names, in order.
std::vector<std::pair<std::string_view, uint64_t>> RowsOf(const Account& account);

}  // namespace OvSimulator
