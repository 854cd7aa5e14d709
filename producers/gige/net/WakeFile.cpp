#include "gige/net/WakeFile.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

#include "framework/Failure.h"

namespace OvGige {

WakeFile::WakeFile() : m_file(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_file < 0) {
        throw OvProducer::Failure(GenTL::GC_ERR_RESOURCE_EXHAUSTED, "No file to wait for");
    }
}

WakeFile::~WakeFile() {
    close(m_file);
}

// Both can only fail where the flag is already as it should be: at its greatest number, and
// at 0.
void WakeFile::Signal() const {
    const uint64_t one = 1;
    static_cast<void>(write(m_file, &one, sizeof one) == sizeof one);
}

void WakeFile::Clear() const {
    uint64_t count = 0;
    static_cast<void>(read(m_file, &count, sizeof count) == sizeof count);
}

bool WakeFile::IsSignalled() const {
    pollfd file{m_file, POLLIN, 0};
    return poll(&file, 1, 0) > 0;
}

}  // namespace OvGige
