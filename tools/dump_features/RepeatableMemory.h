#pragma once
/// A device whose memory is made up, and the same in every run.

#include <cstdint>
#include <unordered_map>

#include "GenApi/IPort.h"

/// Every address holds a byte that follows from it and from a seed, until
/// something is written there.
class RepeatableMemory : public GenApi_3_0_ORVANE::IPort {
public:
    explicit RepeatableMemory(uint64_t seed) : m_Seed(seed) {}

    GenApi_3_0_ORVANE::EAccessMode GetAccessMode() override { return GenApi_3_0_ORVANE::RW; }
    /// RuntimeException for more than any camera would give at once: made-up
    /// lengths of strings can be of any size.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

private:
    uint8_t ByteAt(uint64_t address) const;

    uint64_t m_Seed;
    std::unordered_map<uint64_t, uint8_t> m_Written;
};
