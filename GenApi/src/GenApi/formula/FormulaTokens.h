#pragma once
/// Splits a formula's text into tokens.

#include <cstdint>
#include <string_view>

#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

enum class FormulaToken : uint8_t { Error, End, Number, Operator, Name, Text };

/// One token with its text.
struct FormulaPiece {
    FormulaToken token = FormulaToken::End;
    FormulaOp op = FormulaOp::Open;
    std::string_view text;
};

/// Returns the tokens of a formula one after the other. Of a number only the beginning is found
/// here: its value and length depend on the kind of numbers.
class FormulaTokens {
public:
    explicit FormulaTokens(std::string_view formula) : m_Rest(formula) {}

    FormulaPiece Next();
    /// Returns the text from the beginning of a number on.
    std::string_view Rest() const { return m_Rest; }
    void Skip(size_t length) { m_Rest.remove_prefix(length); }

private:
    FormulaPiece NextOperator();
    FormulaPiece NextName();
    FormulaPiece NextText();

    std::string_view m_Rest;
};

/// Whether every bracket has its counterpart.
bool DoBracketsMatch(std::string_view formula);
/// Returns how tightly an operator binds; larger numbers bind tighter.
int PriorityOf(FormulaOp op);

}  // namespace GenApi_3_0_ORVANE
