// Converts values to text and back. Reading takes what writing makes and what people type. Text
// that isn't a value as a whole is refused and leaves the value unchanged; only bytes may be
// written up to the place of the error.

#include "text/Value2String.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <istream>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

namespace GenApi_3_0_ORVANE {

namespace {

/// A whole number in digits of a base, after a prefix of at most two characters.
template <class Number>
gcstring InDigits(std::string_view prefix, Number value, int base) {
    // 64 bits have 20 decimal digits, or 19 and a sign.
    std::array<char, 2 + 20> buffer;
    char* const begin = std::copy(prefix.begin(), prefix.end(), buffer.data());
    const char* const end = std::to_chars(begin, buffer.data() + buffer.size(), value, base).ptr;
    return {buffer.data(), static_cast<size_t>(end - buffer.data())};
}

/// For numbers only, which fit into the buffer.
template <class... Values>
gcstring Formatted(const char* format, Values... values) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, values...);
    return buffer.data();
}

unsigned ByteOf(int64_t value, unsigned index) {
    return static_cast<unsigned>((static_cast<uint64_t>(value) >> (8 * index)) & 0xFFU);
}

/// Blanks that may follow a number, because lines of a file can end in them.
constexpr std::string_view kBlanks = " \t\n\v\f\r";

/// How the bytes of an address are written, highest first.
struct AddressForm {
    unsigned count;
    int base;
    size_t digits;  ///< the most that one byte has
    std::string_view separators;
};

/// Takes one byte, only of digits: the signs, blanks and prefixes that a number may have
/// are no part of an address.
bool TakeByte(std::string_view& text, const AddressForm& form, uint8_t& byte) {
    const char* const begin = text.data();
    const auto [end, error] = std::from_chars(begin, begin + text.size(), byte, form.base);
    const auto length = static_cast<size_t>(end - begin);
    text.remove_prefix(length);
    return error == std::errc() && length <= form.digits;
}

/// An address as one number. It has one kind of separator, and nothing before or after it.
bool ParseAddress(std::string_view text, const AddressForm& form, int64_t* value) {
    const size_t found = text.find_first_of(form.separators);
    if (found == std::string_view::npos) {
        return false;
    }
    const char separator = text[found];
    uint64_t number = 0;
    for (unsigned left = form.count; left > 0; --left) {
        uint8_t byte = 0;
        const bool isLast = left == 1;
        if (!TakeByte(text, form, byte) ||
            (isLast ? !text.empty() : !text.starts_with(separator))) {
            return false;
        }
        text.remove_prefix(isLast ? 0 : 1);
        number = (number << 8) | byte;
    }
    *value = static_cast<int64_t>(number);
    return true;
}

/// A number that 64 bits hold, followed by nothing but the blanks in which the line of a file may
/// end. Hexadecimal digits are bits, so all 64 of them may be set.
bool ParseInteger(const char* text, int64_t* value) {
    char* end = nullptr;
    const bool isHex = std::string_view(text).starts_with("0x");
    errno = 0;
    const int64_t number =
        isHex ? static_cast<int64_t>(std::strtoull(text, &end, 16)) : std::strtoll(text, &end, 10);
    const std::string_view rest(end);
    if (end == text || errno == ERANGE ||
        rest.find_first_not_of(kBlanks) != std::string_view::npos) {
        return false;
    }
    *value = number;
    return true;
}

/// Reads an address, or the same address as a plain number. Nothing may follow it.
bool ParseAddressOrNumber(std::string_view text, const AddressForm& form, int64_t* value) {
    const bool endsInBlank = !text.empty() && kBlanks.find(text.back()) != std::string_view::npos;
    return !endsInBlank && (ParseAddress(text, form, value) || ParseInteger(text.data(), value));
}

}  // namespace

void Value2String(int64_t value, gcstring& text, ERepresentation representation) {
    switch (representation) {
        case Boolean:
            text = value != 0 ? "true" : "false";
            break;
        case HexNumber:
            text = InDigits("0x", static_cast<uint64_t>(value), 16);
            break;
        case IPV4Address:
            text = Formatted("%u.%u.%u.%u", ByteOf(value, 3), ByteOf(value, 2), ByteOf(value, 1),
                             ByteOf(value, 0));
            break;
        case MACAddress:
            text =
                Formatted("%02x:%02x:%02x:%02x:%02x:%02x", ByteOf(value, 5), ByteOf(value, 4),
                          ByteOf(value, 3), ByteOf(value, 2), ByteOf(value, 1), ByteOf(value, 0));
            break;
        default:
            text = InDigits("", value, 10);
            break;
    }
}

bool String2Value(const char* text, int64_t* value, ERepresentation representation) {
    static constexpr AddressForm kIP{.count = 4, .base = 10, .digits = 3, .separators = "."};
    static constexpr AddressForm kMac{.count = 6, .base = 16, .digits = 2, .separators = ":-"};
    bool flag = false;
    switch (representation) {
        case Boolean:
            if (!String2Value(gcstring(text), &flag)) {
                return false;
            }
            *value = flag ? 1 : 0;
            return true;
        case IPV4Address:
            return ParseAddressOrNumber(text, kIP, value);
        case MACAddress:
            return ParseAddressOrNumber(text, kMac, value);
        default:
            return ParseInteger(text, value);
    }
}

/// In the order of memory, because only the device knows what the bytes mean.
void Value2String(const uint8_t* bytes, gcstring& text, int64_t length) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex = "0x";
    for (int64_t i = 0; i < length; ++i) {
        hex += kDigits[bytes[i] >> 4];
        hex += kDigits[bytes[i] & 0xF];
    }
    text.assign(hex.c_str(), hex.size());
}

/// The digits may end before the bytes do, and the other way round: a register's length can
/// change between saving and loading.
bool String2Value(const gcstring& text, uint8_t* bytes, int64_t length) {
    std::string_view digits(text.c_str(), text.size());
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
    }
    if (digits.size() % 2 != 0) {
        return false;
    }
    for (int64_t i = 0; i < length && !digits.empty(); ++i, digits.remove_prefix(2)) {
        const char* const end = digits.data() + 2;
        if (std::from_chars(digits.data(), end, bytes[i], 16).ptr != end) {
            return false;
        }
    }
    return true;
}

/// The form that registries and descriptions use.
void Value2String(const GUID& guid, gcstring& text) {
    std::array<char, 40> form{};
    const auto& rest = guid.Data4;
    std::snprintf(form.data(), form.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  guid.Data1, guid.Data2, guid.Data3, rest[0], rest[1], rest[2], rest[3], rest[4],
                  rest[5], rest[6], rest[7]);
    text = form.data();
}

namespace {

/// Reads digits that fill the number exactly.
template <class Number>
bool TakeHex(std::string_view& text, Number& number) {
    constexpr size_t kDigits = 2 * sizeof(Number);
    if (text.size() < kDigits) {
        return false;
    }
    const char* const end = text.data() + kDigits;
    const bool isRead = std::from_chars(text.data(), end, number, 16).ptr == end;
    text.remove_prefix(kDigits);
    return isRead;
}

bool TakeDash(std::string_view& text) {
    if (!text.starts_with('-')) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

}  // namespace

/// Reads fields of fixed length, because `sscanf` would accept signs and blanks inside.
bool String2Value(const gcstring& text, GUID* guid) {
    std::string_view form(text.c_str(), text.size());
    if (form.starts_with('{') && form.ends_with('}')) {
        form = form.substr(1, form.size() - 2);
    }
    GUID result{};
    bool isRead = TakeHex(form, result.Data1) && TakeDash(form) && TakeHex(form, result.Data2) &&
                  TakeDash(form) && TakeHex(form, result.Data3) && TakeDash(form);
    for (size_t i = 0; isRead && i < std::size(result.Data4); ++i) {
        constexpr size_t kDashPlace = 2;
        isRead = (i != kDashPlace || TakeDash(form)) && TakeHex(form, result.Data4[i]);
    }
    if (!isRead || !form.empty()) {
        return false;
    }
    *guid = result;
    return true;
}

/// The three spellings that settings files are known to have, or a number.
bool String2Value(const gcstring& text, bool* value) {
    if (text == "true" || text == "True" || text == "TRUE") {
        *value = true;
        return true;
    }
    if (text == "false" || text == "False" || text == "FALSE") {
        *value = false;
        return true;
    }
    int64_t number = 0;
    if (!ParseInteger(text.c_str(), &number)) {
        return false;
    }
    *value = number != 0;
    return true;
}

/// A stream with the plain locale, so that a point is a point; blanks may follow, nothing else.
bool String2Value(const gcstring& text, double* value) {
    std::istringstream stream(text.c_str());
    stream.imbue(std::locale::classic());
    double number = 0;
    if (!(stream >> number) || !(stream >> std::ws).eof()) {
        return false;
    }
    *value = number;
    return true;
}

}  // namespace GenApi_3_0_ORVANE
