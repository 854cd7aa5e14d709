#pragma once

#include "GenApi/IString.h"
#include "GenApi/impl/CachedValueT.h"

namespace GenApi_3_0_ORVANE {

/// What CachedValueT needs to know about texts.
struct StringTraits {
    /// @name As CachedValueT asks for
    /// @{
    using Value = gcstring;
    static constexpr EMethod SetMethod = meSetValue;
    static constexpr EMethod GetMethod = meGetValue;
    static constexpr char SetBegin[] = "SetValue( '%s' )...";
    static constexpr char SetEnd[] = "...SetValue";
    static constexpr char GetCached[] = "GetValue = %s  (from cache)";
    static constexpr char GetBegin[] = "GetValue...";
    static constexpr char GetEnd[] = "...GetValue = %s";
    static const char* Argument(const gcstring& value) { return value.c_str(); }
    /// @}
};

/// Adds IString to an implementation class, which has `InternalSetValue(value, verify)`,
/// `InternalGetValue(verify, ignoreCache)` and `InternalGetMaxLength()`.
template <class Base>
class StringT : public CachedValueT<Base, StringTraits>, virtual public IString {
public:
    IString* AsString() override { return this; }
    void SetValue(const gcstring& value, bool verify = true) override {
        this->SetCached(value, verify, NoCheck(), [&] { this->InternalSetValue(value, verify); });
    }
    IString& operator=(const gcstring& value) override {
        SetValue(value);
        return *this;
    }
    gcstring GetValue(bool verify = false, bool ignoreCache = false) override {
        return this->GetCached(verify, ignoreCache, NoCheck(),
                               [&] { return this->InternalGetValue(verify, ignoreCache); });
    }
    gcstring operator()() override { return GetValue(); }
    gcstring operator*() override { return GetValue(); }
    int64_t GetMaxLength() override {
        const AutoLock lock(Base::GetLock());
        const NestingScope nesting(*this);
        Base::RequireSound();
        CLogIndent indent;
        GCLOGINFOPUSH(indent, Base::m_pValueLog, "GetMaxLength...");
        const int64_t length = this->InternalGetMaxLength();
        GCLOGINFOPOP(indent, Base::m_pValueLog, "...GetMaxLength = %ld", length);
        return length;
    }

    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIString; }

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override {
        return GetValue(verify, ignoreCache);
    }
    void InternalFromString(const gcstring& text, bool verify) override { SetValue(text, verify); }
};

}  // namespace GenApi_3_0_ORVANE
