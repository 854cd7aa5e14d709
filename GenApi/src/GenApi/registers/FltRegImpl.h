#pragma once

#include "GenApi/impl/FloatT.h"
#include "node/DisplayProperties.h"
#include "registers/RegisterImpl.h"

namespace GenApi_3_0_ORVANE {

/// A float of 4 or 8 bytes in a register.
class CFltRegImpl : public CRegisterImpl, virtual public IFloat {
public:
    CFltRegImpl() { m_CachingMode = WriteAround; }

    void SetProperty(const CProperty& property) override;

protected:
    void InternalSetValue(double value, bool verify);
    double InternalGetValue(bool verify, bool ignoreCache);
    double InternalGetMin() { return -InternalGetMax(); }
    double InternalGetMax();
    bool InternalHasInc() const { return false; }
    double InternalGetInc() const { return 0; }
    double_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return m_Display.representation; }
    gcstring InternalGetUnit() const { return TextOf(m_Display.unit); }
    EDisplayNotation InternalGetDisplayNotation() const { return m_Display.notation; }
    int64_t InternalGetDisplayPrecision() const { return m_Display.precision; }

private:
    EEndianess m_Endianess = LittleEndian;
    DisplayProperties m_Display{.notation = fnAutomatic};
};

class CFltReg : public BaseT<ValueT<FloatT<RegisterT<NodeT<CFltRegImpl>>>>> {
public:
    using FloatT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
