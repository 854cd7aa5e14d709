// Events of GigE Vision. A request may leave out the sizes of its events, which then follow from
// the kind of the request: with or without data, with short or extended identifiers.

#include "GenApi/EventAdapterGEV.h"

#include <algorithm>
#include <array>

#include "Base/GCException.h"
#include "events/EventLayout.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Every network carries a datagram of this length in one piece, and the protocol keeps to
/// it.
constexpr size_t kLongestRequest = 576;
/// A flag in the second byte of the message.
constexpr uint8_t kExtendedID = 0x10;
/// The two commands that carry events, the second one with data.
constexpr uint32_t kEventCommand = 0xC0;
constexpr uint32_t kEventDataCommand = 0xC2;

/// A kind of request, and the least that its first event holds.
struct EventRecord {
    uint32_t command;
    bool isExtended;
    size_t size;
};

/// The head of each request is 8 bytes; the sizes here are those of the event after it.
constexpr EventRecord GVCP_EVENT_REQUEST = {kEventCommand, false, 16};
constexpr EventRecord GVCP_EVENT_REQUEST_EXTENDED_ID = {kEventCommand, true, 24};
constexpr EventRecord GVCP_EVENTDATA_REQUEST = {kEventDataCommand, false, 20};
constexpr EventRecord GVCP_EVENTDATA_REQUEST_EXTENDED_ID = {kEventDataCommand, true, 28};
constexpr std::array kRecords = {GVCP_EVENT_REQUEST, GVCP_EVENT_REQUEST_EXTENDED_ID,
                                 GVCP_EVENTDATA_REQUEST, GVCP_EVENTDATA_REQUEST_EXTENDED_ID};

/// Any other command isn't an event, and this adapter isn't its receiver.
const EventRecord& RecordOf(uint32_t command, bool isExtended) {
    const auto* const record =
        std::find_if(kRecords.begin(), kRecords.end(), [&](const EventRecord& each) {
            return each.command == command && each.isExtended == isExtended;
        });
    if (record == kRecords.end()) {
        RUNTIME_EXCEPTION("Malformed message - unknown tag %x", command);
    }
    return *record;
}

}  // namespace

CEventAdapterGEV::CEventAdapterGEV(INodeMap* map) : CEventAdapter(map) {}

void CEventAdapterGEV::DeliverMessage(const uint8_t* bytes, int64_t length) {
    const EventLayout& layout = kEventLayoutGEV;
    const std::span<const uint8_t> message = CheckEventHead(layout, bytes, length);
    const size_t told = ReadEventNumber(bytes + layout.lengthField, 2, layout.order);
    if (told > std::min(message.size(), kLongestRequest)) {
        RUNTIME_EXCEPTION("Malformed message - too large");
    }
    const uint32_t command = ReadEventNumber(bytes + 2, 2, layout.order);
    const EventRecord& record = RecordOf(command, (bytes[1] & kExtendedID) != 0);
    if (told < record.size) {
        RUNTIME_EXCEPTION("Malformed message - too small");
    }
    // The length doesn't count the head, which the total does.
    if (told > message.size() - layout.events) {
        RUNTIME_EXCEPTION("Malformed message - too large");
    }
    // An event without a size of its own has that of its kind. Data without a size belong
    // to one event, however much they are.
    const size_t size = command == kEventDataCommand ? told : record.size;
    EventItems items(layout, message.subspan(layout.events, told), size);
    while (!items.IsAtEnd()) {
        DeliverEventItem(items.Next());
    }
}

/// Features read an event from its size on. Where the device left the size out, they get a copy
/// with the size filled in.
void CEventAdapterGEV::DeliverEventItem(const EventItem& item) {
    if (item.hasSize) {
        AttachItemToPorts(item.bytes, item.id);
        return;
    }
    const size_t size = item.bytes.size();
    std::array<uint8_t, kLongestRequest> copy;
    std::copy(item.bytes.begin(), item.bytes.end(), copy.begin());
    copy[0] = static_cast<uint8_t>(size >> 8);
    copy[1] = static_cast<uint8_t>(size);
    AttachItemToPorts(std::span(copy).first(size), item.id);
}

}  // namespace GenApi_3_0_ORVANE
