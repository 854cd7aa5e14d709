// Memory for the bytes of one register during one access.

#include "registers/RegisterBytes.h"

#include <limits>

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::OutOfRangeException;
using GenICam_3_0_ORVANE::RuntimeException;

namespace {

/// No transport can read more in one access, so a greater length is an error of the description
/// or of the device.
constexpr int64_t kMaxRegisterLength = std::numeric_limits<int32_t>::max();

}  // namespace

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
    // Large blocks of zeros come from the system page by page, when touched,
    // where a container would touch them all.
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc)
    m_pLong.reset(static_cast<uint8_t*>(std::calloc(size, 1)));
    if (m_pLong == nullptr) {
        throw ExceptionReporterNode<RuntimeException>(node, __FILE__, __LINE__, "RuntimeException")
            .Report("Node '%s' : no memory for a length of %ld", node.InternalGetName().c_str(),
                    length);
    }
}

}  // namespace GenApi_3_0_ORVANE
