#pragma once
/// The largest packets that come through.

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

namespace OvGige {

/// Asks for a test packet of a size; the camera may round it. Waits for it so long. Returns the
/// size of the packet that came, or nothing.
using TestPacket =
    std::function<std::optional<size_t>(size_t size, std::chrono::milliseconds patience)>;

/// Finds the largest packet size up to `largest` that comes through, by test packets. A switch
/// on the way may drop what both ends can send, so only a packet that came proves anything.
/// Returns nothing if none came: such a camera sends no test packets.
std::optional<size_t> FindPacketSize(size_t largest, const TestPacket& test);

/// Packets of this size come through everywhere.
constexpr size_t kUsualPacketSize = 1500;

}  // namespace OvGige
