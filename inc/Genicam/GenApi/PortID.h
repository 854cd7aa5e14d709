#pragma once
/// The identifier by which a port node recognises its data in what a device sends.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace GenApi_3_0_ORVANE {

struct INode;

/// Appends the bytes of a text of hexadecimal digits, two for each byte.
/// @return false for a text of an odd length or with other characters
bool AppendHexBytes(std::string_view text, std::vector<uint8_t>& bytes);

/// An identifier, which leading zeros don't change: descriptions write it as long
/// as they like, and devices send it in the width of their transport.
class CPortID {
public:
    CPortID() = default;
    /// RuntimeException for a text that AppendHexBytes refuses. An odd number of
    /// digits is the fault of the node.
    /// @param evenRule  what is told of it
    CPortID(std::string_view text, INode& node, const char* evenRule);

    /// As a device sends it, most significant byte first.
    bool Matches(const uint8_t* bytes, size_t length) const;
    /// An identifier of more than 64 bits matches no number.
    bool Matches(uint64_t number) const { return m_IsNumber && m_Number == number; }
    /// In bytes, without leading zeros.
    size_t GetLength() const { return m_Bytes.size(); }

private:
    std::vector<uint8_t> m_Bytes;
    uint64_t m_Number = 0;
    bool m_IsNumber = false;
};

}  // namespace GenApi_3_0_ORVANE
