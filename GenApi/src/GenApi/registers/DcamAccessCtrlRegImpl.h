#pragma once

#include "GenApi/impl/UnlimitedIntegerT.h"
#include "registers/RegisterImpl.h"

namespace GenApi_3_0_ORVANE {

/// The register that unlocks a camera's advanced features: a feature's identifier and a time are
/// written, and the answer says whether access is granted.
class CDcamAccessCtrlRegImpl : public UnlimitedIntegerT<CRegisterImpl> {
public:
    void SetProperty(const CProperty& property) override;

protected:
    // These two hide those of registers: every read asks the camera first, and
    // nothing else may be written.
    void InternalGet(uint8_t* buffer, int64_t length, bool verify, bool ignoreCache);
    void InternalSet(const uint8_t* buffer, int64_t length, bool verify);

    void InternalSetValue(int64_t value, bool verify);
    int64_t InternalGetValue(bool verify, bool ignoreCache);

private:
    void CheckLength();

    int64_t m_FeatureID = 0;
    int64_t m_Timeout = 0;
};

class CDcamAccessCtrlReg
    : public BaseT<ValueT<RegisterT<NodeT<IntegerT<CDcamAccessCtrlRegImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
