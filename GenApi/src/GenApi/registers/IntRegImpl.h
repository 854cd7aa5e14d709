#pragma once

#include "GenApi/impl/IntegerT.h"
#include "node/DisplayProperties.h"
#include "registers/RegisterImpl.h"

namespace GenApi_3_0_ORVANE {

/// An integer of 1 to 8 bytes in a register.
class CIntRegImpl : public CRegisterImpl, virtual public IInteger {
public:
    void SetProperty(const CProperty& property) override;

protected:
    void InternalSetValue(int64_t value, bool verify);
    int64_t InternalGetValue(bool verify, bool ignoreCache);
    int64_t InternalGetMin();
    int64_t InternalGetMax();
    int64_t InternalGetInc() { return 1; }
    int64_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return m_Display.representation; }
    gcstring InternalGetUnit() const { return TextOf(m_Display.unit); }

    /// What a field of some bits can hold.
    struct Masks {
        uint64_t sign = 0;
        uint64_t extension = 0;
        int64_t min = 0;
        int64_t max = 0;
    };
    static Masks MasksOf(unsigned bits, ESign sign);
    /// Extends the sign of a raw value where the field is signed.
    static int64_t SignExtended(uint64_t raw, const Masks& masks, ESign sign);

    uint64_t ReadRaw(bool verify, bool ignoreCache);
    void WriteRaw(uint64_t raw, bool verify);
    /// The register's length, which must be 1 to 8.
    int64_t CheckedLength();

    ESign m_Sign = Unsigned;
    EEndianess m_Endianess = LittleEndian;

private:
    const Masks& GetMasks();

    DisplayProperties m_Display{.representation = PureNumber};
    Masks m_Masks;
    bool m_AreMasksKnown = false;
};

class CIntReg : public BaseT<ValueT<IntegerT<RegisterT<NodeT<CIntRegImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
