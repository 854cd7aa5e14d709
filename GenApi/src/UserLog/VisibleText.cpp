// What a terminal may be shown of a text that comes from a camera.

#include "VisibleText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace OvBase {
namespace {

uint8_t ByteAt(std::string_view text, size_t at) {
    return static_cast<uint8_t>(text[at]);
}

/// The length that the first byte of a character announces; 0 for one that begins none.
size_t AnnouncedLength(uint8_t first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        return 2;
    }
    if (first >= 0xE0 && first < 0xF0) {
        return 3;
    }
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

/// Bytes that spell a character in more bytes than it needs, a half of a pair, or none at all.
bool IsMisspelt(uint8_t first, uint8_t second) {
    return (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
           (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
}

/// Those of ASCII, and their second set, which some terminals obey as well.
bool IsControl(std::string_view character) {
    const uint8_t first = ByteAt(character, 0);
    return first < 0x20 || first == 0x7F || (first == 0xC2 && ByteAt(character, 1) < 0xA0);
}

std::string MakeVisible(std::string_view text, bool keepsLines) {
    std::string visible;
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        const std::string_view character = text.substr(0, std::max<size_t>(length, 1));
        if (length != 0 && ((keepsLines && character == "\n") || !IsControl(character))) {
            visible += character;
        } else {
            for (const char byte : character) {
                std::array<char, 8> code{};
                std::snprintf(code.data(), code.size(), "\\x%02x",
                              static_cast<unsigned>(static_cast<uint8_t>(byte)));
                visible += code.data();
            }
        }
        text.remove_prefix(character.size());
    }
    return visible;
}

}  // namespace

size_t CharacterLength(std::string_view text) {
    const size_t length = text.empty() ? 0 : AnnouncedLength(ByteAt(text, 0));
    if (length > text.size() || (length > 1 && IsMisspelt(ByteAt(text, 0), ByteAt(text, 1)))) {
        return 0;
    }
    for (size_t at = 1; at < length; ++at) {
        if ((ByteAt(text, at) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    return length;
}

std::string Visible(std::string_view text) {
    return MakeVisible(text, false);
}

std::string VisibleLines(std::string_view text) {
    return MakeVisible(text, true);
}

}  // namespace OvBase
