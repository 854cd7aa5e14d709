#pragma once

#include "GenApi/IEnumeration.h"
#include "GenApi/impl/CachedValueT.h"

namespace GenApi_3_0_ORVANE {

/// What CachedValueT needs to know about enumerations, whose value is the number of an entry.
struct EnumerationTraits {
    /// @name As CachedValueT asks for
    /// @{
    using Value = int64_t;
    static constexpr EMethod SetMethod = meSetIntValue;
    static constexpr EMethod GetMethod = meGetIntValue;
    static constexpr char SetBegin[] = "SetIntValue( %ld )...";
    static constexpr char SetEnd[] = "...SetIntValue";
    static constexpr char GetCached[] = "GetIntValue = %ld  (from cache)";
    static constexpr char GetBegin[] = "GetIntValue...";
    static constexpr char GetEnd[] = "...GetIntValue = %ld";
    static int64_t Argument(int64_t value) { return value; }
    /// @}
};

/// Adds IEnumeration to an implementation class, which has `InternalSetIntValue(value, verify)`,
/// `InternalGetIntValue(verify, ignoreCache)`, the lists and look-ups of entries, and the text of
/// a value and back: `InternalSymbolicOf(value)`, `InternalValueOf(symbolic)`.
template <class Base>
class EnumerationT : public CachedValueT<Base, EnumerationTraits>, virtual public IEnumeration {
public:
    IEnumeration* AsEnumeration() override { return this; }
    void GetSymbolics(gcstring_vector& symbolics) override {
        const AutoLock lock(Base::GetLock());
        this->InternalGetSymbolics(symbolics);
    }
    void GetEntries(node_vector& entries) override {
        const AutoLock lock(Base::GetLock());
        this->InternalGetEntries(entries);
    }
    IEnumeration& operator=(const gcstring& symbolic) override {
        this->FromString(symbolic);
        return *this;
    }
    gcstring operator*() override { return this->ToString(); }
    void SetIntValue(int64_t value, bool verify = true) override {
        this->SetCached(value, verify, NoCheck(),
                        [&] { this->InternalSetIntValue(value, verify); });
    }
    int64_t GetIntValue(bool verify = false, bool ignoreCache = false) override {
        return this->GetCached(verify, ignoreCache, NoCheck(),
                               [&] { return this->InternalGetIntValue(verify, ignoreCache); });
    }
    IEnumEntry* GetEntryByName(const gcstring& symbolic) override {
        const AutoLock lock(Base::GetLock());
        return this->InternalGetEntryByName(symbolic);
    }
    IEnumEntry* GetEntry(int64_t value) override {
        const AutoLock lock(Base::GetLock());
        return this->InternalGetEntry(value);
    }
    IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) override {
        const AutoLock lock(Base::GetLock());
        return this->InternalGetEntry(GetIntValue(verify, ignoreCache));
    }

    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIEnumeration; }

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override {
        return this->InternalSymbolicOf(GetIntValue(verify, ignoreCache));
    }
    void InternalFromString(const gcstring& symbolic, bool verify) override {
        SetIntValue(this->InternalValueOf(symbolic), verify);
    }
};

}  // namespace GenApi_3_0_ORVANE
