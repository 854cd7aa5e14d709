// Events of cameras on an IEEE 1394 bus: a message says how many events it has.

#include "GenApi/EventAdapter1394.h"

#include "Base/Log.h"
#include "GenApi/INodeMap.h"
#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;

static_assert(sizeof(EventData1394) == 4 && alignof(EventData1394) == 1,
              "a message may lie anywhere");

/// Held by a pointer, since clients derive from the adapter and its size must not change.
struct CEventAdapter1394::EventAdapter1394Impl {
    void* m_pLog = nullptr;
};

CEventAdapter1394::CEventAdapter1394(INodeMap* map)
    : m_pImpl(std::make_unique<EventAdapter1394Impl>()) {
    if (map != nullptr) {
        CEventAdapter1394::AttachNodeMap(map);
    }
}

CEventAdapter1394::~CEventAdapter1394() = default;

void CEventAdapter1394::AttachNodeMap(INodeMap* map) {
    CEventAdapter::AttachNodeMap(map);
    m_pImpl->m_pLog = CLog::GetLogger(gcstring("EventAdapter1394.") + map->GetDeviceName() +
                                      ".Misc." + "CEventAdapter1394");
}

/// The structure has neither padding nor alignment, so it can be laid over any bytes.
void CEventAdapter1394::DeliverMessage(const uint8_t* bytes, int64_t length) {
    const auto message = CheckEventHead(kEventLayout1394, bytes, length);
    DeliverEventMessage(*reinterpret_cast<const EventData1394*>(message.data()), length);
}

/// The count decides, not the length: bytes after the last event are allowed.
void CEventAdapter1394::DeliverEventMessage(const EventData1394& message, int64_t length) {
    const EventLayout& layout = kEventLayout1394;
    const auto bytes = CheckEventHead(layout, reinterpret_cast<const uint8_t*>(&message), length);
    const uint32_t count = ReadEventNumber(message.NumEvents, 2, layout.order);
    const uint32_t request = ReadEventNumber(message.Request, 2, layout.order);
    GCLOGINFO(m_pImpl->m_pLog, "Received request %d with %d events: \n", static_cast<int>(request),
              static_cast<int>(count));
    EventItems items(layout, bytes.subspan(layout.events));
    // The count comes from the device. Each step checks that the message still has an
    // event.
    for (uint32_t i = 0; i < count; ++i) {
        const EventItem item = items.Next();
        GCLOGINFO(m_pImpl->m_pLog, "Event %d\n", static_cast<int>(item.id));
        AttachItemToPorts(item.bytes, item.id);
    }
}

}  // namespace GenApi_3_0_ORVANE
