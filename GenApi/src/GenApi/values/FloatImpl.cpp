// What floats have beyond NumericNodeImpl.cpp: how they are displayed. What the description leaves
// open comes from the node that holds the value.

#include "values/FloatImpl.h"

namespace GenApi_3_0_ORVANE {

EDisplayNotation CFloatImpl::InternalGetDisplayNotation() {
    return m_Display.notation != _UndefinedEDisplayNotation ? m_Display.notation
                                                            : GetSource().GetDisplayNotation();
}

int64_t CFloatImpl::InternalGetDisplayPrecision() {
    return m_Display.precision >= 0 ? m_Display.precision : GetSource().GetDisplayPrecision();
}

}  // namespace GenApi_3_0_ORVANE
