#pragma once
/// The messages that a camera sends by itself, in the layout of GigE Vision's event
/// items. Numbers have their highest byte first.
///
/// | Offset | Bytes | |
/// |---|---|---|
/// | 0 | 2 | bytes of the whole item |
/// | 2 | 2 | identifier of the event |
/// | 4 | 2 | stream channel, 0 |
/// | 6 | 2 | block: the frame's low 16 bits |
/// | 8 | 8 | time, ticks of the camera |
/// | 16 | 8 | frame |

#include <array>
#include <cstddef>
#include <cstdint>

namespace OvVirtual {

enum class CameraEvent : int64_t {
    ExposureEnd = 0,        ///< a frame was exposed
    FrameStartOvertrigger,  ///< a trigger was missed because a frame was being exposed
    BlockDiscard,           ///< a frame was discarded because no buffer was free
    Count
};

constexpr auto kCameraEvents = static_cast<int64_t>(CameraEvent::Count);

/// The identifier that the description's ports have.
constexpr uint64_t EventId(CameraEvent event) {
    constexpr uint64_t kFirst = 0x9001;
    return kFirst + static_cast<uint64_t>(event);
}

using EventItem = std::array<std::byte, 24>;

EventItem MakeEventItem(CameraEvent event, uint64_t frame, uint64_t ticks);

}  // namespace OvVirtual
