#include "GenApi/impl/Converter.h"

#include "GenApi/impl/PropertyField.h"

namespace GenApi_3_0_ORVANE {

template <class Types>
template <class Self, class Use>
bool CConverterBase<Types>::WithField(Self& self, CPropertyID id, const Use& use) {
    return WithMember(self, id, use,
                      std::pair(CPropertyID::FormulaTo_ID, &CConverterBase::m_FormulaTo),
                      std::pair(CPropertyID::FormulaFrom_ID, &CConverterBase::m_FormulaFrom),
                      std::pair(CPropertyID::Slope_ID, &CConverterBase::m_Slope),
                      std::pair(CPropertyID::IsLinear_ID, &CConverterBase::m_IsLinear));
}

template <class Types>
void CConverterBase<Types>::SetProperty(const CProperty& property) {
    const auto take = [&property](auto& field) { TakeProperty(property, field); };
    if (m_Display.Set(property) || WithField(*this, property.GetPropertyID(), take)) {
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::pValue_ID:
            m_Value = static_cast<IBase*>(LinkChild(property, ReadRole | WriteRole | ValueRole));
            break;
        case CPropertyID::pSwissKnifeTo_ID:
            m_pConvertTo = dynamic_cast<CSwissKnifeBase<Types>*>(LinkChild(property, ReadRole));
            break;
        case CPropertyID::pSwissKnifeFrom_ID:
            m_pConvertFrom = dynamic_cast<CSwissKnifeBase<Types>*>(LinkChild(property, ReadRole));
            break;
        case CPropertyID::pVariable_ID:
            OV_ASSERT(property.GetAttribute() != nullptr);
            m_Variables.push_back(
                {property.GetAttribute()->String(), LinkChild(property, ReadRole)});
            break;
        default:
            CNodeImpl::SetProperty(property);
            break;
    }
}

template <class Types>
bool CConverterBase<Types>::GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                                        CNodeData::PropertyVector_t& properties) {
    if (!HoldsProperty(id)) {
        return false;
    }
    const auto give = [&](const auto& field) {
        properties.push_back(MakeProperty(nodeDataMap, id, field));
    };
    switch (id) {
        case CPropertyID::pValue_ID:
            properties.push_back(MakeLink(nodeDataMap, id, *m_Value.GetNode()));
            return true;
        case CPropertyID::pSwissKnifeTo_ID:
            properties.push_back(MakeLink(nodeDataMap, id, *m_pConvertTo));
            return true;
        case CPropertyID::pSwissKnifeFrom_ID:
            properties.push_back(MakeLink(nodeDataMap, id, *m_pConvertFrom));
            return true;
        case CPropertyID::pVariable_ID:
            for (const Variable& variable : m_Variables) {
                properties.push_back(MakeVariable(nodeDataMap, variable.name, *variable.node));
            }
            return true;
        default:
            return m_Display.Get(nodeDataMap, id, properties) || WithField(*this, id, give) ||
                   CNodeImpl::GetProperty(nodeDataMap, id, properties);
    }
}

template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::InternalGetValue(bool verify,
                                                                                bool ignoreCache) {
    const Value_t source = m_Value.GetValue(verify, ignoreCache);
    return m_pConvertFrom->GetValueWithInput(source, verify, ignoreCache);
}

template <class Types>
void CConverterBase<Types>::InternalSetValue(Value_t value, bool verify) {
    m_Value.SetValue(m_pConvertTo->GetValueWithInput(value, false, false), verify);
}

template <class Types>
ESlope CConverterBase<Types>::GetSlope() {
    if (m_Slope == Automatic) {
        const Value_t atMin = FromSource(m_Value.GetMin());
        const Value_t atMax = FromSource(m_Value.GetMax());
        m_Slope = atMax >= atMin ? Increasing : Decreasing;
    }
    return m_Slope;
}

template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::LimitAt(ESlope slopeOfMin) {
    const ESlope slope = GetSlope();
    if (slope == Varying) {
        return slopeOfMin == Increasing ? Types::kLowest : Types::kHighest;
    }
    return FromSource(slope == slopeOfMin ? m_Value.GetMin() : m_Value.GetMax());
}

template <class Types>
typename CConverterBase<Types>::Value_t CConverterBase<Types>::InternalGetInc() {
    OV_ASSERT(m_Slope != Varying && "the guard in FloatT failed");
    OV_ASSERT(m_IsLinear == Yes && "the guard in FloatT failed");
    const Value_t inc = FromSource(m_Value.GetInc());
    return GetSlope() == Decreasing ? -inc : inc;
}

template <class Types>
ERepresentation CConverterBase<Types>::InternalGetRepresentation() const {
    return m_Display.representation == _UndefinedRepresentation ? m_Value.GetRepresentation()
                                                                : m_Display.representation;
}

template <class Types>
gcstring CConverterBase<Types>::InternalGetUnit() const {
    return m_Display.unit.empty() ? m_Value.GetUnit() : m_Display.unit;
}

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
