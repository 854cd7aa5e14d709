#pragma once
/// Makes the messages that a device sends by itself readable by features.

#include <cstdint>
#include <memory>
#include <vector>

#include "Base/Export.h"

namespace GenApi_3_0_ORVANE {

class CEventPort;
struct EventLayout;
struct INodeMap;

/// Finds the events in a message and hands each to the nodes that declare its
/// identifier.
///
/// A client delivers message after message, from one thread at a time; features
/// may be read meanwhile. The callbacks of the features run within the delivery,
/// and what they raise ends it. The map must outlive the adapter or be detached
/// before it goes.
class OV_ENGINE_API CEventAdapter {
public:
    virtual ~CEventAdapter();
    CEventAdapter(const CEventAdapter&) = delete;
    CEventAdapter& operator=(const CEventAdapter&) = delete;

    /// Takes the place of the transport at all port nodes that declare an event.
    /// An earlier map is detached.
    /// @param map  never null
    virtual void AttachNodeMap(INodeMap* map);
    /// Hands over the events of one message. RuntimeException for a message that
    /// isn't well formed; events before the fault have been handed over then.
    /// @param bytes   as they came, read during the call only; never null with a
    ///                length above 0
    /// @param length  in bytes
    virtual void DeliverMessage(const uint8_t* bytes, int64_t length) = 0;

    /// The port nodes are left without a transport. What their callbacks raise
    /// goes on to the caller; the whole map is detached then.
    void DetachNodeMap();

protected:
    CEventAdapter();
    /// @param map  may be null
    explicit CEventAdapter(INodeMap* map);

    /// Hands over all events of a message that its layout tells how to take apart.
    void DeliverEvents(const EventLayout& layout, const uint8_t* bytes, int64_t length);
    /// Hands an event to every port that waits for the identifier.
    template <class Bytes>
    void AttachItemToPorts(const Bytes& item, uint32_t id) {
        AttachEventToPorts(item.data(), static_cast<int64_t>(item.size()), uint64_t{id});
    }
    /// The same for an event of which nothing was checked; null and a negative
    /// length are the ports' to refuse.
    void AttachEventToPorts(const uint8_t* data, int64_t length, uint64_t id);
    /// @param id  as a device sends it, most significant byte first
    void AttachEventToPorts(const uint8_t* data, int64_t length, const std::vector<uint8_t>& id);

private:
    template <class Matches>
    void AttachEventIf(const uint8_t* data, int64_t length, const Matches& matches);

    std::vector<std::unique_ptr<CEventPort>> m_EventPorts;
};

}  // namespace GenApi_3_0_ORVANE
