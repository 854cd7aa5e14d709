// Events are messages that a camera sends by itself. Each node with an event's identifier
// gets an event port, which keeps the last message of that kind for the node to read.

#include "GenApi/EventAdapter.h"

#include <utility>

#include "Base/OvAssert.h"
#include "GenApi/EventPort.h"
#include "GenApi/INodeMap.h"
#include "events/EventLayout.h"
#include "map/FaultyNodes.h"

namespace GenApi_3_0_ORVANE {

CEventAdapter::CEventAdapter() = default;

CEventAdapter::CEventAdapter(INodeMap* map) {
    if (map != nullptr) {
        CEventAdapter::AttachNodeMap(map);
    }
}

CEventAdapter::~CEventAdapter() = default;

/// Any node may declare an event, also one that isn't a port: its callbacks are all that it gets
/// of the event.
void CEventAdapter::AttachNodeMap(INodeMap* map) {
    OV_ASSERT(map != nullptr);
    node_vector nodes;
    map->GetNodes(nodes);
    DetachNodeMap();
    std::vector<std::unique_ptr<CEventPort>> ports;
    for (INode* const node : nodes) {
        if (!node->GetEventID().empty()) {
            VisitUnlessFaulty(*node, [&] { ports.push_back(std::make_unique<CEventPort>(node)); });
        }
    }
    m_EventPorts.swap(ports);
}

/// Moved out first, so that no port is left in the adapter if a callback throws.
void CEventAdapter::DetachNodeMap() {
    const std::vector<std::unique_ptr<CEventPort>> ports = std::exchange(m_EventPorts, {});
    for (const auto& port : ports) {
        port->DetachNode();
    }
}

/// The head of the message is checked before the first event is handed over; each event is
/// checked when its turn comes. So events before a fault are delivered.
void CEventAdapter::DeliverEvents(const EventLayout& layout, const uint8_t* bytes, int64_t length) {
    EventItems items(layout, FindEvents(layout, bytes, length));
    while (!items.IsAtEnd()) {
        const EventItem item = items.Next();
        AttachItemToPorts(item.bytes, item.id);
    }
}

/// Several nodes may declare one event, for its parts for example. The lock is taken port by port
/// and not for the whole message: a callback of one node may take as long as it likes.
template <class Matches>
void CEventAdapter::AttachEventIf(const uint8_t* data, int64_t length, const Matches& matches) {
    for (const auto& port : m_EventPorts) {
        if (matches(*port)) {
            port->AttachEvent(data, length);
        }
    }
}

void CEventAdapter::AttachEventToPorts(const uint8_t* data, int64_t length, uint64_t id) {
    AttachEventIf(data, length, [id](const CEventPort& port) { return port.CheckEventID(id); });
}

void CEventAdapter::AttachEventToPorts(const uint8_t* data, int64_t length,
                                       const std::vector<uint8_t>& id) {
    AttachEventIf(data, length, [id](const CEventPort& port) {
        return port.CheckEventID(id.data(), static_cast<int64_t>(id.size()));
    });
}

}  // namespace GenApi_3_0_ORVANE
