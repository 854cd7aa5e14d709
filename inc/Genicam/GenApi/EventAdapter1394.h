#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

/// The start of a message of an IEEE 1394 camera, as it is on the bus: big-endian numbers. The
/// events follow it.
struct EventData1394 {
    /// How many events follow.
    uint8_t NumEvents[2];
    /// The number of the request, for the log only.
    uint8_t Request[2];
};

/// Events of IEEE 1394 cameras: a list with a count. The data that features read begins with the
/// event's length, which counts neither itself nor the identifier.
class OV_ENGINE_API CEventAdapter1394 : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapter1394(INodeMap* map = nullptr);
    ~CEventAdapter1394() override;

    /// As for CEventAdapter. Later messages are also written to the log of the map's device.
    void AttachNodeMap(INodeMap* map) override;
    /// As for CEventAdapter.
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
    /// The same for a message of known form.
    /// @param length  of the whole message, in bytes
    void DeliverEventMessage(const EventData1394& message, int64_t length);

private:
    struct EventAdapter1394Impl;

    std::unique_ptr<EventAdapter1394Impl> m_pImpl;
};

}  // namespace GenApi_3_0_ORVANE
