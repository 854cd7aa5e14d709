#pragma once
/// What a user may set of a stream.

#include <cstddef>
#include <cstdint>

namespace OvGige {

/// Numbers, since they are registers of the stream module.
struct StreamSettings {
    int64_t deliversIncomplete = 1;
    int64_t resends = 1;
    int64_t resendPercent = 25;
    int64_t resendsPerSecond = 20'000;
    int64_t gapTime = 1'000;          ///< microseconds
    int64_t packetTimeout = 20'000;   ///< microseconds
    int64_t retention = 100'000;      ///< microseconds
    int64_t findsPacketSize = 1;      ///< unless the user has set the camera's
    int64_t socketBuffer = 16 << 20;  ///< bytes
    int64_t trains = 1;               ///< whether the system may join packets
    int64_t priority = 0;
    int64_t processor = -1;
    int64_t busyPoll = 0;  ///< microseconds
};

/// What a running stream uses.
struct ReceiverFacts {
    int64_t packetSize = 0;
    int64_t socketBuffer = 0;  ///< bytes that the system granted
    int64_t hostPort = 0;
};

}  // namespace OvGige
