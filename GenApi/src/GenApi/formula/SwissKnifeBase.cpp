// Nodes whose value is a formula over other nodes. The formula is compiled once, when the map is
// made; each read fetches the variables and runs the program.

#include "formula/SwissKnifeBase.h"

#include <string_view>
#include <utility>

#include "GenApi/IDeviceInfo.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/Version.h"
#include "formula/FormulaErrors.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// By direction. A converter's formula "from" the device turns the value of its source, which it
/// calls TO, into the converter's own; the other one turns FROM into the source's.
constexpr const char* kInputNames[] = {"TO", "FROM"};
constexpr std::string_view kEntry = "Entry.";

}  // namespace

/// What shows the value is the same for all kinds of formulas, so it is taken first.
template <class Types>
void CSwissKnifeBase<Types>::SetProperty(const CProperty& property) {
    if (m_Display.Set(property)) {
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::Formula_ID:
            m_Formula = property.String();
            break;
        case CPropertyID::pVariable_ID:
            AddVariable(property);
            break;
        case CPropertyID::InputDirection_ID:
            m_InputDirection = property.EInputDirection();
            break;
        default:
            CNodeImpl::SetProperty(property);
            break;
    }
}

/// The part of a variable's name after the first point selects what of the node is meant. It
/// stays part of the name in the formula, so that "X" and "X.Max" are two variables.
template <class Types>
void CSwissKnifeBase<Types>::AddVariable(const CProperty& property) {
    static constexpr std::pair<std::string_view, Aspect> kAspects[] = {
        {"Value", Aspect::Value},
        {"Min", Aspect::Min},
        {"Max", Aspect::Max},
        {"Inc", Aspect::Inc},
        {"AccessMode", Aspect::AccessMode},
        {"Visibility", Aspect::Visibility},
        {"CachingMode", Aspect::CachingMode},
    };
    Variable& variable = m_Variables.emplace_back();
    OV_ASSERT(property.GetAttribute() != nullptr);
    variable.name = property.GetAttribute()->String();
    variable.node = LinkChild(property, ReadRole | ValueRole);
    variable.source = variable.node;
    const size_t point = variable.name.find('.');
    if (point == std::string::npos) {
        return;
    }
    variable.extension = variable.name.substr(point + 1);
    // An unknown extension is a fault only once the formula is evaluated: real descriptions have
    // formulas that nothing uses.
    variable.aspect = Aspect::Invalid;
    if (std::string_view(variable.extension).starts_with(kEntry)) {
        variable.aspect = Aspect::Entry;
        return;
    }
    for (const auto& [text, aspect] : kAspects) {
        if (variable.extension == text) {
            variable.aspect = aspect;
        }
    }
}

/// A formula that doesn't compile is a fault of this node alone. It is raised as a
/// LogicalErrorException when the node is used.
template <class Types>
void CSwissKnifeBase<Types>::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    std::string failure = CompileFormula();
    if (!failure.empty()) {
        throw NodeFault(std::move(failure), NodeFault::Kind::LogicalError);
    }
}

/// Descriptions of the first schema version mix upper and lower case in the names of variables.
template <class Types>
bool CSwissKnifeBase<Types>::ReadsUpperCase() {
    Version_t version;
    dynamic_cast<IDeviceInfo&>(GetMap()).GetSchemaVersion(version);
    return version.Major == 1 && version.Minor == 0;
}

/// Compiles again, for a client that wants all failures in one list.
template <class Types>
void CSwissKnifeBase<Types>::CheckExpressions() {
    const std::string failure = CompileFormula();
    if (!failure.empty()) {
        LOGICAL_ERROR_EXCEPTION_NODE("%s", failure.c_str());
    }
}

/// Variables get their slots in the order of their list, the free input the one after them.
/// @return the text of a failure; empty if there is none
template <class Types>
std::string CSwissKnifeBase<Types>::CompileFormula() {
    m_Parser.ClearVariables();
    for (const Variable& variable : m_Variables) {
        m_Parser.AddVariable(variable.name);
    }
    if (m_InputDirection != idNone) {
        m_Parser.AddVariable(kInputNames[m_InputDirection]);
    }
    const char* const error = m_Parser.Compile(m_Formula, ReadsUpperCase());
    if (error == nullptr) {
        return {};
    }
    return std::string(m_Name.c_str()) + " : Failed to parse formula '" + std::string(m_Formula) +
           "' : error message is '" + error + "'";
}

/// There is no way back from a result to the variables.
template <class Types>
EAccessMode CSwissKnifeBase<Types>::InternalGetAccessMode() {
    return CachedAccessMode([this] { return Combine(ComputeAccessMode(nullptr), RO); });
}

/// The result may be kept as long as all variables may.
template <class Types>
ECachingMode CSwissKnifeBase<Types>::ComputeCachingMode() {
    ECachingMode mode = CNodeImpl::ComputeCachingMode();
    for (const Variable& variable : m_Variables) {
        mode = Combine(mode, CachingModeOf(variable));
    }
    return mode;
}

/// A variable may be something else of a node than its value, which may come from other
/// registers.
template <class Types>
ECachingMode CSwissKnifeBase<Types>::CachingModeOf(const Variable& variable) {
    switch (variable.aspect) {
        case Aspect::Min:
        case Aspect::Max:
        case Aspect::Inc:
            return variable.node->InternalGetLimitsCachingMode();
        case Aspect::AccessMode:
            if (variable.node->InternalIsAccessModeCacheable() == No) {
                return NoCache;
            }
            [[fallthrough]];
        default:
            return variable.source.GetCachingMode();
    }
}

/// Old descriptions may have formulas that lead back to themselves. Where only a variable's
/// access mode does so, that ends by itself after a few rounds; elsewhere it never ends.
template <class Types>
class CSwissKnifeBase<Types>::EvaluationScope {
public:
    explicit EvaluationScope(CSwissKnifeBase& knife) : m_Evaluations(knife.m_Evaluations) {
        constexpr int kMaxEvaluations = 8;
        if (m_Evaluations == kMaxEvaluations) {
            knife.ThrowFailedEvaluation(kInternal);
        }
        ++m_Evaluations;
    }
    ~EvaluationScope() { --m_Evaluations; }
    EvaluationScope(const EvaluationScope&) = delete;
    EvaluationScope& operator=(const EvaluationScope&) = delete;

private:
    int& m_Evaluations;
};

/// All of them, also those that the taken branch of a formula doesn't use: a variable that can't
/// be read is a failure that must not depend on the values of others.
template <class Types>
void CSwissKnifeBase<Types>::ReadVariables(bool verify, bool ignoreCache) {
    const EvaluationScope scope(*this);
    for (size_t i = 0; i < m_Variables.size(); ++i) {
        m_Parser.GetVariableSlot(i) = ReadVariable(m_Variables[i], verify, ignoreCache);
    }
}

/// Converters call this directly, without the frames of a read: the converter's own frame is
/// around it, and the result of one input is no value to keep.
template <class Types>
typename CSwissKnifeBase<Types>::Value_t CSwissKnifeBase<Types>::GetValueWithInput(
    Value_t input, bool verify, bool ignoreCache) {
    const AutoLock lock(GetLock());
    RequireSound();
    ReadVariables(verify, ignoreCache);
    if (m_InputDirection != idNone) {
        m_Parser.GetVariableSlot(m_Variables.size()) = input;
    }
    Value_t result{};
    if (const char* const error = m_Parser.Evaluate(result)) {
        ThrowFailedEvaluation(error);
    }
    return result;
}

/// The parser only says what went wrong; users need to know in which formula.
template <class Types>
void CSwissKnifeBase<Types>::ThrowFailedEvaluation(const char* text) {
    LOGICAL_ERROR_EXCEPTION_NODE("%s : Failed to evaluate formula '%s' : error message is '%s'",
                                 m_Name.c_str(), std::string(m_Formula).c_str(), text);
}

/// Access modes and visibilities are used in formulas by their numbers.
template <class Types>
typename CSwissKnifeBase<Types>::Value_t CSwissKnifeBase<Types>::ReadVariable(
    const Variable& variable, bool verify, bool ignoreCache) {
    switch (variable.aspect) {
        case Aspect::Value:
            return variable.source.GetValue(verify, ignoreCache);
        case Aspect::Min:
            return variable.source.GetMin();
        case Aspect::Max:
            return variable.source.GetMax();
        case Aspect::Inc:
            return variable.source.GetInc();
        case Aspect::AccessMode:
            return static_cast<Value_t>(variable.node->GetAccessMode());
        case Aspect::Visibility:
            return static_cast<Value_t>(variable.node->GetVisibility());
        case Aspect::CachingMode:
            return static_cast<Value_t>(variable.node->GetCachingMode());
        case Aspect::Entry:
            return ReadEntry(variable);
        case Aspect::Invalid:
            break;
    }
    RUNTIME_EXCEPTION_NODE("Invalid Extension %s", variable.extension.c_str());
}

/// The number of an entry that need not be chosen: formulas compare the enumeration's value with
/// it.
template <class Types>
typename CSwissKnifeBase<Types>::Value_t CSwissKnifeBase<Types>::ReadEntry(
    const Variable& variable) {
    auto* const enumeration = dynamic_cast<IEnumeration*>(variable.node);
    if (enumeration == nullptr) {
        RUNTIME_EXCEPTION_NODE(Types::kNoEnumeration, variable.name.c_str());
    }
    const std::string symbolic = variable.extension.substr(kEntry.size());
    IEnumEntry* const entry = enumeration->GetEntryByName(symbolic.c_str());
    if (entry == nullptr) {
        RUNTIME_EXCEPTION_NODE("Variable '%s' does not point to EnumEntry '%s'",
                               variable.name.c_str(), symbolic.c_str());
    }
    return Types::FromNumericValue(entry->GetNumericValue());
}

template <class Types>
void CSwissKnifeBase<Types>::InternalSetValue(Value_t /*value*/, bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE(Types::kReadOnly, m_Name.c_str());
}

/// What the description leaves open has a plain default: variables may be displayed in any number
/// of ways.
template <class Types>
ERepresentation CSwissKnifeBase<Types>::InternalGetRepresentation() const {
    return m_Display.representation == _UndefinedRepresentation ? PureNumber
                                                                : m_Display.representation;
}

template <class Types>
EDisplayNotation CSwissKnifeBase<Types>::InternalGetDisplayNotation() const {
    return m_Display.notation == _UndefinedEDisplayNotation ? fnAutomatic : m_Display.notation;
}

template class CSwissKnifeBase<SwissKnifeTypes>;
template class CSwissKnifeBase<IntSwissKnifeTypes>;

}  // namespace GenApi_3_0_ORVANE
