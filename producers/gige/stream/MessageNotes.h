#pragma once
/// What the system says beside a message that it hands over.

#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace OvGige {

/// Room for both of them.
struct alignas(cmsghdr) NoteSpace {
    std::array<char, CMSG_SPACE(sizeof(uint32_t)) + CMSG_SPACE(sizeof(int))> bytes;
};

struct MessageNotes {
    /// How many datagrams the system had dropped when the message came; 0 if none.
    uint32_t drops = 0;
    /// Bytes of each datagram but the last, if the message is a train of them; otherwise 0.
    size_t segmentSize = 0;
};

MessageNotes ReadNotes(const msghdr& message);

/// Lets the system hand over trains of datagrams as one message each. Does nothing where it
/// can't.
void AllowTrains(int file);

}  // namespace OvGige
