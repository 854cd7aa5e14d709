#pragma once
/// How blocks are put together.

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace OvGige {

using TimePoint = std::chrono::steady_clock::time_point;

struct AssemblerSettings {
    /// The camera's packet size, with the headers of IP and UDP.
    size_t packetSize = 1500;
    uint16_t channel = 0;
    /// Ticks per second of the camera's clock; 0 if it has none.
    uint64_t tickFrequency = 0;

    /// Whether lost packets are asked for again. The camera must offer it.
    bool resends = true;
    /// Whether blocks with missing packets are delivered, marked so.
    bool deliversIncomplete = true;
    /// Most packets of a block that are asked for, in percent of it.
    uint32_t resendPercent = 25;
    /// Most packets that are asked for in a second.
    uint32_t resendsPerSecond = 20'000;

    /// A gap is asked for after this time: packets that were only overtaken come by themselves.
    std::chrono::microseconds gapTime{1'000};
    /// A block of which nothing came for this time is asked for up to its end, and packets that
    /// were asked for are asked for again.
    std::chrono::microseconds packetTimeout{20'000};
    /// A block of which nothing came for this time is given up.
    std::chrono::microseconds retention{100'000};
};

}  // namespace OvGige
