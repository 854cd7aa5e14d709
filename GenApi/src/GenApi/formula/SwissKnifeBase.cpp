#include "formula/SwissKnifeBase.h"

#include <string_view>
#include <utility>

#include "GenApi/IDeviceInfo.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/Version.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// By direction: a formula that gives the node's value reads the source.
constexpr const char* kInputNames[] = {"TO", "FROM"};
constexpr std::string_view kEntry = "Entry.";

}  // namespace

bool DisplayProperties::Set(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Representation_ID:
            representation = property.ERepresentation();
            return true;
        case CPropertyID::Unit_ID:
            unit = property.String().c_str();
            return true;
        case CPropertyID::DisplayNotation_ID:
            notation = property.EDisplayNotation();
            return true;
        case CPropertyID::DisplayPrecision_ID:
            precision = property.Integer();
            return true;
        default:
            return false;
    }
}

template <class Types>
void CSwissKnifeBase<Types>::SetProperty(const CProperty& property) {
    if (m_Display.Set(property)) {
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::Formula_ID:
            m_Formula = property.String().c_str();
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
    variable.source = static_cast<IBase*>(variable.node);
    const size_t point = variable.name.find('.');
    if (point == std::string::npos) {
        return;
    }
    variable.extension = variable.name.substr(point + 1);
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

template <class Types>
void CSwissKnifeBase<Types>::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    std::string failure = CompileFormula();
    if (!failure.empty()) {
        throw NodeFault(std::move(failure), NodeFault::Kind::LogicalError);
    }
}

template <class Types>
bool CSwissKnifeBase<Types>::ReadsUpperCase() {
    Version_t version;
    dynamic_cast<IDeviceInfo&>(GetMap()).GetSchemaVersion(version);
    return version.Major == 1 && version.Minor == 0;
}

template <class Types>
void CSwissKnifeBase<Types>::CheckExpressions() {
    const std::string failure = CompileFormula();
    if (!failure.empty()) {
        LOGICAL_ERROR_EXCEPTION_NODE("%s", failure.c_str());
    }
}

template <class Types>
std::string CSwissKnifeBase<Types>::CompileFormula() {
    m_Parser.ClearVariables();
    for (const Variable& variable : m_Variables) {
        m_Parser.AddVariable(variable.name);
    }
    if (m_InputDirection != idNone) {
        m_Parser.AddVariable(kInputNames[m_InputDirection]);
    }
    const char* const error = m_Parser.Compile(m_Formula.c_str(), ReadsUpperCase());
    if (error == nullptr) {
        return {};
    }
    return std::string(m_Name.c_str()) + " : Failed to parse formula '" + m_Formula.c_str() +
           "' : error message is '" + error + "'";
}

template <class Types>
EAccessMode CSwissKnifeBase<Types>::InternalGetAccessMode() {
    return CachedAccessMode([this] { return Combine(ComputeAccessMode(nullptr), RO); });
}

template <class Types>
ECachingMode CSwissKnifeBase<Types>::ComputeCachingMode() {
    ECachingMode mode = CNodeImpl::ComputeCachingMode();
    for (const Variable& variable : m_Variables) {
        mode = Combine(mode, CachingModeOf(variable));
    }
    return mode;
}

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

/// Old descriptions may have formulas that lead back to themselves. Where only a
/// variable's access mode does so that ends by itself, elsewhere never.
template <class Types>
class CSwissKnifeBase<Types>::EvaluationScope {
public:
    explicit EvaluationScope(CSwissKnifeBase& knife) : m_Evaluations(knife.m_Evaluations) {
        constexpr int kMaxEvaluations = 8;
        if (m_Evaluations == kMaxEvaluations) {
            knife.ThrowFailedEvaluation("#Internal error!");
        }
        ++m_Evaluations;
    }
    ~EvaluationScope() { --m_Evaluations; }
    EvaluationScope(const EvaluationScope&) = delete;
    EvaluationScope& operator=(const EvaluationScope&) = delete;

private:
    int& m_Evaluations;
};

template <class Types>
void CSwissKnifeBase<Types>::ReadVariables(bool verify, bool ignoreCache) {
    const EvaluationScope scope(*this);
    for (size_t i = 0; i < m_Variables.size(); ++i) {
        m_Parser.GetVariableSlot(i) = ReadVariable(m_Variables[i], verify, ignoreCache);
    }
}

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

template <class Types>
void CSwissKnifeBase<Types>::ThrowFailedEvaluation(const char* text) {
    LOGICAL_ERROR_EXCEPTION_NODE("%s : Failed to evaluate formula '%s' : error message is '%s'",
                                 m_Name.c_str(), m_Formula.c_str(), text);
}

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
