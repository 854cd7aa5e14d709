#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

/// The start of a message of an IEEE 1394 camera, as it lies on the bus: numbers
/// with their high byte first. The events follow it.
struct EventData1394 {
    uint8_t NumEvents[2];
    uint8_t Request[2];
};

/// Events of IEEE 1394 cameras: a counted list of them. A feature sees an event
/// from its length on, which leaves out itself and the identifier.
class OV_ENGINE_API CEventAdapter1394 : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapter1394(INodeMap* map = nullptr);
    ~CEventAdapter1394() override;

    /// Writes to the log of the map's device from then on.
    void AttachNodeMap(INodeMap* map) override;
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
    /// The same for a message that the caller knows by its form.
    /// @param length  of the whole message, in bytes
    void DeliverEventMessage(const EventData1394& message, int64_t length);

private:
    struct EventAdapter1394Impl;

    std::unique_ptr<EventAdapter1394Impl> m_pImpl;
};

}  // namespace GenApi_3_0_ORVANE
