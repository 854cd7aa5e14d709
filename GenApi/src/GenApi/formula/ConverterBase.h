#pragma once
/// Nodes that show another node's value through a pair of formulas.

#include "formula/SwissKnifeBase.h"

namespace GenApi_3_0_ORVANE {

/// A value with a formula for each direction. `Types` has the kind of numbers. Whether one
/// formula is the inverse of the other isn't checked.
template <class Types>
class CConverterBase : public CNodeImpl {
public:
    using Value_t = typename Types::Value;

    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    /// The formulas are a part of the converter.
    const NodeFault* FindFault() const override;
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override {
        return CNodeImpl::InternalGetAccessMode(m_Value.GetNode());
    }

protected:
    ECachingMode ComputeCachingMode() override;
    ECachingMode ComputeLimitsCachingMode() override;
    Value_t InternalGetValue(bool verify, bool ignoreCache);
    void InternalSetValue(Value_t value, bool verify);
    Value_t InternalGetMin() { return LimitAt(Increasing); }
    Value_t InternalGetMax() { return LimitAt(Decreasing); }
    bool InternalHasInc() const { return m_Slope != Varying && m_IsLinear == Yes; }
    Value_t InternalGetInc();
    ERepresentation InternalGetRepresentation() const;
    gcstring InternalGetUnit() const;
    EDisplayNotation InternalGetDisplayNotation() const;
    int64_t InternalGetDisplayPrecision() const;

private:
    CSwissKnifeBase<Types>* LinkKnife(const CProperty& property);
    ESlope GetSlope();
    /// The limit that is the source's minimum under that slope.
    Value_t LimitAt(ESlope slopeOfMin);
    Value_t FromSource(Value_t value) {
        return m_pConvertFrom->GetValueWithInput(value, false, false);
    }

    typename Types::PolyRef m_Value;
    CSwissKnifeBase<Types>* m_pConvertTo = nullptr;
    CSwissKnifeBase<Types>* m_pConvertFrom = nullptr;
    ESlope m_Slope = Automatic;
    EYesNo m_IsLinear = No;
    DisplayProperties m_Display;
};

extern template class CConverterBase<SwissKnifeTypes>;
extern template class CConverterBase<IntSwissKnifeTypes>;

class CConverterImpl : public CConverterBase<SwissKnifeTypes> {};
class CIntConverterImpl : public CConverterBase<IntSwissKnifeTypes> {
protected:
    /// An integer always has an increment, be it 1.
    int64_t InternalGetInc() { return InternalHasInc() ? CConverterBase::InternalGetInc() : 1; }
};

class CConverter : public BaseT<ValueT<NodeT<FloatT<CConverterImpl>>>> {
public:
    using FloatT::operator=;
};

class CIntConverter : public BaseT<ValueT<NodeT<IntegerT<CIntConverterImpl>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
