#include "MadeUpMemory.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace OvTest {
namespace {

constexpr std::size_t kMostBytes = 1 << 20;

void RequireSane(std::size_t length) {
    if (length > kMostBytes) {
        throw std::length_error("No camera has " + std::to_string(length) + " bytes there");
    }
}

/// Spreads the bits of a number over all bits.
std::uint64_t Mix(std::uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31);
}

}  // namespace

std::byte MadeUpMemory::ByteAt(std::uint64_t address) const {
    const auto written = m_written.find(address);
    if (written != m_written.end()) {
        return written->second;
    }
    return static_cast<std::byte>(Mix(address / 8 + 1) >> (8 * (address % 8)));
}

void MadeUpMemory::Read(std::uint64_t address, std::span<std::byte> out) const {
    RequireSane(out.size());
    const std::lock_guard lock(m_mutex);
    std::ranges::generate(out, [&] { return ByteAt(address++); });
}

void MadeUpMemory::Write(std::uint64_t address, std::span<const std::byte> in) {
    RequireSane(in.size());
    const std::lock_guard lock(m_mutex);
    for (const std::byte byte : in) {
        m_written[address++] = byte;
    }
}

MadeUpMemory::Bytes MadeUpMemory::Written() const {
    const std::lock_guard lock(m_mutex);
    return m_written;
}

void MadeUpMemory::Restore(const Bytes& written) {
    const std::lock_guard lock(m_mutex);
    m_written = written;
}

}  // namespace OvTest
