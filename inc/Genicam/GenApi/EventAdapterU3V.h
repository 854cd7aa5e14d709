#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

/// Events of USB3 Vision: one in each message, with little-endian numbers. The data that features
/// read begins with the reserved bytes before the identifier.
class OV_ENGINE_API CEventAdapterU3V : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapterU3V(INodeMap* map = nullptr);

    /// As for CEventAdapter.
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
};

}  // namespace GenApi_3_0_ORVANE
