// Events of Camera Link, which differ from those of other transports by their layout alone.

#include "GenApi/EventAdapterCL.h"

#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

CEventAdapterCL::CEventAdapterCL(INodeMap* map) : CEventAdapter(map) {}

void CEventAdapterCL::DeliverMessage(const uint8_t* bytes, int64_t length) {
    DeliverEvents(kEventLayoutCL, bytes, length);
}

}  // namespace GenApi_3_0_ORVANE
