#pragma once

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Gives a node class the face of IBase: the access mode, with what a client
/// imposed on it. The cache holds the mode before that.
template <class Base>
class BaseT : public Base {
public:
    EAccessMode GetAccessMode() override {
        const AutoLock lock(Base::GetLock());
        return Base::GetAccessModeInside();
    }
};

}  // namespace GenApi_3_0_ORVANE
