#include "Ipcalc.h"

#include <cstdlib>

namespace {

constexpr size_t kMaxDigits = 3;
constexpr int kMaxNumbers = 4;
constexpr int kHostLimit = 254;
constexpr unsigned kAddressBits = 32;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// The dotted form alone: numbers up to `limit`, at most four, one point
/// between two of them.
bool IsDotted(const std::string& text, int limit) {
    std::string number;
    int count = 0;
    // The terminating zero ends the last number as a point ends the others.
    for (const char* character = text.c_str();; ++character) {
        if (IsDigit(*character)) {
            number += *character;
        } else {
            const bool ends = *character == '\0';
            if (number.empty() || (*character != '.' && !ends) ||
                std::atoi(number.c_str()) > limit || ++count > kMaxNumbers) {
                return false;
            }
            number.clear();
            if (ends) {
                return true;
            }
        }
        if (number.size() > kMaxDigits) {
            return false;
        }
    }
}

}  // namespace

uint32_t Cipcalc::StringToInt(const std::string& text) const {
    uint32_t address = 0;
    unsigned shift = kAddressBits;
    for (size_t begin = 0; begin < text.size();) {
        const size_t point = text.find('.', begin);
        const size_t end = point == std::string::npos ? text.size() : point;
        if (end - begin > kMaxDigits) {
            return 0;
        }
        shift -= 8;
        const auto number = static_cast<uint32_t>(
            std::strtol(text.substr(begin, end - begin).c_str(), nullptr, 10));
        address += number << (shift % kAddressBits);
        begin = end + 1;
    }
    return address;
}

bool Cipcalc::IsValidIP(const std::string& text) const {
    if (!IsDotted(text, kHostLimit)) {
        return false;
    }
    const uint32_t address = StringToInt(text);
    return address != 0 && address != 0xFFFFFFFFU && (address >> 24) != 0;
}
