// Times the ways of writing a picture.

#include "support/WayOfWriting.h"

#include <algorithm>
#include <chrono>

#include "support/CacheSize.h"

namespace QyWriting {

namespace {

int64_t Nanoseconds() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

Machine ThisMachine() {
    return {QyCache::kUsualBytes, QyCache::LargestBytes(), Nanoseconds};
}

void WayOfWriting::Try(size_t bytes) {
    if (m_written >= kStripeBytes) {
        EndStripe();
    }
    m_written += bytes;
}

void WayOfWriting::EndStripe() {
    const int64_t now = m_now();
    if (m_stripe != 0) {
        int64_t& least = m_least[m_isPast ? 1 : 0];
        least = std::min(least, now - m_begin);
    }
    m_begin = now;
    m_written = 0;
    m_isDecided = m_stripe == 2 * kStripes;
    ++m_stripe;
    m_isPast = m_isDecided ? m_least[1] < m_least[0] : m_stripe % 2 == 1;
}

}  // namespace QyWriting
