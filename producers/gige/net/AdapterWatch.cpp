#include "gige/net/AdapterWatch.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "framework/Failure.h"

namespace OvGige {
namespace {

int OpenNews() {
    const int file = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR;
    if (file >= 0 && bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        return file;
    }
    const int reason = errno;
    if (file >= 0) {
        close(file);
    }
    throw OvProducer::Failure(GenTL::GC_ERR_IO,
                              "No news of adapters: " + std::generic_category().message(reason));
}

/// Takes all messages. What they say is of no interest: the list of adapters says it better,
/// also after some were lost.
void DropNews(int file) {
    std::array<char, 4096> message;
    while (recv(file, message.data(), message.size(), 0) >= 0 || errno == EINTR ||
           errno == ENOBUFS) {
    }
}

}  // namespace

AdapterWatch::AdapterWatch(std::function<void()> onChange)
    : m_onChange(std::move(onChange)), m_file(OpenNews()), m_thread([this] { Run(); }) {}

AdapterWatch::~AdapterWatch() {
    m_end.Signal();
    m_thread.join();
    close(m_file);
}

void AdapterWatch::Run() const {
    do {
        m_onChange();
    } while (WaitForChange());
}

bool AdapterWatch::WaitForChange() const {
    std::array<pollfd, 2> files{{{m_file, POLLIN, 0}, {m_end.File(), POLLIN, 0}}};
    while (poll(files.data(), files.size(), -1) < 0 && errno == EINTR) {
    }
    DropNews(m_file);
    return files[1].revents == 0;
}

}  // namespace OvGige
