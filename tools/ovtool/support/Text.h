#pragma once
/// Texts of the interface's records, and bytes as text.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

/// A text of a fixed field, which has no end when it is full.
template <size_t Size>
std::string FieldText(const char (&field)[Size]) {
    return {field, strnlen(field, Size)};
}

/// How many bytes at the beginning of a text are one character of UTF-8; 0 when they are none.
size_t CharacterLength(std::string_view text);

/// A text that does nothing to a terminal: control characters and bytes that are no text
/// become visible, as in "\x1b".
std::string Visible(std::string_view text);

/// As above, but line feeds stay.
std::string VisibleLines(std::string_view text);

/// Two hexadecimal digits for each byte, nothing in between.
std::string ToHex(const std::vector<uint8_t>& bytes);

/// ToolError for a text that isn't such.
/// @param what  what the bytes are for, as in "set LUTValueAll"
std::vector<uint8_t> ParseHex(const std::string& text, const std::string& what);
