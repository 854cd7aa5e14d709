#pragma once

#include "GenApi/impl/Frames.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// Adds the operations of IRegister to a register class.
template <class Base>
class RegisterT : public Base {
public:
    void Set(const uint8_t* buffer, int64_t length, bool verify = true) override {
        CLogIndent indent;
        RunWrite(
            *this, meSet,
            [&] {
                GCLOGINFOPUSH(indent, Base::m_pValueLog, "Set( %ld, %s )...", length,
                              HexText(buffer, length).c_str());
                if (verify && !IsWritable(this->GetAccessModeInside())) {
                    ACCESS_EXCEPTION_NODE("Node is not writable.");
                }
            },
            [&] {
                Base::InternalSet(buffer, length, verify);
                if (verify) {
                    Base::InternalCheckError();
                }
            },
            [&] { GCLOGINFOPOP(indent, Base::m_pValueLog, "...Set"); });
    }

    void Get(uint8_t* buffer, int64_t length, bool verify = false,
             bool ignoreCache = false) override {
        RunRead(*this, meGet, ignoreCache, [&] {
            CLogIndent indent;
            GCLOGINFOPUSH(indent, Base::m_pValueLog, "Get...");
            if (!IsReadable(this->GetAccessModeInside())) {
                Base::RaiseAnyFault();
                ACCESS_EXCEPTION_NODE("Node is not readable.");
            }
            Base::InternalGet(buffer, length, verify, ignoreCache);
            if (verify) {
                Base::InternalCheckError();
            }
            GCLOGINFOPOP(indent, Base::m_pValueLog, "...Get( %ld ) = %s", length,
                         HexText(buffer, length).c_str());
        });
    }

    int64_t GetLength() override {
        const AutoLock lock(Base::GetLock());
        Base::RequireSound();
        return Base::InternalGetLength();
    }

    int64_t GetAddress() override {
        const AutoLock lock(Base::GetLock());
        Base::RequireSound();
        return Base::InternalGetAddress();
    }

private:
    static gcstring HexText(const uint8_t* buffer, int64_t length) {
        gcstring text;
        // Null is refused, but only after the line about the call.
        Value2String(buffer, text, buffer == nullptr ? 0 : length);
        return text;
    }
};

}  // namespace GenApi_3_0_ORVANE
