#pragma once
/// Compiles the text of a formula into the program of its parser.

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formula/FormulaErrors.h"
#include "formula/FormulaNames.h"
#include "formula/FormulaTokens.h"
#include "formula/MathParserT.h"

namespace GenApi_3_0_ORVANE {

/// Turns a formula into a program in one pass. Operators wait on a stack until one comes that
/// doesn't bind tighter, so equal ones associate to the left.
template <class Traits>
class MathParserT<Traits>::Compiler {
public:
    Compiler(MathParserT& parser, std::string_view formula, bool upperCase)
        : m_Parser(parser), m_Tokens(formula), m_UpperCase(upperCase) {
        m_Waiting.reserve(std::min(formula.size(), MathParserT::kReserved));
        const auto& names = m_Parser.m_Names;
        if (names.size() > kFewVariables) {
            for (size_t place = 0; place < names.size(); ++place) {
                m_Places.emplace(m_UpperCase ? ToUpper(names[place]) : names[place], place);
            }
        }
    }

    const char* Compile() {
        for (;;) {
            const FormulaPiece piece = m_Tokens.Next();
            if (piece.token == FormulaToken::End) {
                return Finish();
            }
            const char* const error = m_WantsOperand ? TakeOperand(piece) : TakeOperator(piece);
            if (error != nullptr) {
                return error;
            }
        }
    }

private:
    /// What waits on the stack.
    enum class Kind : uint8_t { Binary, Prefix, Bracket, Function };
    struct Entry {
        Kind kind;
        uint8_t detail;
        int priority;
        size_t depth;  ///< how many values were there before
    };
    /// Tighter than every operator between two values.
    static constexpr int kPrefixPriority = 6;
    /// Stands for a text among the arguments of a call: a number that no formula computes.
    static constexpr double kTextMark = -1.68376462823243e+308;
    /// As many variables are found faster one after the other than by a table.
    static constexpr size_t kFewVariables = 16;

    const char* TakeOperand(const FormulaPiece& piece) {
        switch (piece.token) {
            case FormulaToken::Number:
                return TakeNumber();
            case FormulaToken::Name:
                return TakeName(piece.text);
            case FormulaToken::Operator:
                return TakePrefix(piece.op);
            case FormulaToken::Text:
                return TakeText();
            default:
                return kSyntax;
        }
    }

    /// Only the function of several arguments may begin with a text. A number takes its place
    /// among the arguments.
    const char* TakeText() {
        if constexpr (Traits::HasFunctions) {
            if (!m_Waiting.empty() && IsRound(m_Waiting.back()) &&
                m_Waiting.back().depth == m_Depth) {
                EmitNumber(kTextMark);
                return nullptr;
            }
        }
        return kSyntax;
    }

    const char* TakeNumber() {
        Value number{};
        m_Tokens.Skip(Traits::ParseNumber(m_Tokens.Rest(), number));
        EmitNumber(number);
        return nullptr;
    }

    const char* TakePrefix(FormulaOp op) {
        switch (op) {
            case FormulaOp::Add:
                return nullptr;
            case FormulaOp::Subtract:
                Wait(Kind::Prefix, static_cast<uint8_t>(FormulaOp::Subtract), kPrefixPriority);
                return nullptr;
            case FormulaOp::Complement:
                Wait(Kind::Prefix, static_cast<uint8_t>(FormulaOp::Complement),
                     PriorityOf(FormulaOp::Complement));
                return nullptr;
            case FormulaOp::Open:
                Wait(Kind::Bracket, 0, PriorityOf(FormulaOp::Open));
                return nullptr;
            default:
                return kSyntax;
        }
    }

    const char* TakeName(std::string_view text) {
        const std::string upper = ToUpper(text);
        if (const auto function = FindFunction(upper, Traits::HasFunctions)) {
            return TakeFunction(*function);
        }
        if constexpr (Traits::HasFunctions) {
            if (const auto constant = FindConstant(upper)) {
                EmitNumber(*constant);
                return nullptr;
            }
        }
        return TakeVariable(text);
    }

    const char* TakeFunction(FormulaFunction function) {
        const FormulaPiece next = m_Tokens.Next();
        if (next.token != FormulaToken::Operator || next.op != FormulaOp::Open) {
            return kSyntax;
        }
        Wait(Kind::Function, static_cast<uint8_t>(function), PriorityOf(FormulaOp::Open));
        return nullptr;
    }

    /// The first variable of a name; the number of all where there is none.
    size_t FindVariable(std::string_view name) const {
        const auto& names = m_Parser.m_Names;
        if (names.size() > kFewVariables) {
            const auto found = m_Places.find(m_UpperCase ? ToUpper(name) : std::string(name));
            return found == m_Places.end() ? names.size() : found->second;
        }
        const auto found =
            std::find_if(names.begin(), names.end(), [this, name](const std::string& variable) {
                return m_UpperCase ? IsSameInUpperCase(variable, name) : variable == name;
            });
        return static_cast<size_t>(found - names.begin());
    }

    const char* TakeVariable(std::string_view name) {
        const size_t place = FindVariable(name);
        if (place == m_Parser.m_Names.size()) {
            m_Parser.m_UnknownName = "# " + (m_UpperCase ? ToUpper(name) : std::string(name)) +
                                     " - Unknown function/variable!";
            return m_Parser.m_UnknownName.c_str();
        }
        EmitLoad(place);
        return nullptr;
    }

    const char* TakeOperator(const FormulaPiece& piece) {
        if (piece.token != FormulaToken::Operator || piece.op == FormulaOp::Open ||
            piece.op == FormulaOp::Complement || piece.op == FormulaOp::Semicolon) {
            return kSyntax;
        }
        if (piece.op == FormulaOp::Close) {
            return CloseBracket();
        }
        if (piece.op == FormulaOp::Comma) {
            return TakeComma();
        }
        ApplyWaiting(PriorityOf(piece.op));
        Wait(Kind::Binary, static_cast<uint8_t>(piece.op), PriorityOf(piece.op));
        m_WantsOperand = true;
        return nullptr;
    }

    const char* CloseBracket() {
        ApplyAll();
        if (m_Waiting.empty()) {
            return kSyntax;
        }
        const Entry mark = m_Waiting.back();
        m_Waiting.pop_back();
        if (mark.kind == Kind::Function) {
            EmitCall(mark);
        }
        return nullptr;
    }

    /// Outside of a call this leaves more than one value.
    const char* TakeComma() {
        ApplyAll();
        m_WantsOperand = true;
        return nullptr;
    }

    /// Applies what waits and binds at least as tight, down to a bracket.
    void ApplyWaiting(int priority) {
        while (!m_Waiting.empty() && !IsMark(m_Waiting.back()) &&
               m_Waiting.back().priority >= priority) {
            ApplyTop();
        }
    }

    void ApplyAll() {
        while (!m_Waiting.empty() && !IsMark(m_Waiting.back())) {
            ApplyTop();
        }
    }

    void ApplyTop() {
        const Entry top = m_Waiting.back();
        m_Waiting.pop_back();
        if (top.kind == Kind::Prefix) {
            EmitPrefix(top);
            return;
        }
        const auto op = static_cast<FormulaOp>(top.detail);
        if (op == FormulaOp::Select) {
            ApplySelect();
        } else if (op == FormulaOp::Condition) {
            EmitFailure(kLogical);
        } else {
            EmitOperator(op);
        }
    }

    /// A selection needs its condition directly below.
    void ApplySelect() {
        const bool hasCondition =
            !m_Waiting.empty() && m_Waiting.back().kind == Kind::Binary &&
            static_cast<FormulaOp>(m_Waiting.back().detail) == FormulaOp::Condition;
        if (!hasCondition) {
            EmitFailure(kLogical);
            return;
        }
        m_Waiting.pop_back();
        Emit(Code::Select);
        PopValues(2);
    }

    const char* Finish() {
        if (m_WantsOperand && (m_Depth != 0 || !m_Waiting.empty())) {
            // An operator lacks its operand.
            EmitFailure(kExtraOperation);
        }
        ApplyAll();
        if (m_Depth != 1) {
            EmitFailure(kInvalid);
        }
        // One more: a loaded value sends the one before it to the stack, the first an empty one.
        m_Parser.m_Stack.assign(m_MaxDepth + 1, Value());
        m_Parser.m_Program.shrink_to_fit();
        m_Parser.m_Slots.shrink_to_fit();
        return nullptr;
    }

    void EmitNumber(Value number) {
        m_Parser.m_Slots.push_back(number);
        EmitLoad(m_Parser.m_Slots.size() - 1);
    }

    void EmitLoad(size_t slot) {
        Emit(Code::Load).slot = slot;
        PushValue();
    }

    /// Values that were just loaded are taken from their slots instead.
    void EmitOperator(FormulaOp op) {
        const Code code = !LoadsLast(1)   ? Code::Operator
                          : !LoadsLast(2) ? Code::OperatorSlot
                                          : Code::OperatorSlots;
        if (code == Code::OperatorSlots) {
            const size_t right = m_Parser.m_Program.back().slot;
            m_Parser.m_Program.pop_back();
            Instruction& load = m_Parser.m_Program.back();
            load.left = static_cast<uint32_t>(load.slot);
            load.slot = right;
        }
        Instruction& instruction = code == Code::Operator ? Emit(code) : m_Parser.m_Program.back();
        instruction.step = StepOf(code, op);
        instruction.detail = static_cast<uint8_t>(op);
        PopValues(1);
    }

    /// Whether the instruction that is so many from the end loads a value.
    bool LoadsLast(size_t distance) const {
        const auto& program = m_Parser.m_Program;
        return program.size() >= distance &&
               program[program.size() - distance].step == StepOf(Code::Load);
    }

    void EmitPrefix(const Entry& prefix) {
        if (static_cast<FormulaOp>(prefix.detail) == FormulaOp::Complement) {
            Emit(Code::Complement);
        } else {
            Emit(Code::Function).detail = static_cast<uint8_t>(FormulaFunction::Neg);
        }
    }

    /// All values since the call's begin are its arguments.
    void EmitCall(const Entry& call) {
        const size_t arguments = m_Depth - call.depth;
        if (!IsRound(call) || arguments == 1) {
            Emit(Code::Function).detail = call.detail;
        } else if (arguments == 2) {
            Emit(Code::RoundAt);
            PopValues(1);
        } else {
            EmitFailure(kInvalidCount);
        }
    }

    void EmitFailure(const char* text) { Emit(Code::Fail).text = text; }

    Instruction& Emit(Code code) {
        Instruction instruction{};
        instruction.step = StepOf(code);
        m_Parser.m_Program.push_back(instruction);
        return m_Parser.m_Program.back();
    }

    void Wait(Kind kind, uint8_t detail, int priority) {
        m_Waiting.push_back({kind, detail, priority, m_Depth});
    }

    static bool IsMark(const Entry& entry) {
        return entry.kind == Kind::Bracket || entry.kind == Kind::Function;
    }

    static bool IsRound(const Entry& entry) {
        return entry.kind == Kind::Function &&
               static_cast<FormulaFunction>(entry.detail) == FormulaFunction::Round;
    }

    void PushValue() {
        m_MaxDepth = std::max(m_MaxDepth, ++m_Depth);
        m_WantsOperand = false;
    }

    void PopValues(size_t count) { m_Depth = m_Depth > count ? m_Depth - count : 0; }

    MathParserT& m_Parser;
    FormulaTokens m_Tokens;
    bool m_UpperCase;
    /// The variables by name, where there are many.
    std::unordered_map<std::string, size_t> m_Places;
    bool m_WantsOperand = true;
    std::vector<Entry> m_Waiting;
    size_t m_Depth = 0;
    size_t m_MaxDepth = 0;
};

}  // namespace GenApi_3_0_ORVANE
