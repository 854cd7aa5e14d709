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
        if (Base::m_AccessModeCache != _UndefinedAccesMode &&
            Base::m_AccessModeCache != _CycleDetectAccesMode) {
            const EAccessMode mode = Combine(Base::m_AccessModeCache, Base::m_ImposedAccessMode);
            GCLOGINFO(Base::m_pAccessLog, "GetAccessMode = '%s' (from cache)",
                      EAccessModeClass::ToString(mode));
            return mode;
        }
        const EntryMethodFinalizer entry(*this, meGetAccessMode);
        GCLOGINFOPUSH(Base::m_pAccessLog, "GetAccessMode...");
        const EAccessMode mode = Combine(this->InternalGetAccessMode(), Base::m_ImposedAccessMode);
        GCLOGINFOPOP(Base::m_pAccessLog, "...GetAccessMode = '%s' ",
                     EAccessModeClass::ToString(mode));
        return mode;
    }
};

}  // namespace GenApi_3_0_ORVANE
