// The transports whose messages differ by their layouts alone: the walk over the events is here,
// once for all of them.

#include "GenApi/EventAdapterCL.h"
#include "GenApi/EventAdapterU3V.h"
#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

/// The head of the message is checked before the first event is handed over; each event is
/// checked when its turn comes. So events before a fault are delivered.
void CEventAdapter::DeliverEvents(const EventLayout& layout, const uint8_t* bytes, int64_t length) {
    EventItems items(layout, FindEvents(layout, bytes, length));
    while (!items.IsAtEnd()) {
        const EventItem item = items.Next();
        AttachItemToPorts(item.bytes, item.id);
    }
}

CEventAdapterU3V::CEventAdapterU3V(INodeMap* map) : CEventAdapter(map) {}

void CEventAdapterU3V::DeliverMessage(const uint8_t* bytes, int64_t length) {
    DeliverEvents(kEventLayoutU3V, bytes, length);
}

CEventAdapterCL::CEventAdapterCL(INodeMap* map) : CEventAdapter(map) {}

void CEventAdapterCL::DeliverMessage(const uint8_t* bytes, int64_t length) {
    DeliverEvents(kEventLayoutCL, bytes, length);
}

}  // namespace GenApi_3_0_ORVANE
