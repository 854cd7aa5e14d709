#include "gige/stream/MessageNotes.h"

#include <netinet/in.h>
#include <netinet/udp.h>

#include <cstring>

namespace OvGige {

MessageNotes ReadNotes(const msghdr& message) {
    MessageNotes notes;
    for (const cmsghdr* item = CMSG_FIRSTHDR(&message); item != nullptr;
         item = CMSG_NXTHDR(const_cast<msghdr*>(&message), const_cast<cmsghdr*>(item))) {
        if (item->cmsg_level == SOL_SOCKET && item->cmsg_type == SO_RXQ_OVFL) {
            std::memcpy(&notes.drops, CMSG_DATA(item), sizeof notes.drops);
        } else if (item->cmsg_level == SOL_UDP && item->cmsg_type == UDP_GRO) {
            int size = 0;
            std::memcpy(&size, CMSG_DATA(item), sizeof size);
            notes.segmentSize = static_cast<size_t>(size);
        }
    }
    return notes;
}

void AllowTrains(int file) {
    const int one = 1;
    static_cast<void>(setsockopt(file, SOL_UDP, UDP_GRO, &one, sizeof one));
}

}  // namespace OvGige
