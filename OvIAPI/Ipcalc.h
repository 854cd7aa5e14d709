#pragma once
/// The dotted-address calculator. Addresses are 32-bit values with the first
/// number in the top byte.

#include <cstdint>
#include <string>

class Cipcalc {
public:
    virtual ~Cipcalc() = default;

    /// The address of a dotted text; 0 for an empty text and for one with a
    /// number of more than three digits.
    uint32_t StringToInt(const std::string& text) const;
    /// Whether the text is a host's address: one to four numbers up to 254,
    /// the first of them not 0.
    bool IsValidIP(const std::string& text) const;
};
