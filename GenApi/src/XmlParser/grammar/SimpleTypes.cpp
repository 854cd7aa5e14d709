// The lexical rules. They are checked before a property is made, so that a live node
// never meets a constant length of 0 or a name with a blank. Character tests are our own:
// those of the C library depend on the locale of the process.

#include "grammar/SimpleTypes.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "nodes/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr const char* kPattern = "value does not match pattern";
constexpr const char* kInteger = "invalid integer value";
constexpr const char* kDouble = "invalid double value";
constexpr const char* kTooSmall = "value is less than minimum allowed";
constexpr const char* kTooLarge = "value is greater than maximum allowed";
constexpr const char* kTooShort = "length is less than minimum allowed";
constexpr const char* kTooLong = "length is greater than maximum allowed";

/// Not by the C library, which asks the locale.
bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
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

/// Removes a sign and returns whether it was a minus.
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

/// An integer within limits. What is no integer passes here, because the conversion that
/// follows names the property in its failure.
const char* CheckRange(std::string_view text, int64_t min, int64_t max) {
    int64_t value = 0;
    if (!TextToInteger(text, value)) {
        return nullptr;
    }
    if (value < min) {
        return kTooSmall;
    }
    return value > max ? kTooLarge : nullptr;
}

/// A name of characters that pass a test. Names of nodes inside others repeat those of the outer
/// ones, so that a very long one would fill the memory.
template <class Test>
const char* CheckName(std::string_view text, const Test& test) {
    if (text.size() > kMaxNameLength) {
        return kTooLong;
    }
    return ConsistsOf(text, test) ? nullptr : kPattern;
}

/// A formula has to be able to distinguish names from numbers.
const char* CheckVariableName(std::string_view text) {
    // A formula would read such a name as a number. The dots inside are for "Gain.Min"
    // and the like.
    if (text.empty() || IsDigit(text.front()) || text.front() == '.') {
        return kPattern;
    }
    return CheckName(text, [](char c) { return IsWord(c) || c == '.'; });
}

/// Exactly the three that a merge knows.
const char* CheckMergePriority(std::string_view text) {
    int64_t value = 0;
    return TextToInteger(text, value) ? CheckRange(text, -1, 1) : kInteger;
}

const char* CheckVersion(std::string_view text) {
    int64_t value = 0;
    return ConsistsOf(text, IsDigit) && TextToInteger(text, value) ? nullptr : kInteger;
}

/// Some cameras leave it empty, and nothing depends on it.
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

/// The two lengths that floats have in registers.
const char* CheckFloatLength(std::string_view text) {
    int64_t length = 0;
    const bool fits = !TextToInteger(text, length) || length == 4 || length == 8;
    return fits ? nullptr : kPattern;
}

}  // namespace

/// Character by character, since a good part of a description is blanks before elements.
std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// In the plain locale and to the end of the text. Hexadecimal numbers are addresses and masks,
/// so all 64 bits may be set.
bool TextToInteger(std::string_view text, int64_t& value) {
    // std::from_chars knows no locale, needs no copy and refuses what isn't a digit. It
    // also refuses a plus and a prefix, which descriptions use, so these are taken off
    // first.
    const bool isNegative = TakeSign(text);
    const bool isHex = TakeHexPrefix(text);
    const char* const last = text.data() + text.size();
    uint64_t bits = 0;
    const auto [end, error] = std::from_chars(text.data(), last, bits, isHex ? 16 : 10);
    if (error != std::errc() || end != last) {
        return false;
    }
    constexpr uint64_t kHighest = std::numeric_limits<int64_t>::max();
    if (!isHex && bits > kHighest + (isNegative ? 1 : 0)) {
        return false;
    }
    value = static_cast<int64_t>(isNegative ? 0 - bits : bits);
    return true;
}

/// Two of the spellings aren't numbers to the C++ library, and a few of its own aren't to the
/// schema.
bool TextToDouble(std::string_view text, double& value) {
    const bool isNegative = TakeSign(text);
    // The spelling of XML. What std::from_chars would accept besides, such as "inf",
    // "nan" or a second sign, is no number in a description.
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
        case Facet::Integer:
            return nullptr;
        case Facet::NonEmptyText:
            return text.empty() ? kTooShort : nullptr;
        case Facet::Reference:
            return CheckName(text, IsWord);
        case Facet::VariableName:
            return CheckVariableName(text);
        case Facet::HexDigits:
            return ConsistsOf(text, IsHexDigit) ? nullptr : kPattern;
        case Facet::NonNegative:
            // Sixteen hexadecimal digits are an address, even when they read as a
            // negative number.
            return CheckRange(text, text.starts_with('-') ? 0 : kLowest, kHighest);
        case Facet::Positive:
            return CheckRange(text, 1, kHighest);
        case Facet::IntegerLength:
            return CheckRange(text, 1, 8);
        case Facet::FloatLength:
            return CheckFloatLength(text);
        case Facet::MergePriority:
            return CheckMergePriority(text);
        case Facet::Version:
            return CheckVersion(text);
        case Facet::Double:
            return TextToDouble(text, number) ? nullptr : kDouble;
        case Facet::Guid:
            return CheckGuid(text);
    }
    return nullptr;
}

}  // namespace GenApi_3_0_ORVANE
