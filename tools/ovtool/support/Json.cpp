#include "support/Json.h"

#include <cctype>
#include <cstdio>
#include <nlohmann/json.hpp>

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

void Print(const Json& document, int indent) {
    std::printf("%s\n", document.dump(indent, ' ', false, Json::error_handler_t::replace).c_str());
}

std::string Text(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace

void PrintJson(const Json& document) {
    Print(document, 2);
}

void PrintJsonLine(const Json& document) {
    Print(document, -1);
    std::fflush(stdout);
}

void PrintSections(const Json& document) {
    for (const auto& [heading, values] : document.items()) {
        std::printf("%s\n", Words(heading).c_str());
        for (const auto& [key, value] : values.items()) {
            const std::string text = value.is_null() ? "" : Text(value);
            if (!text.empty()) {
                std::printf("  %-20s %s\n", Words(key).c_str(), text.c_str());
            }
        }
    }
}
