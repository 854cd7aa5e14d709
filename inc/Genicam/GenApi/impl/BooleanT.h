#pragma once

#include "GenApi/IBoolean.h"
#include "GenApi/impl/CachedValueT.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// What CachedValueT needs to know about booleans.
struct BooleanTraits {
    /// @name As CachedValueT asks for
    /// @{
    using Value = bool;
    static constexpr EMethod SetMethod = meSetValue;
    static constexpr EMethod GetMethod = meGetValue;
    static constexpr char SetBegin[] = "SetValue( %s )...";
    static constexpr char SetEnd[] = "...SetValue";
    static constexpr char GetCached[] = "GetValue = %s  (from cache)";
    static constexpr char GetBegin[] = "GetValue...";
    static constexpr char GetEnd[] = "...GetValue = %s";
    static const char* Argument(bool value) { return value ? "true" : "false"; }
    /// @}
};

/// Adds IBoolean to an implementation class, which has `InternalSetValue(value, verify)` and
/// `InternalGetValue(verify, ignoreCache)`.
template <class Base>
class BooleanT : public CachedValueT<Base, BooleanTraits>, virtual public IBoolean {
public:
    IBoolean* AsBoolean() override { return this; }
    void SetValue(bool value, bool verify = true) override {
        this->SetCached(value, verify, NoCheck(), [&] { this->InternalSetValue(value, verify); });
    }
    IBoolean& operator=(bool value) override {
        SetValue(value);
        return *this;
    }
    bool GetValue(bool verify = false, bool ignoreCache = false) override {
        return this->GetCached(verify, ignoreCache, NoCheck(),
                               [&] { return this->InternalGetValue(verify, ignoreCache); });
    }
    bool operator()() override { return GetValue(); }

    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIBoolean; }

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override {
        return BooleanTraits::Argument(GetValue(verify, ignoreCache));
    }
    void InternalFromString(const gcstring& text, bool verify) override {
        bool value = false;
        if (!String2Value(text, &value)) {
            INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert string '%s' to boolean",
                                            Base::m_Name.c_str(), text.c_str());
        }
        SetValue(value, verify);
    }
};

}  // namespace GenApi_3_0_ORVANE
