#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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
    struct Release {
        Release() : pages(0) {}
        explicit Release(size_t size) : pages(size) {}
        void operator()(uint8_t* bytes) const;

        /// How many bytes of pages there are; 0 for what std::calloc gave.
        size_t pages;
    };
    using Bytes = std::unique_ptr<uint8_t, Release>;

    static Bytes Allocate(size_t size);

    /// As many bytes as a usual register has; those of longer ones are allocated.
    static constexpr size_t kShortBytes = 256;

    /// There is always one more byte than the register has, which ends a text.
    std::array<uint8_t, kShortBytes> m_Short{};
    Bytes m_pLong;
};

}  // namespace GenApi_3_0_ORVANE
