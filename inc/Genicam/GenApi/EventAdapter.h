#pragma once
/// Makes the messages that a device sends on its own readable by features.

#include <cstdint>
#include <memory>
#include <vector>

#include "Base/Export.h"

namespace GenApi_3_0_ORVANE {

class CEventPort;
struct EventLayout;
struct INodeMap;

/// Finds the events in a message and hands each to the nodes that declare its identifier.
///
/// One thread at a time delivers messages, one after the other; other threads may read features
/// meanwhile. The callbacks of the features run during the delivery, and an exception from one of
/// them ends it. The map must outlive the adapter, or be detached before it ends.
class OV_ENGINE_API CEventAdapter {
public:
    virtual ~CEventAdapter();
    CEventAdapter(const CEventAdapter&) = delete;
    CEventAdapter& operator=(const CEventAdapter&) = delete;

    /// Takes the place of the transport at all port nodes that declare an event. A map that was
    /// attached before is detached.
    /// @param map  never null
    virtual void AttachNodeMap(INodeMap* map);
    /// Hands over the events of one message.
    /// @param bytes   the message as it was received, read during the call only; never null with
    ///         a length above 0
    /// @param length  in bytes
    /// @throws RuntimeException for a message that isn't well formed; the events before the fault
    ///         are handed over
    virtual void DeliverMessage(const uint8_t* bytes, int64_t length) = 0;

    /// Leaves the port nodes without a transport. An exception from a callback passes on to the
    /// caller, with the whole map detached.
    void DetachNodeMap();

protected:
    /// Makes an adapter without a map.
    CEventAdapter();
    /// @param map  attached at once; may be null
    explicit CEventAdapter(INodeMap* map);

    /// Hands over all events of a message of the given layout.
    void DeliverEvents(const EventLayout& layout, const uint8_t* bytes, int64_t length);
    /// Hands an event to every port that waits for the identifier.
    template <class Bytes>
    void AttachItemToPorts(const Bytes& item, uint32_t id) {
        AttachEventToPorts(item.data(), static_cast<int64_t>(item.size()), uint64_t{id});
    }
    /// The same for an event that wasn't checked: the ports refuse null and a negative length.
    void AttachEventToPorts(const uint8_t* data, int64_t length, uint64_t id);
    /// @param id  as a device sends it, most significant byte first
    void AttachEventToPorts(const uint8_t* data, int64_t length, const std::vector<uint8_t>& id);

private:
    template <class Matches>
    void AttachEventIf(const uint8_t* data, int64_t length, const Matches& matches);

    std::vector<std::unique_ptr<CEventPort>> m_EventPorts;
};

}  // namespace GenApi_3_0_ORVANE
