#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

/// Events of Camera Link: one event without a size or several events with theirs; big-endian
/// numbers. The data that features read begins with the event's size.
class OV_ENGINE_API CEventAdapterCL : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapterCL(INodeMap* map = nullptr);

    /// As for CEventAdapter.
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
};

}  // namespace GenApi_3_0_ORVANE
