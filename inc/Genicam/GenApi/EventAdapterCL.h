#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

/// Events of Camera Link: big-endian numbers, one event without a size or several
/// with theirs. A feature sees an event from its size on.
class OV_ENGINE_API CEventAdapterCL : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapterCL(INodeMap* map = nullptr);

    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
};

}  // namespace GenApi_3_0_ORVANE
