#pragma once

#include "GenApi/IInteger.h"
#include "GenApi/impl/NumericT.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// What CachedValueT and NumericT need to know about integers.
struct IntegerTraits {
    /// @name As CachedValueT and NumericT ask for
    /// @{
    using Interface = IInteger;
    using Value = int64_t;
    using List = int64_autovector_t;
    static constexpr EInterfaceType InterfaceType = intfIInteger;
    static constexpr EMethod SetMethod = meSetValue;
    static constexpr EMethod GetMethod = meGetValue;
    static constexpr char SetBegin[] = "SetValue( %ld )...";
    static constexpr char SetEnd[] = "...SetValue";
    static constexpr char GetCached[] = "GetValue = %ld  (from cache)";
    static constexpr char GetBegin[] = "GetValue...";
    static constexpr char GetEnd[] = "...GetValue = %ld";
    static constexpr char MinEnd[] = "...GetMin = %ld";
    static constexpr char MaxEnd[] = "...GetMax = %ld";
    static constexpr char IncEnd[] = "...GetInc = %ld";
    static constexpr char TooSmall[] = "Value = %ld must be equal or greater than Min = %ld.";
    static constexpr char TooLarge[] = "Value = %ld must be equal or smaller than Max = %ld.";
    static int64_t Argument(int64_t value) { return value; }
    /// @}
};

/// Adds IInteger to an implementation class, which has what NumericT asks for, and
/// `InternalGetInc()`: an integer always has an increment.
template <class Base>
class IntegerT : public NumericT<Base, IntegerTraits> {
    using Numeric = NumericT<Base, IntegerTraits>;

public:
    using Numeric::operator=;

    IInteger* AsInteger() override { return this; }
    EIncMode GetIncMode() override {
        return Numeric::ReadIncMode([] { return true; });
    }
    int64_t GetInc() override {
        return RunRead(*this, meGetInc, false, [&] { return GetIncInside(); });
    }

protected:
    /// The increment, for callers that are within a frame of this node already.
    int64_t GetIncInside() {
        return Numeric::LoggedLimit("GetInc...", IntegerTraits::IncEnd,
                                    [&] { return this->InternalGetInc(); });
    }
    /// Also refuses a value that isn't the minimum plus a multiple of the increment.
    void CheckValue(int64_t value) override {
        const int64_t min = Numeric::CheckLimits(value);
        const int64_t inc = GetIncInside();
        if (inc < 1) {
            LOGICAL_ERROR_EXCEPTION_NODE("Increment must be larger than 0.");
        }
        // Unsigned, as the whole range of 64 bits may lie between the two.
        const uint64_t distance = static_cast<uint64_t>(value) - static_cast<uint64_t>(min);
        if (distance % static_cast<uint64_t>(inc) != 0) {
            OUT_OF_RANGE_EXCEPTION_NODE(
                "The difference between Value = %ld and Min = %ld must be dividable without rest "
                "by Inc = %ld.",
                value, min, inc);
        }
    }

    gcstring InternalToString(bool verify, bool ignoreCache) override {
        gcstring text;
        Value2String(this->GetValue(verify, ignoreCache), text, this->InternalGetRepresentation());
        return text;
    }
    void InternalFromString(const gcstring& text, bool verify) override {
        int64_t value = 0;
        if (!String2Value(text.c_str(), &value, this->InternalGetRepresentation())) {
            INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert string '%s' to int.",
                                            Base::m_Name.c_str(), text.c_str());
        }
        this->SetValue(value, verify);
    }
};

}  // namespace GenApi_3_0_ORVANE
