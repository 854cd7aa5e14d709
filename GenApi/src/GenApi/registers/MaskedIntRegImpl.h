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

    uint32_t m_LSB = 0xFFFFFFFF;
    uint32_t m_MSB = 0xFFFFFFFF;
    uint64_t m_Mask = 0;
    Masks m_FieldMasks;
};

class CMaskedIntReg : public BaseT<ValueT<NodeT<IntegerT<RegisterT<CMaskedIntRegImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
