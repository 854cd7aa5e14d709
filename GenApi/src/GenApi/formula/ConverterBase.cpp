// Nodes that show another node's value through a pair of formulas, one for each direction. Nobody
// checks that one is the inverse of the other.

#include "formula/ConverterBase.h"

namespace GenApi_3_0_ORVANE {

/// The two formulas are nodes of their own, which the parser makes and links here.
template <class Types>
void CConverterBase<Types>::SetProperty(const CProperty& property) {
    if (m_Display.Set(property)) {
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::pValue_ID:
            m_Value = LinkChild(property, ReadRole | WriteRole | ValueRole);
            break;
        case CPropertyID::pSwissKnifeTo_ID:
            m_pConvertTo = LinkKnife(property);
            break;
        case CPropertyID::pSwissKnifeFrom_ID:
            m_pConvertFrom = LinkKnife(property);
            break;
        case CPropertyID::pVariable_ID:
            // The inner knives read it; for the converter it is a node to watch.
            LinkChild(property, ReadRole);
            break;
        case CPropertyID::FormulaTo_ID:
        case CPropertyID::FormulaFrom_ID:
            break;  // the inner knives evaluate them
        case CPropertyID::Slope_ID:
            m_Slope = property.ESlope();
            break;
        case CPropertyID::IsLinear_ID:
            m_IsLinear = property.EYesNo();
            break;
        default:
            CNodeImpl::SetProperty(property);
            break;
    }
}

/// A description may give a node of its own the name that the parser's would have.
template <class Types>
CSwissKnifeBase<Types>* CConverterBase<Types>::LinkKnife(const CProperty& property) {
    auto* const knife =
        dynamic_cast<CSwissKnifeBase<Types>*>(LinkChild(property, ReadRole | ValueRole));
    if (knife == nullptr) {
        throw NodeFault("The '" + property.GetPropertyID().ToString() +
                        "' of a converter is no formula of its kind.");
    }
    return knife;
}

/// The formulas are between the node and its source in either direction. So what they read
/// decides like a node that is written along.
template <class Types>
ECachingMode CConverterBase<Types>::ComputeCachingMode() {
    ECachingMode mode = CNodeImpl::ComputeCachingMode();
    for (CSwissKnifeBase<Types>* const knife : {m_pConvertTo, m_pConvertFrom}) {
        if (knife != nullptr) {
            mode = Combine(mode, knife->InternalGetCachingMode());
        }
    }
    return mode;
}

/// The formulas turn the limits of the source into those of this node.
template <class Types>
ECachingMode CConverterBase<Types>::ComputeLimitsCachingMode() {
    const ECachingMode mode = InternalGetCachingMode();
    return m_Value.IsPointer() ? Combine(mode, m_Value.GetNode()->InternalGetLimitsCachingMode())
                               : mode;
}

/// A description that comes from a cache file isn't checked against the grammar again.
template <class Types>
void CConverterBase<Types>::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (m_pConvertTo == nullptr || m_pConvertFrom == nullptr) {
        throw NodeFault("A converter lacks one of its formulas.");
    }
}

/// A converter can't be used without its formulas, so their faults are its own, with their texts.
template <class Types>
const NodeFault* CConverterBase<Types>::FindFault() const {
    if (const NodeFault* const fault = CNodeImpl::FindFault()) {
        return fault;
    }
    const NodeFault* const fault = m_pConvertFrom->FindFault();
    return fault != nullptr ? fault : m_pConvertTo->FindFault();
}

/// The result isn't checked against the limits here: the frame does so for a verified read.
template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::InternalGetValue(bool verify,
                                                                                bool ignoreCache) {
    const Value_t source = m_Value.GetValue(verify, ignoreCache);
    return m_pConvertFrom->GetValueWithInput(source, verify, ignoreCache);
}

/// The formula's variables are read from their caches: the verification is about the value that
/// is written.
template <class Types>
void CConverterBase<Types>::InternalSetValue(Value_t value, bool verify) {
    m_Value.SetValue(m_pConvertTo->GetValueWithInput(value, false, false), verify);
}

/// The description may leave it to the engine to find out. That is done once: a camera's curve
/// doesn't turn around, while its limits may well change.
template <class Types>
ESlope CConverterBase<Types>::GetSlope() {
    if (m_Slope == Automatic) {
        const Value_t atMin = FromSource(m_Value.GetMin());
        const Value_t atMax = FromSource(m_Value.GetMax());
        m_Slope = atMax >= atMin ? Increasing : Decreasing;
    }
    return m_Slope;
}

/// With a falling slope the source's maximum is this node's minimum. Where the curve goes up and
/// down, neither end of the source is a limit.
template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::LimitAt(ESlope slopeOfMin) {
    const ESlope slope = GetSlope();
    if (slope == Varying) {
        return slopeOfMin == Increasing ? Types::kLowest : Types::kHighest;
    }
    return FromSource(slope == slopeOfMin ? m_Value.GetMin() : m_Value.GetMax());
}

/// How far one step of the source moves the result. Anywhere on a straight line will do; around
/// zero floats are most exact.
template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::InternalGetInc() {
    OV_ASSERT(m_Slope != Varying && "the guard in FloatT failed");
    OV_ASSERT(m_IsLinear == Yes && "the guard in FloatT failed");
    return Types::Distance(FromSource(m_Value.GetInc()), FromSource(0));
}

template <class Types>
ERepresentation CConverterBase<Types>::InternalGetRepresentation() const {
    return m_Display.representation == _UndefinedRepresentation ? m_Value.GetRepresentation()
                                                                : m_Display.representation;
}

template <class Types>
gcstring CConverterBase<Types>::InternalGetUnit() const {
    return m_Display.unit.empty() ? m_Value.GetUnit() : TextOf(m_Display.unit);
}

/// What the description leaves open comes from the source; integers have no notation.
template <class Types>
EDisplayNotation CConverterBase<Types>::InternalGetDisplayNotation() const {
    if (m_Display.notation != _UndefinedEDisplayNotation) {
        return m_Display.notation;
    }
    if constexpr (std::is_same_v<Types, SwissKnifeTypes>) {
        return m_Value.GetDisplayNotation();
    } else {
        return fnAutomatic;
    }
}

template <class Types>
int64_t CConverterBase<Types>::InternalGetDisplayPrecision() const {
    if (m_Display.precision >= 0) {
        return m_Display.precision;
    }
    if constexpr (std::is_same_v<Types, SwissKnifeTypes>) {
        return m_Value.GetDisplayPrecision();
    } else {
        return -1;
    }
}

template class CConverterBase<SwissKnifeTypes>;
template class CConverterBase<IntSwissKnifeTypes>;

}  // namespace GenApi_3_0_ORVANE
