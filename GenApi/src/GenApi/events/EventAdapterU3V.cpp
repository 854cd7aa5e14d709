// Events of USB3 Vision, which differ from those of other transports by their layout alone.

#include "GenApi/EventAdapterU3V.h"

#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

CEventAdapterU3V::CEventAdapterU3V(INodeMap* map) : CEventAdapter(map) {}

void CEventAdapterU3V::DeliverMessage(const uint8_t* bytes, int64_t length) {
    DeliverEvents(kEventLayoutU3V, bytes, length);
}

}  // namespace GenApi_3_0_ORVANE
