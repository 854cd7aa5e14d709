#pragma once
/// Bytes as text: two digits each, nothing in between.

#include <cstdint>
#include <string>
#include <vector>

std::string ToHex(const std::vector<uint8_t>& bytes);

/// ToolError for a text that isn't such.
/// @param what  what the bytes are for, as in "set LUTValueAll"
std::vector<uint8_t> ParseHex(const std::string& text, const std::string& what);
