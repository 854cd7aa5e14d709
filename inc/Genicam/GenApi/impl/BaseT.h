#pragma once

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Adds IBase to a node class: the access mode, including what a client imposed on it. The cache
/// of the access mode holds it without that.
template <class Base>
class BaseT : public Base {
public:
    EAccessMode GetAccessMode() override {
        const AutoLock lock(Base::GetLock());
        return Base::GetAccessModeInside();
    }
};

}  // namespace GenApi_3_0_ORVANE
