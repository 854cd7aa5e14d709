#pragma once
/// Numbers as they are on the wire: the most significant byte first.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace OvGige {

using Bytes = std::vector<std::byte>;
using ByteView = std::span<const std::byte>;

/// The number in the first bytes of `from`, which must have as many.
template <std::unsigned_integral T>
T ReadBig(ByteView from) {
    T value = 0;
    for (const std::byte byte : from.first(sizeof(T))) {
        value = static_cast<T>(static_cast<uint64_t>(value) << 8 | std::to_integer<T>(byte));
    }
    return value;
}

/// Writes the number to the first bytes of `to`, which must have as many.
template <std::unsigned_integral T>
void WriteBig(std::span<std::byte> to, T value) {
    for (size_t i = sizeof(T); i-- > 0;) {
        to[i] = static_cast<std::byte>(value & 0xFF);
        value = static_cast<T>(static_cast<uint64_t>(value) >> 8);
    }
}

/// Appends the number.
template <std::unsigned_integral T>
void Append(Bytes& to, T value) {
    to.resize(to.size() + sizeof(T));
    WriteBig(std::span(to).last(sizeof(T)), value);
}

/// Appends `count` zeros: reserved fields.
inline void AppendZeros(Bytes& to, size_t count) {
    to.resize(to.size() + count);
}

inline void Append(Bytes& to, ByteView bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

/// The text of a field of fixed width: up to its first zero, or all of it. What follows the
/// zero is what the camera's memory had there.
inline std::string ReadText(ByteView field) {
    std::string text;
    for (const std::byte byte : field) {
        if (byte == std::byte{0}) {
            break;
        }
        text.push_back(std::to_integer<char>(byte));
    }
    return text;
}

/// Writes the text to a field of fixed width, cut to fit; the rest is zeros. A text that
/// fills the field has no zero after it.
inline void WriteText(std::span<std::byte> field, std::string_view text) {
    for (size_t i = 0; i < field.size(); ++i) {
        field[i] = i < text.size() ? static_cast<std::byte>(text[i]) : std::byte{0};
    }
}

}  // namespace OvGige
