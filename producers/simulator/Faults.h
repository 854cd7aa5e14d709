#pragma once
/// What a simulated camera does wrong, and how often. Shares are from 0 to 1.

#include <chrono>
#include <cstdint>
#include <optional>

#include "gige/protocol/Address.h"

namespace OvSimulator {

/// On the control channel.
struct ControlFaults {
    double missing = 0;  ///< answers that aren't sent
    double doubled = 0;  ///< answers that are sent twice
    double late = 0;
    std::chrono::milliseconds lateBy{800};
    /// Answers that come after one with another number, and after one of somebody else.
    double foreign = 0;
    /// Answers that come after one that asks for patience, if the host knows such.
    double pending = 0;
    std::chrono::milliseconds pendingFor{300};
    bool refusesControl = false;
    uint64_t diesAfter = 0;   ///< commands, after which nothing is heard any more; 0: never
    uint64_t movesAfter = 0;  ///< commands, after which the camera has another address; 0: never
    OvGige::Ipv4 movesTo;
    int64_t wrongLength = 0;  ///< bytes that the description isn't longer by, or shorter
};

/// On the stream. At most one of those of a packet happens to it.
struct StreamFaults {
    double lost = 0;     ///< packets that aren't sent
    uint64_t burst = 1;  ///< packets in a row that a loss takes
    double truncated = 0;
    double corrupted = 0;  ///< packets with a wrong byte
    double doubled = 0;
    double delayed = 0;      ///< packets that come after their block's trailer
    double reordered = 0;    ///< packets that come after the next one
    double wrongLeader = 0;  ///< blocks whose leader says another size
    double jumpBack = 0;     ///< blocks whose number is 1 again
    double wrongChunk = 0;   ///< of blocks with chunks: those with a wrong length or identifier
};

/// On the message channel.
struct MessageFaults {
    double lost = 0;     ///< sendings of messages that don't take place
    double doubled = 0;  ///< that take place twice
    double ignored = 0;  ///< acknowledgements that the camera doesn't hear
    double foreign = 0;  ///< sendings after one of the same events by somebody else
};

struct Faults {
    uint64_t seed = 0;
    ControlFaults control;
    StreamFaults stream;
    MessageFaults message;
};

}  // namespace OvSimulator
