#pragma once
/// Addresses of the partial producer's memory.

#include <cstddef>
#include <cstdint>

namespace PartialPort {

constexpr std::size_t kSize = std::size_t{1} << 20;
constexpr std::uint64_t kWhole = 0x10000000;
/// The same memory, in pieces.
constexpr std::uint64_t kPartial = 0x20000000;
constexpr std::size_t kAtMost = 1000;

}  // namespace PartialPort
