// Addresses as text and numbers, without the system's resolver: it would accept names and
// forms that cameras don't know.

#include "gige/Ipcalc.h"

#include <bitset>
#include <cctype>
#include <cstdlib>

namespace {

constexpr size_t kMaxDigits = 3;
constexpr int kMaxNumbers = 4;
// Keeps broadcast addresses out, and with them addresses such as 10.0.255.3.
constexpr int kHostLimit = 254;
constexpr int kMaskLimit = 255;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Only the dotted form: numbers up to `limit`, at most four, one point between two of
/// them.
bool IsDotted(const std::string& text, int limit) {
    std::string number;
    int count = 0;
    // Includes the terminating zero, which ends the last number as a point ends the
    // others.
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

bool IsDottedHost(const Cipcalc& calculator, const std::string& text, int limit) {
    if (!IsDotted(text, limit)) {
        return false;
    }
    const uint32_t address = calculator.StringToInt(text);
    return address != 0 && address != 0xFFFFFFFFU && (address >> 24) != 0;
}

int HexDigit(char character) {
    if (IsDigit(character)) {
        return character - '0';
    }
    const int letter = std::tolower(static_cast<unsigned char>(character));
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : 0;
}

}  // namespace

uint32_t Cipcalc::StringToInt(const std::string& text) const {
    uint32_t address = 0;
    unsigned shift = unsigned{kAddressBits};
    for (size_t begin = 0; begin < text.size();) {
        const size_t point = text.find('.', begin);
        const size_t end = point == std::string::npos ? text.size() : point;
        if (end - begin > kMaxDigits) {
            return 0;
        }
        shift -= 8;
        const auto number = static_cast<uint32_t>(
            std::strtol(text.substr(begin, end - begin).c_str(), nullptr, 10));
        address += number << (shift % unsigned{kAddressBits});
        begin = end + 1;
    }
    return address;
}

bool Cipcalc::IsValidIP(const std::string& text) const {
    return IsDottedHost(*this, text, kHostLimit);
}

bool Cipcalc::IsValidMask(const char* text) const {
    return text != nullptr && IsDottedHost(*this, text, kMaskLimit);
}

std::string Cipcalc::IntToString(uint32_t address) const {
    const Octets octets = SplitOctets(address);
    std::string text = std::to_string(octets[0]);
    for (size_t i = 1; i < octets.size(); ++i) {
        text += "." + std::to_string(octets[i]);
    }
    return text;
}

std::string Cipcalc::ToBinaryText(uint32_t address) const {
    std::string text = std::bitset<kAddressBits>(address).to_string();
    for (const size_t at : {24U, 16U, 8U}) {
        text.insert(at, 1, ' ');
    }
    return text;
}

Cipcalc::Mac Cipcalc::ParseMac(const std::string& text) const {
    constexpr size_t kStep = 3;
    const auto digitAt = [&text](size_t at) { return at < text.size() ? HexDigit(text[at]) : 0; };
    Mac mac{};
    for (size_t i = 0; i < mac.size(); ++i) {
        mac[i] = static_cast<uint8_t>(digitAt(i * kStep) * 16 + digitAt(i * kStep + 1));
    }
    return mac;
}

bool Cipcalc::CompareMac(const Mac& left, const Mac& right) const {
    return left == right;
}
