#include "FormulaTokens.h"

#include <array>

namespace GenApi_3_0_ORVANE {

namespace {

struct OperatorRow {
    std::string_view text;
    int priority;
};

// In the order of FormulaOp: texts of two characters come before those of one.
// The bit operators bind tighter than multiplication: the language has it so.
constexpr std::array<OperatorRow, 29> kOperators{{
    {"<<", 5},  {">>", 5},  {"**", 5}, {"<>", 2}, {">=", 2}, {"<=", 2}, {"&&", 2}, {"||", 2},
    {"/*", -2}, {":=", -2}, {"(", -1}, {"+", 3},  {"-", 3},  {"*", 4},  {"/", 4},  {"%", 4},
    {"$", 4},   {"^", 5},   {"~", 5},  {"&", 5},  {"|", 5},  {"=", 2},  {">", 2},  {"<", 2},
    {"?", 1},   {":", 2},   {")", 6},  {",", 6},  {";", -2},
}};

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           character == '_' || character == '.';
}

}  // namespace

int PriorityOf(FormulaOp op) {
    return kOperators[static_cast<size_t>(op)].priority;
}

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

FormulaPiece FormulaTokens::Next() {
    while (!m_Rest.empty() && IsBlank(m_Rest.front())) {
        m_Rest.remove_prefix(1);
    }
    if (m_Rest.empty() || m_Rest.front() == '\0') {
        return {FormulaToken::End, {}, {}};
    }
    const char first = m_Rest.front();
    if (IsDigit(first)) {
        return {FormulaToken::Number, {}, m_Rest};
    }
    if (IsLetter(first)) {
        return NextName();
    }
    return first == '\'' ? NextText() : NextOperator();
}

FormulaPiece FormulaTokens::NextOperator() {
    for (size_t i = 0; i < kOperators.size(); ++i) {
        const std::string_view text = kOperators[i].text;
        if (m_Rest.starts_with(text)) {
            m_Rest.remove_prefix(text.size());
            return {FormulaToken::Operator, static_cast<FormulaOp>(i), text};
        }
    }
    return {FormulaToken::Error, {}, {}};
}

FormulaPiece FormulaTokens::NextName() {
    size_t length = 1;
    while (length < m_Rest.size() && (IsLetter(m_Rest[length]) || IsDigit(m_Rest[length]))) {
        ++length;
    }
    const std::string_view name = m_Rest.substr(0, length);
    m_Rest.remove_prefix(length);
    return {FormulaToken::Name, {}, name};
}

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
