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

/// Operators that take a call anyway: for these it counts for little to find out their form.
template <class Traits>
const char* MathParserT<Traits>::ApplyCalled(const Instruction& instruction, const Value* slots,
                                             Value*& end, Value& value) {
    const auto op = static_cast<FormulaOp>(instruction.detail);
    switch (FormOf(instruction.step)) {
        case Code::Operator:
            return Traits::Apply(op, *--end, value, value);
        case Code::OperatorSlot:
            return Traits::Apply(op, value, slots[instruction.slot], value);
        default:
            *end++ = value;
            return Traits::Apply(op, slots[instruction.left], slots[instruction.slot], value);
    }
}

// The three forms of an operator that takes no call.
#define OV_FORMULA_OPERATOR(op)                                                                 \
    case StepOf(Code::Operator, op):                                                            \
        error = ApplyOperator<Traits, op>(*--end, value, value);                                \
        break;                                                                                  \
    case StepOf(Code::OperatorSlot, op):                                                        \
        error = ApplyOperator<Traits, op>(value, slots[instruction.slot], value);               \
        break;                                                                                  \
    case StepOf(Code::OperatorSlots, op):                                                       \
        *end++ = value;                                                                         \
        error =                                                                                 \
            ApplyOperator<Traits, op>(slots[instruction.left], slots[instruction.slot], value); \
        break

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
        switch (instruction.step) {
            case StepOf(Code::Load):
                *end++ = value;
                value = slots[instruction.slot];
                break;
                OV_FORMULA_OPERATOR(FormulaOp::Add);
                OV_FORMULA_OPERATOR(FormulaOp::Subtract);
                OV_FORMULA_OPERATOR(FormulaOp::Multiply);
                OV_FORMULA_OPERATOR(FormulaOp::Divide);
                OV_FORMULA_OPERATOR(FormulaOp::Equal);
                OV_FORMULA_OPERATOR(FormulaOp::NotEqual);
                OV_FORMULA_OPERATOR(FormulaOp::Greater);
                OV_FORMULA_OPERATOR(FormulaOp::GreaterEqual);
                OV_FORMULA_OPERATOR(FormulaOp::Less);
                OV_FORMULA_OPERATOR(FormulaOp::LessEqual);
                OV_FORMULA_OPERATOR(FormulaOp::LogicalAnd);
                OV_FORMULA_OPERATOR(FormulaOp::LogicalOr);
            case StepOf(Code::Complement): {
                Value complement{};
                error = Traits::Complement(value, complement);
                value = complement;
                break;
            }
            case StepOf(Code::Function):
                value = Traits::Call(static_cast<FormulaFunction>(instruction.detail), value);
                break;
            case StepOf(Code::RoundAt):
                if constexpr (Traits::HasFunctions) {
                    value = RoundAt(*--end, value);
                }
                break;
            case StepOf(Code::Select):
                end -= 2;
                value = end[0] != 0 ? end[1] : value;
                break;
            case StepOf(Code::Fail):
                error = instruction.text;
                break;
            default: {
                // Memory of their own, so that both can be in registers.
                Value operand = value;
                Value* top = end;
                error = ApplyCalled(instruction, slots, top, operand);
                value = operand;
                end = top;
                break;
            }
        }
        if (error != nullptr) {
            return error;
        }
    }
    result = value;
    return nullptr;
}

#undef OV_FORMULA_OPERATOR

template class MathParserT<DoubleFormulaTraits>;
template class MathParserT<Int64FormulaTraits>;

}  // namespace GenApi_3_0_ORVANE
