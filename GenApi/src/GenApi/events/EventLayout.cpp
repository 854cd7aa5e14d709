// The layouts of event messages as tables, and the walk through the events of a message. The
// bytes come from a device: whatever they say, nothing beyond the message is read.

#include "events/EventLayout.h"

#include "Base/GCException.h"
#include "Base/OvAssert.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// An event begins with its size and its identifier, two bytes each.
constexpr size_t kItemHead = 4;
constexpr const char* kTooSmall = "Malformed message - too small";
constexpr const char* kTooLong = "Malformed message - reported length larger than message size";
constexpr const char* kTooShort =
    "Malformed message - reported length shorter than minimal event size";
constexpr const char* kCorrupted = "Corrupted event data";
/// The text is fixed, slips included: programs may compare it.
constexpr const char* kUnequalItems =
    "totalSize == curentPosition && \"the buffer must hold a number of equzally sized event "
    "items\"";

/// The key that begins each packet of the control channel.
constexpr EventSignature kSignatureGEV[] = {{0, 1, 0x42, "magic"}};
/// "U3VE" in the order of the bytes, then the number of the event command.
constexpr EventSignature kSignaturesU3V[] = {{0, 4, 0x45563355, "prefix"},
                                             {6, 2, 0x0C00, "command ID"}};
/// The preamble, then the number of the event command.
constexpr EventSignature kSignaturesCL[] = {{0, 2, 0x0100, "preamble"},
                                            {10, 2, 0x0C00, "command ID"}};

uint32_t ReadField(const EventLayout& layout, const uint8_t* bytes) {
    return ReadEventNumber(bytes, 2, layout.order);
}

}  // namespace

constinit const EventLayout kEventLayoutGEV = {
    .order = std::endian::big,
    .shortest = 8,
    .tooSmall = kTooSmall,
    .signatures = kSignatureGEV,
    .lengthField = 4,
    .events = 8,
    .items = {EventSizing::OwnOrLast, 0, 16, kUnequalItems, kUnequalItems}};

constinit const EventLayout kEventLayoutU3V = {
    .order = std::endian::little,
    .shortest = 24,
    .tooSmall = kTooSmall,
    .signatures = kSignaturesU3V,
    .lengthField = 8,
    .events = 12,
    .items = {EventSizing::Rest, 0, kItemHead, kTooShort, kTooLong}};

constinit const EventLayout kEventLayoutCL = {
    .order = std::endian::big,
    .shortest = 28,
    .tooSmall = kTooSmall,
    .signatures = kSignaturesCL,
    .lengthField = 12,
    .events = 16,
    .items = {EventSizing::OwnOrRest, 0, kItemHead, kTooShort, kTooLong}};

constinit const EventLayout kEventLayout1394 = {
    .order = std::endian::big,
    .shortest = 4,
    .tooSmall = kCorrupted,
    .signatures = {},
    .lengthField = 0,
    .events = 4,
    .items = {EventSizing::Own, kItemHead, kItemHead, kCorrupted, kCorrupted}};

/// Byte by byte, since a message may be at any address.
uint32_t ReadEventNumber(const uint8_t* bytes, size_t size, std::endian order) {
    uint32_t number = 0;
    for (size_t i = 0; i < size; ++i) {
        number = number << 8 | bytes[order == std::endian::big ? i : size - 1 - i];
    }
    return number;
}

/// The length is checked first: everything after it reads bytes.
std::span<const uint8_t> CheckEventHead(const EventLayout& layout, const uint8_t* bytes,
                                        int64_t length) {
    if (length < static_cast<int64_t>(layout.shortest)) {
        RUNTIME_EXCEPTION("%s", layout.tooSmall);
    }
    OV_ASSERT(bytes != nullptr);
    for (const EventSignature& signature : layout.signatures) {
        const uint32_t value =
            ReadEventNumber(bytes + signature.offset, signature.size, layout.order);
        if (value != signature.value) {
            RUNTIME_EXCEPTION("Malformed message - wrong %s %x (%x expected)", signature.name,
                              value, signature.value);
        }
    }
    return {bytes, static_cast<size_t>(length)};
}

/// What the message says about its length must fit both into what was received and around one
/// event. A message may be longer than it says: transports fill their packets up.
std::span<const uint8_t> FindEvents(const EventLayout& layout, const uint8_t* bytes,
                                    int64_t length) {
    const std::span<const uint8_t> message = CheckEventHead(layout, bytes, length);
    const size_t told = ReadField(layout, bytes + layout.lengthField);
    if (told + layout.events > message.size()) {
        RUNTIME_EXCEPTION("%s", kTooLong);
    }
    if (told + layout.events < layout.shortest) {
        RUNTIME_EXCEPTION("%s", kTooShort);
    }
    return message.subspan(layout.events, told);
}

/// An event without a size is the rest of the message, or as long as the one before, depending on
/// the transport.
size_t EventItems::SizeOf(size_t field) const {
    switch (m_Layout.items.sizing) {
        case EventSizing::Rest:
            return m_Rest.size();
        case EventSizing::OwnOrRest:
            return field != 0 ? field : m_Rest.size();
        case EventSizing::OwnOrLast:
            return field != 0 ? field : m_Size;
        case EventSizing::Own:
            break;
    }
    return field + m_Layout.items.uncounted;
}

/// Every size is held against the rest of the message before it is used, and each event takes
/// some bytes, so the walk ends.
EventItem EventItems::Next() {
    const EventItemLayout& items = m_Layout.items;
    if (m_Rest.size() < kItemHead) {
        RUNTIME_EXCEPTION("%s", items.tooShort);
    }
    const size_t field = ReadField(m_Layout, m_Rest.data());
    m_Size = SizeOf(field);
    if (m_Size < items.shortest) {
        RUNTIME_EXCEPTION("%s", items.tooShort);
    }
    if (m_Size > m_Rest.size()) {
        RUNTIME_EXCEPTION("%s", items.tooLong);
    }
    const EventItem item{m_Rest.first(m_Size), ReadField(m_Layout, m_Rest.data() + 2), field != 0};
    m_Rest = m_Rest.subspan(m_Size);
    return item;
}

}  // namespace GenApi_3_0_ORVANE
