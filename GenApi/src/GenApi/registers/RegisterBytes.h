#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

/// The bytes of one register on their way from or to its port, all zero at first. Those of a
/// usual register are on the stack. A description, or the device, may claim any length, so longer
/// ones take no memory until somebody writes to it.
class RegisterBytes {
public:
    /// @throws OutOfRangeException for a length that no register has, RuntimeException without
    ///         memory for it; both name the node
    RegisterBytes(INodePrivate& node, int64_t length);

    uint8_t* Data() { return m_pLong == nullptr ? m_Short.data() : m_pLong.get(); }
    /// Returns the bytes up to the first zero, or all.
    const char* Text() { return reinterpret_cast<const char*>(Data()); }

private:
    struct Free {
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): what std::calloc gave
        void operator()(uint8_t* bytes) const { std::free(bytes); }
    };

    /// As many bytes as a usual register has; those of longer ones are allocated.
    static constexpr size_t kShortBytes = 256;

    /// There is always one more byte than the register has, which ends a text.
    std::array<uint8_t, kShortBytes> m_Short{};
    std::unique_ptr<uint8_t, Free> m_pLong;
};

}  // namespace GenApi_3_0_ORVANE
