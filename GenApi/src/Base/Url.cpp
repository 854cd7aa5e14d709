// Escapes in URLs.

#include <charconv>
#include <string>
#include <string_view>

#include "Base/Environment.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// Bytes above 127 are negative here and are escaped.
bool PassesUnescaped(char character) {
    constexpr std::string_view kEscaped = "?#[]@!$&'()*+,;=";
    return static_cast<signed char>(character) > 32 &&
           kEscaped.find(character) == std::string_view::npos;
}

/// Reads "%" and two hexadecimal digits; false for anything else.
bool DecodeEscape(std::string_view text, unsigned char& byte) {
    constexpr size_t kEscapeLength = 3;
    if (text.size() < kEscapeLength || text[0] != '%') {
        return false;
    }
    const char* const end = text.data() + kEscapeLength;
    return std::from_chars(text.data() + 1, end, byte, 16).ptr == end;
}

}  // namespace

/// A URL has no "\", and paths that come from other systems have.
gcstring UrlEncode(const gcstring& text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string encoded;
    for (const char given : std::string_view(text.c_str(), text.size())) {
        const char character = given == '\\' ? '/' : given;
        if (PassesUnescaped(character)) {
            encoded += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        encoded += '%';
        encoded += kDigits[byte >> 4];
        encoded += kDigits[byte & 0xF];
    }
    return {encoded.data(), encoded.size()};
}

/// What isn't an escape stays as it is: names of files may hold a lone "%".
gcstring UrlDecode(const gcstring& text) {
    std::string decoded;
    for (std::string_view rest(text.c_str(), text.size()); !rest.empty();) {
        unsigned char byte = 0;
        if (DecodeEscape(rest, byte)) {
            decoded += static_cast<char>(byte);
            rest.remove_prefix(3);
        } else {
            decoded += rest.front();
            rest.remove_prefix(1);
        }
    }
    return {decoded.data(), decoded.size()};
}

}  // namespace GenICam_3_0_ORVANE
