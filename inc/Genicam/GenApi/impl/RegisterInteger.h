#pragma once

#include <limits>

#include "GenApi/impl/IntegerT.h"
#include "GenApi/impl/Register.h"

namespace GenApi_3_0_ORVANE {

/// What integers have in common that a camera computes behind a register.
class CRegisterIntegerImpl : public CRegisterImpl {
protected:
    int64_t InternalGetMin() { return std::numeric_limits<int64_t>::min(); }
    int64_t InternalGetMax() { return std::numeric_limits<int64_t>::max(); }
    int64_t InternalGetInc() { return 1; }
    int64_autovector_t InternalGetListOfValidValues() { return {}; }
    ERepresentation InternalGetRepresentation() const { return HexNumber; }
    gcstring InternalGetUnit() const { return {}; }
};

}  // namespace GenApi_3_0_ORVANE
