#pragma once
/// Texts of the interface's records, and bytes as text.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "VisibleText.h"

/// A text of a fixed field, which has no end when it is full.
template <size_t Size>
std::string FieldText(const char (&field)[Size]) {
    return {field, strnlen(field, Size)};
}

using OvBase::CharacterLength;
using OvBase::Visible;
using OvBase::VisibleLines;

/// An address in hexadecimal, of at least eight digits.
std::string AddressText(uint64_t address);

/// Two hexadecimal digits for each byte, nothing in between.
std::string ToHex(const std::vector<uint8_t>& bytes);

/// ToolError for a text that isn't such.
/// @param what  what the bytes are for, as in "set LUTValueAll"
std::vector<uint8_t> ParseHex(const std::string& text, const std::string& what);
