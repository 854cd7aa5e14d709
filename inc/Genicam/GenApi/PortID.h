#pragma once
/// The identifier by which a port node recognises its data in what a device sends.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace GenApi_3_0_ORVANE {

struct INode;

/// Appends the bytes that a text of hexadecimal digits stands for, two digits for each.
/// @return false for an odd number of digits and for other characters
bool AppendHexBytes(std::string_view text, std::vector<uint8_t>& bytes);

/// An identifier of a chunk or an event. Leading zeros don't matter: descriptions write as many
/// as they like, and devices send the identifier in the width of their transport.
class CPortID {
public:
    CPortID() = default;
    /// @param text      hexadecimal digits
    /// @param node      whose fault an odd number of digits is
    /// @param evenRule  the text of that failure
    /// @throws RuntimeException for a text that AppendHexBytes refuses
    CPortID(std::string_view text, INode& node, const char* evenRule);

    /// Whether these bytes are the identifier.
    /// @param bytes  most significant first
    bool Matches(const uint8_t* bytes, size_t length) const;
    /// Whether this number is the identifier; false for an identifier of more than 64 bits.
    bool Matches(uint64_t number) const { return m_IsNumber && m_Number == number; }
    /// Returns the length in bytes, without leading zeros.
    size_t GetLength() const { return m_Bytes.size(); }

private:
    std::vector<uint8_t> m_Bytes;
    uint64_t m_Number = 0;
    bool m_IsNumber = false;
};

}  // namespace GenApi_3_0_ORVANE
