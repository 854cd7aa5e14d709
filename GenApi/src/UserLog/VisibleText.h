#pragma once
/// Texts of cameras, whose control characters a terminal would obey.

#include <cstddef>
#include <string>
#include <string_view>

namespace OvBase {

/// How many bytes at the beginning of a text are one character of UTF-8; 0 when they are none.
size_t CharacterLength(std::string_view text);

/// A text that does nothing to a terminal: control characters and bytes that are no text
/// become visible, as in "\x1b".
std::string Visible(std::string_view text);

/// As above, but line feeds stay.
std::string VisibleLines(std::string_view text);

}  // namespace OvBase
