// The transports whose messages differ in their layouts alone.

#include "GenApi/EventAdapterCL.h"
#include "GenApi/EventAdapterU3V.h"
#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

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
