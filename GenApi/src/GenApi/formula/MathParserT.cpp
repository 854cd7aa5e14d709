// Evaluates compiled formulas. A program is a list of instructions over a stack of values; all
// memory is taken when the formula is compiled, so that a read of a node allocates nothing.

#include "formula/MathParserT.h"

#include "formula/FormulaCompiler.h"

namespace GenApi_3_0_ORVANE {

template <class Traits>
const char* MathParserT<Traits>::Compile(std::string_view formula, bool upperCase) {
    Forget();
    if (!DoBracketsMatch(formula)) {
        return kBrackets;
    }
    m_Program.reserve(kReserved);
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
    Value* top = m_Stack.data();
    for (const Instruction& instruction : m_Program) {
        const char* error = nullptr;
        switch (instruction.code) {
            case Code::Load:
                *++top = slots[instruction.slot];
                break;
            case Code::Add:
                --top;
                *top = Traits::Add(top[0], top[1]);
                break;
            case Code::Subtract:
                --top;
                *top = Traits::Subtract(top[0], top[1]);
                break;
            case Code::Multiply:
                --top;
                *top = Traits::Multiply(top[0], top[1]);
                break;
            case Code::AddSlot:
                *top = Traits::Add(*top, slots[instruction.slot]);
                break;
            case Code::SubtractSlot:
                *top = Traits::Subtract(*top, slots[instruction.slot]);
                break;
            case Code::MultiplySlot:
                *top = Traits::Multiply(*top, slots[instruction.slot]);
                break;
            case Code::Operator:
                --top;
                error =
                    Traits::Apply(static_cast<FormulaOp>(instruction.detail), top[0], top[1], *top);
                break;
            case Code::OperatorSlot:
                error = Traits::Apply(static_cast<FormulaOp>(instruction.detail), *top,
                                      slots[instruction.slot], *top);
                break;
            case Code::Complement:
                error = Traits::Complement(*top, *top);
                break;
            case Code::Function:
                *top = Traits::Call(static_cast<FormulaFunction>(instruction.detail), *top);
                break;
            case Code::RoundAt:
                --top;
                if constexpr (Traits::HasFunctions) {
                    *top = RoundAt(top[0], top[1]);
                }
                break;
            case Code::Select:
                top -= 2;
                *top = top[0] != 0 ? top[1] : top[2];
                break;
            case Code::Fail:
                error = instruction.text;
                break;
        }
        if (error != nullptr) {
            return error;
        }
    }
    result = *top;
    return nullptr;
}

template class MathParserT<DoubleFormulaTraits>;
template class MathParserT<Int64FormulaTraits>;

}  // namespace GenApi_3_0_ORVANE
