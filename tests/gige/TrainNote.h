#pragma once
/// Has the system take a message apart into datagrams of one size.

#include <netinet/in.h>
#include <netinet/udp.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace OvTest {

/// Must live until the message is sent.
class TrainNote {
public:
    /// @param size  of each datagram but the last
    TrainNote(msghdr& message, size_t size) {
        message.msg_control = m_space.data();
        message.msg_controllen = m_space.size();
        cmsghdr* const item = CMSG_FIRSTHDR(&message);
        item->cmsg_level = SOL_UDP;
        item->cmsg_type = UDP_SEGMENT;
        item->cmsg_len = CMSG_LEN(sizeof(uint16_t));
        const auto segment = static_cast<uint16_t>(size);
        std::memcpy(CMSG_DATA(item), &segment, sizeof segment);
    }
    TrainNote(const TrainNote&) = delete;
    TrainNote& operator=(const TrainNote&) = delete;

private:
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(uint16_t))> m_space{};
};

}  // namespace OvTest
