#pragma once
/// Samples of more than eight bits.

#include <cstdint>
#include <cstring>

namespace QySample {

/// A 16-bit sample at any address: callers may pass odd ones.
class Word {
public:
    Word() = default;
    explicit Word(int number) {
        const auto value = static_cast<uint16_t>(number);
        std::memcpy(m_bytes, &value, sizeof value);
    }
    operator uint16_t() const {
        uint16_t value = 0;
        std::memcpy(&value, m_bytes, sizeof value);
        return value;
    }

private:
    uint8_t m_bytes[sizeof(uint16_t)];
};

}  // namespace QySample
