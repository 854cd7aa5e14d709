#include "virtual/CameraEvents.h"

#include "virtual/BigEndian.h"

namespace OvVirtual {

EventItem MakeEventItem(CameraEvent event, uint64_t frame, uint64_t ticks) {
    EventItem item{};
    const std::span<std::byte> bytes(item);
    PutBigEndian(bytes.subspan(0, 2), item.size());
    PutBigEndian(bytes.subspan(2, 2), EventId(event));
    PutBigEndian(bytes.subspan(6, 2), frame);
    PutBigEndian(bytes.subspan(8, 8), ticks);
    PutBigEndian(bytes.subspan(16, 8), frame);
    return item;
}

}  // namespace OvVirtual
