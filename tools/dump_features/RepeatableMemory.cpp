#include "RepeatableMemory.h"

#include "Base/GCException.h"

namespace {

constexpr int64_t kMostBytes = 1 << 20;

void RequireSane(const char* access, int64_t length) {
    if (length < 0 || length > kMostBytes) {
        RUNTIME_EXCEPTION("%s of %lld bytes refused", access, static_cast<long long>(length));
    }
}

/// Spreads the bits of a number over all bits.
uint64_t Mix(uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31);
}

}  // namespace

uint8_t RepeatableMemory::ByteAt(uint64_t address) const {
    const auto written = m_Written.find(address);
    if (written != m_Written.end()) {
        return written->second;
    }
    return static_cast<uint8_t>(Mix((address / 8) ^ Mix(m_Seed)) >> (8 * (address % 8)));
}

void RepeatableMemory::Read(void* buffer, int64_t address, int64_t length) {
    RequireSane("Read", length);
    for (int64_t i = 0; i < length; ++i) {
        static_cast<uint8_t*>(buffer)[i] =
            ByteAt(static_cast<uint64_t>(address) + static_cast<uint64_t>(i));
    }
}

void RepeatableMemory::Write(const void* buffer, int64_t address, int64_t length) {
    RequireSane("Write", length);
    for (int64_t i = 0; i < length; ++i) {
        m_Written[static_cast<uint64_t>(address) + static_cast<uint64_t>(i)] =
            static_cast<const uint8_t*>(buffer)[i];
    }
}
