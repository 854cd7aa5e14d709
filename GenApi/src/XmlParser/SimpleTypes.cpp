#include "SimpleTypes.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace GenApi_3_0_ORVANE {

namespace {

constexpr const char* kPattern = "value does not match pattern";
constexpr const char* kInteger = "invalid integer value";
constexpr const char* kDouble = "invalid double value";
constexpr const char* kTooSmall = "value is less than minimum allowed";
constexpr const char* kTooLarge = "value is greater than maximum allowed";
constexpr const char* kTooShort = "length is less than minimum allowed";

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsHexDigit(char character) {
    return IsDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool IsWord(char character) {
    return IsDigit(character) || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || character == '_';
}

template <class Test>
bool ConsistsOf(std::string_view text, const Test& test) {
    return !text.empty() && std::all_of(text.begin(), text.end(), test);
}

/// Takes a sign off and tells whether it was a minus.
bool TakeSign(std::string_view& text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return isNegative;
}

bool TakeHexPrefix(std::string_view& text) {
    if (!text.starts_with("0x") && !text.starts_with("0X")) {
        return false;
    }
    text.remove_prefix(2);
    return true;
}

bool IsIntegerText(std::string_view text) {
    TakeSign(text);
    return TakeHexPrefix(text) ? ConsistsOf(text, IsHexDigit) : ConsistsOf(text, IsDigit);
}

/// An integer within limits. A number beyond 64 bits passes: turning it into a
/// value tells of it.
const char* CheckRange(std::string_view text, int64_t min, int64_t max) {
    if (!IsIntegerText(text)) {
        return kInteger;
    }
    int64_t value = 0;
    if (!TextToInteger(text, value)) {
        return nullptr;
    }
    if (value < min) {
        return kTooSmall;
    }
    return value > max ? kTooLarge : nullptr;
}

const char* CheckGuid(std::string_view text) {
    // Some cameras leave it empty, and nothing depends on it.
    constexpr std::string_view kForm = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";
    if (text.empty()) {
        return nullptr;
    }
    const auto fits = [](char form, char character) {
        return form == 'h' ? IsHexDigit(character) : character == form;
    };
    const bool matches =
        text.size() == kForm.size() && std::equal(kForm.begin(), kForm.end(), text.begin(), fits);
    return matches ? nullptr : kPattern;
}

const char* CheckFloatLength(std::string_view text) {
    int64_t length = 0;
    if (const char* const error = CheckRange(text, 4, 8)) {
        return error;
    }
    return TextToInteger(text, length) && (length == 4 || length == 8) ? nullptr : kPattern;
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

bool TextToInteger(std::string_view text, int64_t& value) {
    const std::string_view whole = text;
    const bool isNegative = TakeSign(text);
    if (TakeHexPrefix(text)) {
        uint64_t bits = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
        if (error != std::errc() || end != text.data() + text.size()) {
            return false;
        }
        value = static_cast<int64_t>(isNegative ? 0 - bits : bits);
        return true;
    }
    const std::string_view number = isNegative ? whole : text;
    const char* const last = number.data() + number.size();
    const auto [end, error] = std::from_chars(number.data(), last, value);
    return error == std::errc() && end == last;
}

bool TextToDouble(std::string_view text, double& value) {
    const bool isNegative = TakeSign(text);
    if (text == "INF") {
        value = std::numeric_limits<double>::infinity();
    } else if (text == "NaN") {
        value = std::numeric_limits<double>::quiet_NaN();
    } else {
        const char* const last = text.data() + text.size();
        const bool beginsWell = !text.empty() && (IsDigit(text.front()) || text.front() == '.');
        const auto [end, error] = std::from_chars(text.data(), last, value);
        if (!beginsWell || error != std::errc() || end != last) {
            return false;
        }
    }
    value = isNegative ? -value : value;
    return true;
}

const char* CheckFacet(Facet facet, std::string_view text) {
    constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
    constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
    double number = 0;
    switch (facet) {
        case Facet::AnyText:
        case Facet::Enumerated:
            return nullptr;
        case Facet::NonEmptyText:
            return text.empty() ? kTooShort : nullptr;
        case Facet::Reference:
            return ConsistsOf(text, IsWord) ? nullptr : kPattern;
        case Facet::VariableName:
            return ConsistsOf(text, [](char c) { return IsWord(c) || c == '.'; }) &&
                           !IsDigit(text.front()) && text.front() != '.'
                       ? nullptr
                       : kPattern;
        case Facet::HexDigits:
            return ConsistsOf(text, IsHexDigit) ? nullptr : kPattern;
        case Facet::Integer:
            return CheckRange(text, kLowest, kHighest);
        case Facet::NonNegative:
            // Sixteen hexadecimal digits stand for an address, whatever their sign.
            return CheckRange(text, text.starts_with('-') ? 0 : kLowest, kHighest);
        case Facet::Positive:
            return CheckRange(text, 1, kHighest);
        case Facet::IntegerLength:
            return CheckRange(text, 1, 8);
        case Facet::FloatLength:
            return CheckFloatLength(text);
        case Facet::MergePriority:
            return CheckRange(text, -1, 1);
        case Facet::Version:
            return ConsistsOf(text, IsDigit) ? nullptr : kInteger;
        case Facet::Double:
            return TextToDouble(text, number) ? nullptr : kDouble;
        case Facet::Guid:
            return CheckGuid(text);
    }
    return nullptr;
}

}  // namespace GenApi_3_0_ORVANE
