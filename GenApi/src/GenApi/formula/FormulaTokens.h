#pragma once
/// Takes a formula's text apart.

#include <cstdint>
#include <string_view>

#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

inline constexpr const char* kSyntax = "#Syntax error!";

enum class FormulaToken : uint8_t { Error, End, Number, Operator, Name, Text };

/// One token, and where its text stands.
struct FormulaPiece {
    FormulaToken token = FormulaToken::End;
    FormulaOp op = FormulaOp::Open;
    std::string_view text;
};

/// The tokens of a formula, one after another. A number is only found here:
/// what it is worth, and how long it is, depends on the kind of numbers.
class FormulaTokens {
public:
    explicit FormulaTokens(std::string_view formula) : m_Rest(formula) {}

    FormulaPiece Next();
    /// What stands at a number's begin, for reading it.
    std::string_view Rest() const { return m_Rest; }
    void Skip(size_t length) { m_Rest.remove_prefix(length); }

private:
    FormulaPiece NextOperator();
    FormulaPiece NextName();
    FormulaPiece NextText();

    std::string_view m_Rest;
};

/// Whether every bracket has its other.
bool DoBracketsMatch(std::string_view formula);
/// How tight an operator binds; a larger number is tighter.
int PriorityOf(FormulaOp op);

}  // namespace GenApi_3_0_ORVANE
