#pragma once

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Adds IValue to a node class: the value as text.
template <class Base>
class ValueT : public Base {
public:
    INode* GetNode() override { return this; }
    IValue* AsValue() override { return this; }

    gcstring ToString(bool verify = false, bool ignoreCache = false) override {
        return RunRead(*this, meToString, ignoreCache, [&] {
            CLogIndent indent;
            GCLOGINFOPUSH(indent, Base::m_pValueLog, "ToString...");
            if (!IsReadable(this->GetAccessModeInside())) {
                Base::RaiseAnyFault();
                ACCESS_EXCEPTION_NODE("Node is not readable");
            }
            gcstring value = this->InternalToString(verify, ignoreCache);
            if (verify) {
                Base::InternalCheckError();
            }
            GCLOGINFOPOP(indent, Base::m_pValueLog, "...ToString = %s", value.c_str());
            return value;
        });
    }

    void FromString(const gcstring& value, bool verify = true) override {
        CLogIndent indent;
        RunWrite(
            *this, meFromString,
            [&] {
                if (verify && !IsWritable(this->GetAccessModeInside())) {
                    Base::RaiseAnyFault();
                    ACCESS_EXCEPTION_NODE("Node is not writable");
                }
                GCLOGINFOPUSH(indent, Base::m_pValueLog, "FromString = '%s' ", value.c_str());
            },
            [&] {
                this->InternalFromString(value, verify);
                if (verify) {
                    Base::InternalCheckError();
                }
            },
            [&] { GCLOGINFOPOP(indent, Base::m_pValueLog, "...FromString"); });
    }

    bool IsValueCacheValid() override {
        const AutoLock lock(Base::GetLock());
        return this->InternalIsValueCacheValid();
    }
};

}  // namespace GenApi_3_0_ORVANE
