#pragma once
/// The layouts of event messages, and the one way through all of them. Places and
/// sizes count in bytes.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace GenApi_3_0_ORVANE {

/// A number that a message of a transport must hold.
struct EventSignature {
    size_t offset;
    size_t size;
    uint32_t value;
    /// How failures call it.
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

/// How events lie one behind the other, each with a size in two bytes, an
/// identifier in two bytes, and what belongs to the event.
struct EventItemLayout {
    EventSizing sizing;
    /// What the size leaves out.
    size_t uncounted;
    /// No event has less.
    size_t shortest;
    /// The failure's text for an event with less.
    const char* tooShort;
    /// The failure's text for an event that goes beyond the message.
    const char* tooLong;
};

struct EventLayout {
    std::endian order;
    /// A shorter message isn't looked at.
    size_t shortest;
    /// The failure's text for it.
    const char* tooSmall;
    std::span<const EventSignature> signatures;
    /// Where the length of the events stands, in two bytes.
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

/// A message that starts as the layout wants it. RuntimeException otherwise.
std::span<const uint8_t> CheckEventHead(const EventLayout& layout, const uint8_t* bytes,
                                        int64_t length);

/// The events of a message of which the caller knows no more than its bytes.
/// RuntimeException for a message that isn't well formed.
std::span<const uint8_t> FindEvents(const EventLayout& layout, const uint8_t* bytes,
                                    int64_t length);

struct EventItem {
    /// From its size on.
    std::span<const uint8_t> bytes;
    uint32_t id;
    /// Whether the event itself told its size.
    bool hasSize;
};

/// The events of one message, from the first to the last.
class EventItems {
public:
    /// @param size  of a first event that doesn't tell it, where the layout takes
    ///              it from the one before
    EventItems(const EventLayout& layout, std::span<const uint8_t> events, size_t size = 0)
        : m_Layout(layout), m_Rest(events), m_Size(size) {}

    bool IsAtEnd() const { return m_Rest.empty(); }
    /// RuntimeException for an event that can't have its size.
    EventItem Next();

private:
    size_t SizeOf(size_t field) const;

    const EventLayout& m_Layout;
    std::span<const uint8_t> m_Rest;
    size_t m_Size;
};

}  // namespace GenApi_3_0_ORVANE
