#pragma once
/// A device's memory for tests: bytes, and a port that records all accesses and fails on
/// demand.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/IPort.h"

namespace EngineTest {

/// The record shows what was read, and so also what a cache has spared.
class TestPort : public GenApi_3_0_ORVANE::IPort {
public:
    /// One read or write, also one that failed.
    struct Access {
        bool isWrite;
        int64_t address;
        int64_t length;
        bool operator==(const Access&) const = default;
    };

    explicit TestPort(size_t size = 0x10000) : m_Bytes(size) {}

    GenApi_3_0_ORVANE::EAccessMode GetAccessMode() override { return m_AccessMode; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        Note({false, address, length});
        std::copy_n(At(address, length), length, static_cast<uint8_t*>(buffer));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        Note({true, address, length});
        std::copy_n(static_cast<const uint8_t*>(buffer), length, At(address, length));
    }

    void SetAccessMode(GenApi_3_0_ORVANE::EAccessMode mode) { m_AccessMode = mode; }
    /// Makes the n-th access from now on, counted from 1, throw TimeoutException "Access
    /// failed".
    void FailAccess(size_t n) { m_AccessesUntilFailure = n; }

    const std::vector<Access>& GetAccesses() const { return m_Accesses; }
    size_t GetReads() const { return m_Accesses.size() - GetWrites(); }
    size_t GetWrites() const {
        return static_cast<size_t>(std::count_if(m_Accesses.begin(), m_Accesses.end(),
                                                 [](const Access& a) { return a.isWrite; }));
    }
    void ForgetAccesses() { m_Accesses.clear(); }

    // What the device does by itself, without caches and counters.

    /// Bytes in the order of the memory.
    void PutBytes(int64_t address, const std::vector<uint8_t>& bytes) {
        const auto length = static_cast<int64_t>(bytes.size());
        std::copy(bytes.begin(), bytes.end(), At(address, length));
    }
    std::vector<uint8_t> PeekBytes(int64_t address, int64_t length) {
        const uint8_t* const first = At(address, length);
        return {first, first + length};
    }
    /// A number in the machine's byte order, which is little endian.
    template <class T>
    void Put(int64_t address, T value) {
        static_assert(std::endian::native == std::endian::little);
        std::memcpy(At(address, sizeof(T)), &value, sizeof(T));
    }
    template <class T>
    T Peek(int64_t address) {
        T value;
        std::memcpy(&value, At(address, sizeof(T)), sizeof(T));
        return value;
    }

private:
    void Note(const Access& access) {
        m_Accesses.push_back(access);
        if (m_AccessesUntilFailure != 0 && --m_AccessesUntilFailure == 0) {
            TIMEOUT_EXCEPTION("Access failed");
        }
    }

    uint8_t* At(int64_t address, int64_t length) {
        const auto size = static_cast<int64_t>(m_Bytes.size());
        if (address < 0 || length < 0 || address > size - length) {
            OUT_OF_RANGE_EXCEPTION("No memory at 0x%lx", static_cast<unsigned long>(address));
        }
        return m_Bytes.data() + address;
    }

    std::vector<uint8_t> m_Bytes;
    std::vector<Access> m_Accesses;
    GenApi_3_0_ORVANE::EAccessMode m_AccessMode = GenApi_3_0_ORVANE::RW;
    size_t m_AccessesUntilFailure = 0;
};

}  // namespace EngineTest
