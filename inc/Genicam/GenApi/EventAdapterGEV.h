#pragma once

#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

struct EventItem;

/// Events of GigE Vision: requests of the control channel, each with one event or several, with
/// or without data; big-endian numbers.
///
/// The data that features read begins with the event's size in two bytes, which is filled in
/// where the device left it out.
class OV_ENGINE_API CEventAdapterGEV : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapterGEV(INodeMap* map = nullptr);

    /// As for CEventAdapter.
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;

private:
    void DeliverEventItem(const EventItem& item);
};

}  // namespace GenApi_3_0_ORVANE
