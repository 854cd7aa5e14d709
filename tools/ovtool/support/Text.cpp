#include "support/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <iomanip>
#include <sstream>

#include "support/Error.h"

std::string AddressText(uint64_t address) {
    char text[24] = {};
    std::snprintf(text, sizeof text, "0x%08" PRIx64, address);
    return text;
}

std::string ToHex(const std::vector<uint8_t>& bytes) {
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (const uint8_t byte : bytes) {
        text << std::setw(2) << static_cast<unsigned>(byte);
    }
    return text.str();
}

std::vector<uint8_t> ParseHex(const std::string& text, const std::string& what) {
    std::vector<uint8_t> bytes;
    for (size_t at = 0; at < text.size(); at += 2) {
        uint8_t byte = 0;
        const char* const begin = text.data() + at;
        const auto [end, error] =
            std::from_chars(begin, std::min(begin + 2, text.data() + text.size()), byte, 16);
        if (error != std::errc() || end != begin + 2) {
            throw UsageError(
                ("can't " + what).append(": '").append(text).append("' is not hexadecimal"));
        }
        bytes.push_back(byte);
    }
    return bytes;
}
