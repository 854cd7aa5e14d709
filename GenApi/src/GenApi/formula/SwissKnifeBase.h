#pragma once
/// Nodes whose value is a formula over other nodes.

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/FloatT.h"
#include "GenApi/impl/IntegerT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"
#include "formula/IFormulaNode.h"
#include "formula/MathParserT.h"
#include "node/DisplayProperties.h"

namespace GenApi_3_0_ORVANE {

/// A formula with its variables. `Types` has the kind of numbers.
template <class Types>
class CSwissKnifeBase : public CNodeImpl, public IFormulaNode {
public:
    using Value_t = typename Types::Value;

    void SetProperty(const CProperty& property) override;
    /// A formula that doesn't compile is a fault of this node alone.
    void FinalConstruct() override;
    void CheckExpressions() override;
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;

    /// Evaluates the formula for a value of its free input.
    Value_t GetValueWithInput(Value_t input, bool verify, bool ignoreCache);

protected:
    ECachingMode ComputeCachingMode() override;
    Value_t InternalGetValue(bool verify, bool ignoreCache) {
        return GetValueWithInput(0, verify, ignoreCache);
    }
    void InternalSetValue(Value_t value, bool verify);
    Value_t InternalGetMin() const { return Types::kLowest; }
    Value_t InternalGetMax() const { return Types::kHighest; }
    ERepresentation InternalGetRepresentation() const;
    gcstring InternalGetUnit() const { return TextOf(m_Display.unit); }
    EDisplayNotation InternalGetDisplayNotation() const;
    int64_t InternalGetDisplayPrecision() const { return m_Display.precision; }

private:
    /// Which property of its node a variable is.
    enum class Aspect { Value, Min, Max, Inc, AccessMode, Visibility, CachingMode, Entry, Invalid };
    struct Variable {
        std::string name;
        Aspect aspect = Aspect::Value;
        /// The part of the name after the point.
        std::string extension;
        typename Types::PolyRef source;
        INodePrivate* node = nullptr;
    };

    class EvaluationScope;

    void AddVariable(const CProperty& property);
    /// Returns the text of a failure; empty if there is none.
    std::string CompileFormula();
    void ReadVariables(bool verify, bool ignoreCache);
    Value_t ReadVariable(const Variable& variable, bool verify, bool ignoreCache);
    Value_t ReadEntry(const Variable& variable);
    static ECachingMode CachingModeOf(const Variable& variable);
    bool ReadsUpperCase();
    [[noreturn]] void ThrowFailedEvaluation(const char* text);

    std::string_view m_Formula;
    EInputDirection m_InputDirection = idNone;
    std::vector<Variable> m_Variables;
    typename Types::Parser m_Parser;
    DisplayProperties m_Display;
    /// How many evaluations of this node are under way within one another.
    int m_Evaluations = 0;
};

struct SwissKnifeTypes {
    using Value = double;
    using PolyRef = CFloatPolyRef;
    using Parser = MathParser;
    static constexpr Value kLowest = std::numeric_limits<double>::lowest();
    static constexpr Value kHighest = std::numeric_limits<double>::max();
    static constexpr const char* kReadOnly =
        "SwissKnife : %s SetValue failed. SwissKnife is read only";
    static constexpr const char* kNoEnumeration = "Variable does not point to enumeration %s";
    static double FromNumericValue(double value) { return value; }
    static double Distance(double a, double b) { return std::abs(a - b); }
};

struct IntSwissKnifeTypes {
    using Value = int64_t;
    using PolyRef = CIntegerPolyRef;
    using Parser = Int64MathParser;
    static constexpr Value kLowest = std::numeric_limits<int64_t>::min();
    static constexpr Value kHighest = std::numeric_limits<int64_t>::max();
    static constexpr const char* kReadOnly =
        "IntSwissKnife : %s SetValue failed. IntSwissKnife is read only.";
    static constexpr const char* kNoEnumeration = "Variable '%s' does not point to enumeration";
    static int64_t FromNumericValue(double value) {
        return RoundToInt64(std::trunc(value), "IntSwissKnife");
    }
    /// Wraps as formulas do.
    static int64_t Distance(int64_t a, int64_t b) {
        const auto [low, high] = std::minmax(a, b);
        return static_cast<int64_t>(static_cast<uint64_t>(high) - static_cast<uint64_t>(low));
    }
};

extern template class CSwissKnifeBase<SwissKnifeTypes>;
extern template class CSwissKnifeBase<IntSwissKnifeTypes>;

class CSwissKnifeImpl : public CSwissKnifeBase<SwissKnifeTypes> {};

class CIntSwissKnifeImpl : public CSwissKnifeBase<IntSwissKnifeTypes> {
protected:
    int64_t InternalGetInc() const { return 1; }
};

class CSwissKnife : public BaseT<ValueT<NodeT<FloatT<CSwissKnifeImpl>>>> {
public:
    using FloatT::operator=;
};

class CIntSwissKnife : public BaseT<ValueT<NodeT<IntegerT<CIntSwissKnifeImpl>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
