#include "gige/net/WaitForFiles.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "framework/Failure.h"

namespace OvGige {

using std::chrono::steady_clock;

bool WaitForFiles(std::span<pollfd> files, steady_clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::nanoseconds>(
            std::max(deadline - steady_clock::now(), steady_clock::duration::zero()));
        const timespec wait{.tv_sec = left.count() / 1'000'000'000,
                            .tv_nsec = left.count() % 1'000'000'000};
        const int ready = ppoll(files.data(), files.size(), &wait, nullptr);
        if (ready >= 0) {
            return ready > 0;
        }
        if (errno != EINTR) {
            throw OvProducer::Failure(GenTL::GC_ERR_IO, "Waiting for a datagram: " +
                                                            std::generic_category().message(errno));
        }
    }
}

}  // namespace OvGige
