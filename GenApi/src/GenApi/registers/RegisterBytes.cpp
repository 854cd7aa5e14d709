// Memory for the bytes of one register during one access.

#include "registers/RegisterBytes.h"

#include <sys/mman.h>

#include <cstdlib>
#include <limits>

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::OutOfRangeException;
using GenICam_3_0_ORVANE::RuntimeException;

namespace {

/// No transport can read more in one access, so a greater length is an error of the description
/// or of the device.
constexpr int64_t kMaxRegisterLength = std::numeric_limits<int32_t>::max();

/// No register that a camera has is longer; those that only claim to be are.
constexpr size_t kMostAllocated = 1024UL * 1024;

}  // namespace

void RegisterBytes::Release::operator()(uint8_t* bytes) const {
    if (pages == 0) {
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc)
        std::free(bytes);
    } else {
        munmap(bytes, pages);
    }
}

/// Returns zeros, or null. The system makes pages when they're touched, whatever allocator the
/// program has: one may fill what it gives, or keep a record of each byte.
auto RegisterBytes::Allocate(size_t size) -> Bytes {
    if (size <= kMostAllocated) {
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): a container would touch all of it
        return Bytes(static_cast<uint8_t*>(std::calloc(size, 1)));
    }
    void* const pages =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? Bytes() : Bytes(static_cast<uint8_t*>(pages), Release{size});
}

RegisterBytes::RegisterBytes(INodePrivate& node, int64_t length) {
    if (length < 0 || length > kMaxRegisterLength) {
        throw ExceptionReporterNode<OutOfRangeException>(node, __FILE__, __LINE__,
                                                         "OutOfRangeException")
            .Report("Node '%s' : a register cannot have a length of %ld",
                    node.InternalGetName().c_str(), length);
    }
    // One byte more than the register has, so that its bytes are always a terminated text.
    const size_t size = static_cast<size_t>(length) + 1;
    if (size <= m_Short.size()) {
        return;
    }
    m_pLong = Allocate(size);
    if (m_pLong == nullptr) {
        throw ExceptionReporterNode<RuntimeException>(node, __FILE__, __LINE__, "RuntimeException")
            .Report("Node '%s' : no memory for a length of %ld", node.InternalGetName().c_str(),
                    length);
    }
}

}  // namespace GenApi_3_0_ORVANE
