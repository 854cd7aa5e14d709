#include "GenApi/impl/FloatText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <string_view>

namespace GenApi_3_0_ORVANE {

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kBlanks = " \t\r\n";

/// More digits than this are zeros for every double.
constexpr int64_t kMostDigits = 1100;

/// Takes the leading characters that are among `characters`; gives their count.
size_t Skip(std::string_view& text, std::string_view characters) {
    const size_t count = std::min(text.find_first_not_of(characters), text.size());
    text.remove_prefix(count);
    return count;
}

}  // namespace

gcstring CFloatText::Print(double value) const {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if (m_Notation == fnFixed) {
        stream.setf(std::ios::fixed, std::ios::floatfield);
    } else if (m_Notation == fnScientific) {
        stream.setf(std::ios::scientific, std::ios::floatfield);
    }
    if (m_Precision >= 0) {
        stream.precision(std::min(m_Precision, kMostDigits));
    }
    stream << value;
    return gcstring(stream.str().c_str());
}

double CFloatText::HalfLastDigit(const gcstring& text) {
    std::string_view rest(text.c_str(), text.size());
    Skip(rest, kBlanks);
    Skip(rest, "+-");
    Skip(rest, kDigits);
    double half = 0.5;
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        half *= std::pow(10.0, -static_cast<double>(Skip(rest, kDigits)));
    }
    if (rest.starts_with('e')) {
        rest.remove_prefix(1);
        half *= std::pow(10.0, std::atoi(rest.data()));
    }
    return half;
}

}  // namespace GenApi_3_0_ORVANE
