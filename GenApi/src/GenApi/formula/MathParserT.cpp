// Evaluates compiled formulas. A program is a list of instructions over a stack of values; all
// memory is taken when the formula is compiled, so that a read of a node allocates nothing.

#include "formula/MathParserT.h"

#include <algorithm>

#include "formula/FormulaCompiler.h"
#include "formula/FormulaNumbers.h"

namespace GenApi_3_0_ORVANE {

template <class Traits>
const char* MathParserT<Traits>::Compile(std::string_view formula, bool upperCase) {
    Forget();
    if (!DoBracketsMatch(formula)) {
        return kBrackets;
    }
    // No instruction without a character.
    m_Program.reserve(std::min(formula.size(), kReserved));
    const char* const error = Compiler(*this, formula, upperCase).Compile();
    m_IsCompiled = error == nullptr;
    return error;
}

template <class Traits>
const char* MathParserT<Traits>::Evaluate(Value& result) {
    if (!m_IsCompiled) {
        return kInvalid;
    }
    const Value* const slots = m_Slots.data();
    // The topmost value, which stays in a register; the others are on the stack.
    Value value{};
    Value* end = m_Stack.data();
    for (const Instruction& instruction : m_Program) {
        const char* error = nullptr;
        const auto op = static_cast<FormulaOp>(instruction.detail);
        switch (instruction.code) {
            case Code::Load:
                *end++ = value;
                value = slots[instruction.slot];
                break;
            case Code::Operator:
                error = ApplyOperator<Traits>(op, *--end, value, value);
                break;
            case Code::OperatorSlot:
                error = ApplyOperator<Traits>(op, value, slots[instruction.slot], value);
                break;
            case Code::OperatorSlots:
                *end++ = value;
                error = ApplyOperator<Traits>(op, slots[instruction.left], slots[instruction.slot],
                                              value);
                break;
            case Code::Complement: {
                Value complement{};
                error = Traits::Complement(value, complement);
                value = complement;
                break;
            }
            case Code::Function:
                value = Traits::Call(static_cast<FormulaFunction>(instruction.detail), value);
                break;
            case Code::RoundAt:
                if constexpr (Traits::HasFunctions) {
                    value = RoundAt(*--end, value);
                }
                break;
            case Code::Select:
                end -= 2;
                value = end[0] != 0 ? end[1] : value;
                break;
            case Code::Fail:
                error = instruction.text;
                break;
        }
        if (error != nullptr) {
            return error;
        }
    }
    result = value;
    return nullptr;
}

template class MathParserT<DoubleFormulaTraits>;
template class MathParserT<Int64FormulaTraits>;

}  // namespace GenApi_3_0_ORVANE
