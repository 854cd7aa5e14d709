#include "support/Json.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "support/Output.h"
#include "support/Text.h"

namespace {

/// "display name" for "displayName". Abbreviations stand as they are.
std::string Words(const std::string& key) {
    std::string words;
    for (size_t i = 0; i < key.size(); ++i) {
        const auto character = static_cast<unsigned char>(key[i]);
        const bool begins = std::isupper(character) != 0 && i > 0 &&
                            std::isupper(static_cast<unsigned char>(key[i - 1])) == 0;
        words += begins ? " " : "";
        words += static_cast<char>(begins ? std::tolower(character) : character);
    }
    return words;
}

/// Control characters that a document may hold as they are, but a terminal may obey. They can
/// only be within texts, so that their numbers mean the same.
std::string Escaped(const std::string& document) {
    std::string escaped;
    for (size_t at = 0; at < document.size();) {
        const size_t length = CharacterLength(std::string_view(document).substr(at));
        const auto last = static_cast<unsigned char>(document[at + length - 1]);
        if (last == 0x7F || (length == 2 && document[at] == '\xC2' && last < 0xA0)) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(last));
            escaped += code.data();
        } else {
            escaped.append(document, at, length);
        }
        at += length;
    }
    return escaped;
}

void Print(const Json& document, int indent) {
    const std::string text = document.dump(indent, ' ', false, Json::error_handler_t::replace);
    std::printf("%s\n", Escaped(text).c_str());
}

}  // namespace

std::string ToText(const Json& value) {
    return value.is_string() ? Visible(value.get_ref<const std::string&>()) : value.dump();
}

void PrintJson(const Json& document) {
    Print(document, 2);
}

void PrintJsonLine(const Json& document) {
    Print(document, -1);
    FlushOutput();
}

void PrintSections(const Json& document) {
    for (const auto& [heading, values] : document.items()) {
        std::printf("%s\n", Words(heading).c_str());
        for (const auto& [key, value] : values.items()) {
            const std::string text = value.is_null() ? "" : ToText(value);
            if (!text.empty()) {
                std::printf("  %-20s %s\n", Words(key).c_str(), text.c_str());
            }
        }
    }
}
