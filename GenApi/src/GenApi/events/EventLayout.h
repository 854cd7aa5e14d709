#pragma once
/// The layouts of event messages, and the one walk through all of them. Places and sizes count in
/// bytes.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace GenApi_3_0_ORVANE {

/// A number that every message of a transport has in the same place.
struct EventSignature {
    size_t offset;
    size_t size;
    uint32_t value;
    /// Its name in failures.
    const char* name;
};

/// Where the size of an event comes from.
enum class EventSizing {
    /// The rest of the message is one event, whatever its own field says.
    Rest,
    /// Its own field.
    Own,
    /// Its own field; the rest of the message when that is 0.
    OwnOrRest,
    /// Its own field; the size of the one before when that is 0.
    OwnOrLast,
};

/// How the events follow one another, each with a size in two bytes, an identifier in two bytes,
/// and its data.
struct EventItemLayout {
    EventSizing sizing;
    /// How many bytes of the event its size doesn't count.
    size_t uncounted;
    /// The least that an event has.
    size_t shortest;
    /// The failure's text for a shorter event.
    const char* tooShort;
    /// The failure's text for an event that goes beyond the message.
    const char* tooLong;
};

struct EventLayout {
    std::endian order;
    /// The least that a message has.
    size_t shortest;
    /// The failure's text for a shorter message.
    const char* tooSmall;
    std::span<const EventSignature> signatures;
    /// Where the length of the events is, in two bytes.
    size_t lengthField;
    /// Where the events start.
    size_t events;
    EventItemLayout items;
};

extern const EventLayout kEventLayoutGEV;
extern const EventLayout kEventLayoutU3V;
extern const EventLayout kEventLayoutCL;
extern const EventLayout kEventLayout1394;

/// @param size  1 to 4
uint32_t ReadEventNumber(const uint8_t* bytes, size_t size, std::endian order);

/// Returns the message, if it begins as the layout says.
/// @throws RuntimeException otherwise
std::span<const uint8_t> CheckEventHead(const EventLayout& layout, const uint8_t* bytes,
                                        int64_t length);

/// Returns the events of a message of which only the bytes are known.
/// @throws RuntimeException for a message that isn't well formed
std::span<const uint8_t> FindEvents(const EventLayout& layout, const uint8_t* bytes,
                                    int64_t length);

struct EventItem {
    /// The event, from its size on.
    std::span<const uint8_t> bytes;
    uint32_t id;
    /// Whether the event has its own size.
    bool hasSize;
};

/// The events of one message, from the first to the last.
class EventItems {
public:
    /// @param size  of a first event without its own size, for layouts that take it from the one
    ///         before
    EventItems(const EventLayout& layout, std::span<const uint8_t> events, size_t size = 0)
        : m_Layout(layout), m_Rest(events), m_Size(size) {}

    bool IsAtEnd() const { return m_Rest.empty(); }
    /// Returns the next event.
    /// @throws RuntimeException for an event that can't have its size
    EventItem Next();

private:
    size_t SizeOf(size_t field) const;

    const EventLayout& m_Layout;
    std::span<const uint8_t> m_Rest;
    size_t m_Size;
};

}  // namespace GenApi_3_0_ORVANE
