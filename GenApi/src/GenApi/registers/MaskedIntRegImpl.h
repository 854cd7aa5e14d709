#pragma once

#include "registers/IntRegImpl.h"

namespace GenApi_3_0_ORVANE {

/// A field of bits in an integer register.
class CMaskedIntRegImpl : public CIntRegImpl {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;

protected:
    void InternalSetValue(int64_t value, bool verify);
    int64_t InternalGetValue(bool verify, bool ignoreCache);
    int64_t InternalGetMin() const { return m_FieldMasks.min; }
    int64_t InternalGetMax() const { return m_FieldMasks.max; }

private:
    void CheckBits();
    void CheckBitOrder(uint32_t bits);

    /// A bit that the description hasn't named. The name is part of the texts of failures.
    static constexpr uint32_t GC_UINT32_MAX = 0xFFFFFFFF;

    static uint32_t BitOf(const CProperty& property);

    uint32_t m_LSB = GC_UINT32_MAX;
    uint32_t m_MSB = GC_UINT32_MAX;
    uint64_t m_Mask = 0;
    Masks m_FieldMasks;
};

class CMaskedIntReg : public BaseT<ValueT<NodeT<IntegerT<RegisterT<CMaskedIntRegImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
