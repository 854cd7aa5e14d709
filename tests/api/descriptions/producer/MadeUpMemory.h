/// @file
/// The whole address space of a camera that doesn't exist.
#ifndef OV_TEST_MADE_UP_MEMORY_H
#define OV_TEST_MADE_UP_MEMORY_H

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "framework/RegisterSpace.h"

namespace OvTest {

/// What lies where nothing was written.
enum class Fill {
    Small,  ///< each word with its high byte first is 1, so that limits are small
    Ones,   ///< each bit that says that something is there is set
    Noise   ///< a byte that follows from its address
};

/// Keeps what is written. May be used from any thread.
class MadeUpMemory {
public:
    explicit MadeUpMemory(Fill fill) : m_fill(fill) {}

    /// -1015 for more than any camera would give at once: lengths are made up, too.
    void Read(std::uint64_t address, std::span<std::byte> out) const;
    void Write(std::uint64_t address, std::span<const std::byte> in);

private:
    std::byte ByteAt(std::uint64_t address) const;

    const Fill m_fill;
    mutable std::mutex m_mutex;
    std::unordered_map<std::uint64_t, std::byte> m_written;
};

/// Puts a readable text into each text register of a description whose address
/// stands there, as a camera that was just switched on has it: a made-up name has
/// no end and is no text.
void WriteTexts(MadeUpMemory& memory, const std::string& description);

}  // namespace OvTest

#endif
