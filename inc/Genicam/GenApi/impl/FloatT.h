#pragma once

#include "GenApi/IFloat.h"
#include "GenApi/impl/NumericT.h"
#include "text/FloatText.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// What CachedValueT and NumericT need to know about floats.
struct FloatTraits {
    /// @name As CachedValueT and NumericT ask for
    /// @{
    using Interface = IFloat;
    using Value = double;
    using List = double_autovector_t;
    static constexpr EInterfaceType InterfaceType = intfIFloat;
    static constexpr EMethod SetMethod = meSetValue;
    static constexpr EMethod GetMethod = meGetValue;
    static constexpr char SetBegin[] = "SetValue( %f )...";
    static constexpr char SetEnd[] = "...SetValue";
    static constexpr char GetCached[] = "GetValue = %f  (from cache)";
    static constexpr char GetBegin[] = "GetValue...";
    static constexpr char GetEnd[] = "...GetValue = %f";
    static constexpr char MinEnd[] = "...GetMin = %f";
    static constexpr char MaxEnd[] = "...GetMax = %f";
    static constexpr char IncEnd[] = "...GetInc = %f";
    static constexpr char TooSmall[] = "Value %f must be greater than or equal %f.";
    static constexpr char TooLarge[] = "Value %f must be smaller than or equal %f.";
    static double Argument(double value) { return value; }
    /// @}
};

/// Adds IFloat to an implementation class.
///
/// Besides what NumericT asks for, that class has `InternalGetDisplayNotation()` and
/// `InternalGetDisplayPrecision()`; one whose values may have an increment also has
/// `InternalHasInc()` and `InternalGetInc()`.
template <class Base>
class FloatT : public NumericT<Base, FloatTraits> {
    using Numeric = NumericT<Base, FloatTraits>;

public:
    IFloat* AsFloat() override { return this; }
    bool HasInc() override {
        const AutoLock lock(Base::GetLock());
        const NestingScope nesting(*this);
        Base::RequireSound();
        CLogIndent indent;
        GCLOGINFOPUSH(indent, Base::m_pRangeLog, "HasInc...");
        bool hasInc = false;
        if constexpr (requires { this->InternalHasInc(); }) {
            hasInc = this->InternalHasInc();
        }
        GCLOGINFOPOP(indent, Base::m_pRangeLog, "...HasInc = %s", hasInc ? "true" : "false");
        return hasInc;
    }
    EIncMode GetIncMode() override {
        return Numeric::ReadIncMode([&] { return HasInc(); });
    }
    double GetInc() override {
        return RunRead(*this, meGetInc, false, [&] {
            return Numeric::LoggedLimit("GetInc...", FloatTraits::IncEnd, [&]() -> double {
                if constexpr (requires { this->InternalHasInc(); }) {
                    if (HasInc()) {
                        return this->InternalGetInc();
                    }
                }
                RUNTIME_EXCEPTION_NODE("node does not have an increment.");
            });
        });
    }
    EDisplayNotation GetDisplayNotation() override {
        return RunQuestion(*this, [&] { return this->InternalGetDisplayNotation(); });
    }
    int64_t GetDisplayPrecision() override {
        return RunQuestion(*this, [&] { return this->InternalGetDisplayPrecision(); });
    }

protected:
    /// Returns a text that parses back to a value within the limits: rounding for display must
    /// not print a number that the node would refuse.
    gcstring InternalToString(bool verify, bool ignoreCache) override {
        const CFloatText form(this->InternalGetDisplayNotation(),
                              this->InternalGetDisplayPrecision());
        const double value = this->GetValue(verify, ignoreCache);
        const double max = Numeric::GetMaxInside();
        return form.PrintWithin(value, Numeric::GetMinInside(), max);
    }
    void InternalFromString(const gcstring& text, bool verify) override {
        double value = 0;
        if (!String2Value(text, &value)) {
            INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert string '%s' to double.",
                                            Base::m_Name.c_str(), text.c_str());
        }
        this->SetValue(value, verify);
    }
};

}  // namespace GenApi_3_0_ORVANE
