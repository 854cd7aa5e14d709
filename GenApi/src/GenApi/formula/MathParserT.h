#pragma once
/// Compiles the formulas of a description and evaluates them.

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace GenApi_3_0_ORVANE {

/// The language's operators. The order is that in which a formula's text is
/// tried for them.
enum class FormulaOp : uint8_t {
    ShiftLeft,
    ShiftRight,
    Power,
    NotEqual,
    GreaterEqual,
    LessEqual,
    LogicalAnd,
    LogicalOr,
    CommentBegin,
    Assign,
    Open,
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Dollar,
    Xor,
    Complement,
    And,
    Or,
    Equal,
    Greater,
    Less,
    Condition,
    Select,
    Close,
    Comma,
    Semicolon
};

/// The functions of the language. Integers know the last two only.
enum class FormulaFunction : uint8_t {
    Atan,
    Cos,
    Sin,
    Tan,
    Asin,
    Acos,
    Abs,
    Exp,
    Sqrt,
    Ln,
    Lg,
    Floor,
    Ceil,
    Frac,
    Trunc,
    Round,
    Sgn,
    Neg
};

/// A formula, compiled once and evaluated any number of times. Failures are texts that begin with
/// "#" and live as long as the parser. Evaluation allocates nothing. `Traits` has the numbers and
/// what operators do to them.
template <class Traits>
class MathParserT {
public:
    using Value = typename Traits::Value;

    /// Enters a variable; its index is the number of those before it. A formula has to be
    /// compiled again afterwards.
    void AddVariable(std::string_view name) {
        Forget();
        m_Names.emplace_back(name);
        m_Slots.push_back(Traits::kUndefined);
    }
    void ClearVariables() {
        m_Names.clear();
        Forget();
    }
    Value& GetVariableSlot(size_t index) { return m_Slots[index]; }

    /// Compiles a formula.
    /// @param upperCase  compares names as if they were all in upper case
    /// @return null, or the text of what is wrong
    const char* Compile(std::string_view formula, bool upperCase);
    /// Evaluates the formula.
    /// @return null, or the text of what went wrong
    const char* Evaluate(Value& result);

private:
    /// An operator takes both values from the stack, the right one from a slot, or both from
    /// slots, because most have variables or numbers there.
    enum class Code : uint8_t {
        Load,
        Operator,
        OperatorSlot,
        OperatorSlots,
        Complement,
        Function,
        RoundAt,
        Select,
        Fail
    };
    struct Instruction {
        uint8_t step;    ///< code and operator in one number: an evaluation branches once for each
        uint8_t detail;  ///< which operator or function
        uint32_t left;   ///< the slot of the left value, if it comes from one
        union {
            size_t slot;
            const char* text;
        };
    };
    class Compiler;

    static constexpr int kCodes = static_cast<int>(Code::Fail) + 1;
    static constexpr int kOperators = static_cast<int>(FormulaOp::Semicolon) + 1;
    static_assert(kCodes + 3 * kOperators <= UINT8_MAX + 1);
    // Codes come first, then the operators in each of their three forms.
    static constexpr uint8_t StepOf(Code code) { return static_cast<uint8_t>(code); }
    static constexpr uint8_t StepOf(Code form, FormulaOp op) {
        const int place = static_cast<int>(form) - static_cast<int>(Code::Operator);
        return static_cast<uint8_t>(kCodes + place * kOperators + static_cast<int>(op));
    }
    static constexpr Code FormOf(uint8_t step) {
        return static_cast<Code>(static_cast<int>(Code::Operator) + (step - kCodes) / kOperators);
    }
    /// Takes the values of an operator from where its form says, and applies it.
    static const char* ApplyCalled(const Instruction& instruction, const Value* slots, Value*& end,
                                   Value& value);

    /// Room that most formulas don't exceed, for instructions and for values.
    static constexpr size_t kReserved = 64;

    /// Drops the program and its numbers; the variables stay.
    void Forget() {
        m_IsCompiled = false;
        m_Program.clear();
        m_Slots.resize(m_Names.size());
    }

    std::vector<std::string> m_Names;
    /// The values of the variables, then the numbers of the formula.
    std::vector<Value> m_Slots;
    std::vector<Instruction> m_Program;
    std::vector<Value> m_Stack;
    std::string m_UnknownName;
    bool m_IsCompiled = false;
};

/// Formulas in double precision.
struct DoubleFormulaTraits {
    using Value = double;
    static constexpr bool HasFunctions = true;
    /// The value of a variable that nobody has set.
    static constexpr Value kUndefined = -1.68736462823243e+308;
    static Value Add(Value left, Value right) { return left + right; }
    static Value Subtract(Value left, Value right) { return left - right; }
    static Value Multiply(Value left, Value right) { return left * right; }
    /// Reads the number at the beginning of a text and returns its length.
    static size_t ParseNumber(std::string_view text, Value& number);
    static const char* Divide(Value left, Value right, Value& result);
    /// The operators that aren't the same for all numbers, except those above.
    static const char* Apply(FormulaOp op, Value left, Value right, Value& result);
    static const char* Complement(Value operand, Value& result);
    static Value Call(FormulaFunction function, Value operand);
};

/// Formulas in 64-bit integers.
struct Int64FormulaTraits {
    using Value = int64_t;
    static constexpr bool HasFunctions = false;
    static constexpr Value kUndefined = std::numeric_limits<Value>::min();
    // Unsigned, so that an overflow wraps as the language's numbers do.
    static Value Add(Value left, Value right) {
        return static_cast<Value>(static_cast<uint64_t>(left) + static_cast<uint64_t>(right));
    }
    static Value Subtract(Value left, Value right) {
        return static_cast<Value>(static_cast<uint64_t>(left) - static_cast<uint64_t>(right));
    }
    static Value Multiply(Value left, Value right) {
        return static_cast<Value>(static_cast<uint64_t>(left) * static_cast<uint64_t>(right));
    }
    static size_t ParseNumber(std::string_view text, Value& number);
    static const char* Divide(Value left, Value right, Value& result);
    static const char* Apply(FormulaOp op, Value left, Value right, Value& result);
    static const char* Complement(Value operand, Value& result);
    static Value Call(FormulaFunction function, Value operand);
};

/// Rounds half away from zero at a decimal place; negative places are before the point.
double RoundAt(double value, double place);

extern template class MathParserT<DoubleFormulaTraits>;
extern template class MathParserT<Int64FormulaTraits>;

using MathParser = MathParserT<DoubleFormulaTraits>;
using Int64MathParser = MathParserT<Int64FormulaTraits>;

}  // namespace GenApi_3_0_ORVANE
