#include "formula/MathParserT.h"

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <unordered_map>

#include "formula/FormulaTokens.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr const char* kBrackets = "#Brackets do not match!";
constexpr const char* kInvalid = "#Invalid formula";
constexpr const char* kExtraOperation = "#Extra operation!";
constexpr const char* kLogical = "#Logical expression error!";
constexpr const char* kInvalidCount = "#Invalid parameters count for function call!";
constexpr size_t kReserved = 64;
/// As many variables are found faster one after the other than by a table.
constexpr size_t kFewVariables = 16;

struct FunctionRow {
    std::string_view name;
    FormulaFunction function;
};

constexpr std::array<FunctionRow, 18> kFunctions{{
    {"ATAN", FormulaFunction::Atan},
    {"COS", FormulaFunction::Cos},
    {"SIN", FormulaFunction::Sin},
    {"TAN", FormulaFunction::Tan},
    {"ASIN", FormulaFunction::Asin},
    {"ACOS", FormulaFunction::Acos},
    {"ABS", FormulaFunction::Abs},
    {"EXP", FormulaFunction::Exp},
    {"SQRT", FormulaFunction::Sqrt},
    {"LN", FormulaFunction::Ln},
    {"LG", FormulaFunction::Lg},
    {"FLOOR", FormulaFunction::Floor},
    {"CEIL", FormulaFunction::Ceil},
    {"FRAC", FormulaFunction::Frac},
    {"TRUNC", FormulaFunction::Trunc},
    {"ROUND", FormulaFunction::Round},
    {"SGN", FormulaFunction::Sgn},
    {"NEG", FormulaFunction::Neg},
}};

std::optional<FormulaFunction> FindFunction(std::string_view upperName, bool hasAll) {
    for (const FunctionRow& row : kFunctions) {
        const bool isKnown = hasAll || row.function >= FormulaFunction::Sgn;
        if (isKnown && row.name == upperName) {
            return row.function;
        }
    }
    return std::nullopt;
}

/// Of the letters that names are made of, whatever the user's locale says.
char ToUpper(char character) {
    constexpr char kDistance = 'a' - 'A';
    const bool isLower = character >= 'a' && character <= 'z';
    return isLower ? static_cast<char>(character - kDistance) : character;
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char character) { return ToUpper(character); });
    return upper;
}

bool IsSameInUpperCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return ToUpper(a) == ToUpper(b); });
}

}  // namespace

/// Turns a formula into a program in one pass. Operators wait on a stack until
/// one that binds no tighter comes, so equal ones associate to the left.
template <class Traits>
class MathParserT<Traits>::Compiler {
public:
    Compiler(MathParserT& parser, std::string_view formula, bool upperCase)
        : m_Parser(parser), m_Tokens(formula), m_UpperCase(upperCase) {
        m_Waiting.reserve(kReserved);
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
    static constexpr int kPrefixPriority = 6;

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

    /// Only the function of several arguments may begin with a text. A number
    /// that marks it takes its place.
    const char* TakeText() {
        if constexpr (Traits::HasFunctions) {
            if (!m_Waiting.empty() && IsRound(m_Waiting.back()) &&
                m_Waiting.back().depth == m_Depth) {
                EmitNumber(std::bit_cast<double>(uint64_t{0xFFEDF8D55649E2BB}));
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
        if (Traits::HasFunctions && (upper == "E" || upper == "PI")) {
            EmitNumber(static_cast<Value>(std::bit_cast<double>(
                upper == "E" ? uint64_t{0x4005BF0A8B145769} : uint64_t{0x400921FB54442D18})));
            return nullptr;
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

    /// A selection wants its condition directly below.
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
            // An operator stands without its operand.
            EmitFailure(kExtraOperation);
        }
        ApplyAll();
        if (m_Depth != 1) {
            EmitFailure(kInvalid);
        }
        // One place more, for the top of an empty stack to stand on.
        m_Parser.m_Stack.assign(std::max(m_MaxDepth, kReserved) + 1, Value());
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

    /// Where the right side was just loaded, the operator takes it from its slot.
    void EmitOperator(FormulaOp op) {
        auto& program = m_Parser.m_Program;
        const bool isLoaded = !program.empty() && program.back().code == Code::Load;
        Instruction& instruction = isLoaded ? program.back() : Emit(Code::Operator);
        instruction.code = CodeOf(op, isLoaded);
        instruction.detail = static_cast<uint8_t>(op);
        PopValues(1);
    }

    static Code CodeOf(FormulaOp op, bool fromSlot) {
        switch (op) {
            case FormulaOp::Add:
                return fromSlot ? Code::AddSlot : Code::Add;
            case FormulaOp::Subtract:
                return fromSlot ? Code::SubtractSlot : Code::Subtract;
            case FormulaOp::Multiply:
                return fromSlot ? Code::MultiplySlot : Code::Multiply;
            default:
                return fromSlot ? Code::OperatorSlot : Code::Operator;
        }
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
        instruction.code = code;
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
