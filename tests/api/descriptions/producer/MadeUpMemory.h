/// @file
/// The whole address space of a camera that doesn't exist.
#ifndef OV_TEST_MADE_UP_MEMORY_H
#define OV_TEST_MADE_UP_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <unordered_map>

namespace OvTest {

/// Keeps what is written. Elsewhere lies a byte that follows from its address. May
/// be used from any thread.
class MadeUpMemory {
public:
    using Bytes = std::unordered_map<std::uint64_t, std::byte>;

    /// std::length_error for more than any camera would give at once: lengths are
    /// made up, too.
    void Read(std::uint64_t address, std::span<std::byte> out) const;
    void Write(std::uint64_t address, std::span<const std::byte> in);

    /// What was written.
    Bytes Written() const;
    /// Goes back to what was written then.
    void Restore(const Bytes& written);

private:
    std::byte ByteAt(std::uint64_t address) const;

    mutable std::mutex m_mutex;
    Bytes m_written;
};

}  // namespace OvTest

#endif
