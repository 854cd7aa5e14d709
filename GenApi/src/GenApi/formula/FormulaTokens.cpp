// Splits a formula's text into tokens. What each byte may begin is one look-up; the operators are
// a table in the order of their enumeration, so that a row's number is the operator.

#include "formula/FormulaTokens.h"

#include <array>

namespace GenApi_3_0_ORVANE {

namespace {

/// What a byte may begin. A point belongs to names, which it also separates
/// from their extensions.
enum class ByteClass : uint8_t { Invalid, Letter, Digit, Blank, Operator, Quote, End };

/// An operator and how tightly it binds.
struct OperatorRow {
    std::string_view text;
    int priority;
};

/// In the order of FormulaOp: texts of two characters come before those of one, which begin like
/// them. The bit operators bind tighter than multiplication, as descriptions rely on.
constexpr std::array<OperatorRow, 29> kOperators{{
    {"<<", 5},  {">>", 5},  {"**", 5}, {"<>", 2}, {">=", 2}, {"<=", 2}, {"&&", 2}, {"||", 2},
    {"/*", -2}, {":=", -2}, {"(", -1}, {"+", 3},  {"-", 3},  {"*", 4},  {"/", 4},  {"%", 4},
    {"$", 4},   {"^", 5},   {"~", 5},  {"&", 5},  {"|", 5},  {"=", 2},  {">", 2},  {"<", 2},
    {"?", 1},   {":", 2},   {")", 6},  {",", 6},  {";", -2},
}};

/// Characters above 127 are negative where char has a sign.
constexpr size_t IndexOf(char character) {
    return static_cast<unsigned char>(character);
}

constexpr auto kClasses = [] {
    std::array<ByteClass, 256> classes{};
    const auto mark = [&classes](std::string_view characters, ByteClass byteClass) {
        for (const char character : characters) {
            classes[IndexOf(character)] = byteClass;
        }
    };
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_.", ByteClass::Letter);
    mark("0123456789", ByteClass::Digit);
    mark(" \t\n\r", ByteClass::Blank);
    for (const OperatorRow& row : kOperators) {
        mark(row.text, ByteClass::Operator);
    }
    mark("'", ByteClass::Quote);
    classes[0] = ByteClass::End;
    return classes;
}();

/// The row of each operator of one character.
constexpr auto kSingleOperators = [] {
    std::array<uint8_t, 256> rows{};
    for (size_t i = 0; i < kOperators.size(); ++i) {
        if (kOperators[i].text.size() == 1) {
            rows[IndexOf(kOperators[i].text[0])] = static_cast<uint8_t>(i);
        }
    }
    return rows;
}();

ByteClass ClassOf(char character) {
    return kClasses[IndexOf(character)];
}

}  // namespace

int PriorityOf(FormulaOp op) {
    return kOperators[static_cast<size_t>(op)].priority;
}

/// Checked before the formula is compiled, because brackets have a text of their own and the
/// compiler could only report a wrong syntax.
bool DoBracketsMatch(std::string_view formula) {
    int open = 0;
    for (const char character : formula) {
        if (character == '(') {
            ++open;
        } else if (character == ')' && --open < 0) {
            return false;
        }
    }
    return open == 0;
}

/// A zero byte ends the formula, as the end of the text does.
FormulaPiece FormulaTokens::Next() {
    while (!m_Rest.empty() && ClassOf(m_Rest.front()) == ByteClass::Blank) {
        m_Rest.remove_prefix(1);
    }
    if (m_Rest.empty()) {
        return {FormulaToken::End, {}, {}};
    }
    switch (ClassOf(m_Rest.front())) {
        case ByteClass::Letter:
            return NextName();
        case ByteClass::Digit:
            return {FormulaToken::Number, {}, m_Rest};
        case ByteClass::Operator:
            return NextOperator();
        case ByteClass::Quote:
            return NextText();
        case ByteClass::End:
            return {FormulaToken::End, {}, {}};
        default:
            return {FormulaToken::Error, {}, {}};
    }
}

/// Two operators in a row, as in "-(-3)", look like one of two characters at first; only texts of
/// the table are.
FormulaPiece FormulaTokens::NextOperator() {
    size_t row = kSingleOperators[IndexOf(m_Rest.front())];
    if (m_Rest.size() > 1 && ClassOf(m_Rest[1]) == ByteClass::Operator) {
        for (size_t i = 0; kOperators[i].text.size() == 2; ++i) {
            if (m_Rest.starts_with(kOperators[i].text)) {
                row = i;
                break;
            }
        }
    }
    const std::string_view text = kOperators[row].text;
    m_Rest.remove_prefix(text.size());
    return {FormulaToken::Operator, static_cast<FormulaOp>(row), text};
}

/// A point belongs to the name: it separates the name from its extension, as in "GAIN.Max".
FormulaPiece FormulaTokens::NextName() {
    size_t length = 1;
    while (length < m_Rest.size() && (ClassOf(m_Rest[length]) == ByteClass::Letter ||
                                      ClassOf(m_Rest[length]) == ByteClass::Digit)) {
        ++length;
    }
    const std::string_view name = m_Rest.substr(0, length);
    m_Rest.remove_prefix(length);
    return {FormulaToken::Name, {}, name};
}

/// A quote that isn't closed is a wrong formula, not a text to its end.
FormulaPiece FormulaTokens::NextText() {
    const size_t end = m_Rest.find('\'', 1);
    if (end == std::string_view::npos) {
        return {FormulaToken::Error, {}, {}};
    }
    const std::string_view text = m_Rest.substr(1, end - 1);
    m_Rest.remove_prefix(end + 1);
    return {FormulaToken::Text, {}, text};
}

}  // namespace GenApi_3_0_ORVANE
