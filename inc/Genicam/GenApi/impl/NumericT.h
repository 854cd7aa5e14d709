#pragma once

#include <algorithm>
#include <limits>
#include <optional>

#include "GenApi/impl/CachedValueT.h"

namespace GenApi_3_0_ORVANE {

/// What the interfaces of integers and floats share: limits, their checks, and the list of valid
/// values.
///
/// The implementation class has, for the lock being held: `InternalSetValue(value, verify)`,
/// `InternalGetValue(verify, ignoreCache)`, `InternalGetMin()`, `InternalGetMax()`,
/// `InternalGetRepresentation()`, `InternalGetUnit()`; and `InternalGetListOfValidValues()` if it
/// may have such a list, empty where every value is valid.
///
/// Besides what CachedValueT asks for, Traits has the `Interface`, the `List` of values, and the
/// log lines and messages about limits.
template <class Base, class Traits>
class NumericT : public CachedValueT<Base, Traits>, virtual public Traits::Interface {
    using Cached = CachedValueT<Base, Traits>;

public:
    /// The interface that a client sees.
    using Interface_t = typename Traits::Interface;
    /// The type of the value.
    using Value_t = typename Traits::Value;
    /// The type of a list of values.
    using List_t = typename Traits::List;

    void SetValue(Value_t value, bool verify = true) override {
        this->SetCached(
            value, verify, [&] { CheckValue(value); },
            [&] { this->InternalSetValue(value, verify); });
    }
    Interface_t& operator=(Value_t value) override {
        SetValue(value);
        return *this;
    }
    Value_t GetValue(bool verify = false, bool ignoreCache = false) override {
        return this->GetCached(
            verify, ignoreCache, [&](Value_t value) { CheckValue(value); },
            [&] { return this->InternalGetValue(verify, ignoreCache); });
    }
    Value_t operator()() override { return GetValue(); }
    Value_t operator*() override { return GetValue(); }

    Value_t GetMin() override {
        return RunRead(*this, meGetMin, false, [&] { return GetMinInside(); });
    }
    Value_t GetMax() override {
        return RunRead(*this, meGetMax, false, [&] { return GetMaxInside(); });
    }
    List_t GetListOfValidValues(bool bounded = true) override {
        return RunRead(*this, meGetListOfValidValues, false, [&] {
            CLogIndent indent;
            GCLOGINFOPUSH(indent, Base::m_pRangeLog, "GetListOfValidValues...");
            RefreshValidValues();
            List_t list =
                bounded ? BoundedValidValues() : m_CurrentValidValueSet.value_or(List_t());
            GCLOGINFOPOP(indent, Base::m_pRangeLog, "...GetListOfValidValues");
            return list;
        });
    }
    ERepresentation GetRepresentation() override {
        return RunQuestion(*this, [&] { return this->InternalGetRepresentation(); });
    }
    gcstring GetUnit() override {
        return RunQuestion(*this, [&] { return this->InternalGetUnit(); });
    }
    void ImposeMin(Value_t value) override { Impose(m_ImposedMin, value); }
    void ImposeMax(Value_t value) override { Impose(m_ImposedMax, value); }

    EInterfaceType InternalGetPrincipalInterfaceType() override { return Traits::InterfaceType; }

protected:
    /// The lower limit, for callers that are within a frame of this node already.
    Value_t GetMinInside() {
        return LoggedLimit("GetMin...", Traits::MinEnd, [&] {
            Cached::RequireAvailable();
            return std::max(this->InternalGetMin(), m_ImposedMin);
        });
    }
    /// The upper limit, likewise.
    Value_t GetMaxInside() {
        return LoggedLimit("GetMax...", Traits::MaxEnd, [&] {
            Cached::RequireAvailable();
            return std::min(this->InternalGetMax(), m_ImposedMax);
        });
    }
    /// Refuses a value outside the limits. One that is not a number is outside of any.
    /// @return the minimum, from which steps are counted
    Value_t CheckLimits(Value_t value) {
        const Value_t min = GetMinInside();
        if (!(value >= min)) {
            OUT_OF_RANGE_EXCEPTION_NODE(Traits::TooSmall, value, min);
        }
        const Value_t max = GetMaxInside();
        if (!(value <= max)) {
            OUT_OF_RANGE_EXCEPTION_NODE(Traits::TooLarge, value, max);
        }
        return min;
    }
    /// Refuses a value that verification doesn't accept.
    virtual void CheckValue(Value_t value) { CheckLimits(value); }

    /// Reads something about the range, between two log lines.
    template <class Read>
    Value_t LoggedLimit(const char* begin, const char* end, const Read& read) {
        Base::RequireSound();
        CLogIndent indent;
        GCLOGINFOPUSH(indent, Base::m_pRangeLog, "%s", begin);
        const Value_t value = read();
        GCLOGINFOPOP(indent, Base::m_pRangeLog, end, value);
        return value;
    }

    /// @param hasInc  returns whether values have an increment at all
    template <class HasInc>
    EIncMode ReadIncMode(const HasInc& hasInc) {
        return RunRead(*this, meGetIncMode, false, [&] {
            CLogIndent indent;
            GCLOGINFOPUSH(indent, Base::m_pRangeLog, "GetIncMode...");
            RefreshValidValues();
            const EIncMode steps = HasValidValues() ? listIncrement : fixedIncrement;
            const EIncMode mode = hasInc() ? steps : noIncrement;
            GCLOGINFOPOP(indent, Base::m_pRangeLog, "...GetIncMode");
            return mode;
        });
    }

private:
    void Impose(Value_t& limit, Value_t value) {
        {
            const AutoLock lock(Base::GetLock());
            limit = value;
        }
        this->InvalidateImposed();
    }

    void RefreshValidValues() {
        Base::RequireSound();
        if constexpr (requires { this->InternalGetListOfValidValues(); }) {
            if (!Base::m_ListOfValidValuesCacheValid) {
                m_CurrentValidValueSet = this->InternalGetListOfValidValues();
                Base::m_ListOfValidValuesCacheValid = true;
            }
        }
    }

    bool HasValidValues() const {
        return m_CurrentValidValueSet.has_value() && m_CurrentValidValueSet->size() != 0;
    }

    List_t BoundedValidValues() {
        List_t list;
        if (HasValidValues()) {
            const Value_t min = GetMinInside();
            const Value_t max = GetMaxInside();
            for (size_t i = 0; i < m_CurrentValidValueSet->size(); ++i) {
                const Value_t value = (*m_CurrentValidValueSet)[i];
                if (value >= min && value <= max) {
                    list.push_back(value);
                }
            }
        }
        return list;
    }

    Value_t m_ImposedMin = std::numeric_limits<Value_t>::lowest();
    Value_t m_ImposedMax = std::numeric_limits<Value_t>::max();
    /// None until somebody asks: most nodes have no such list.
    std::optional<List_t> m_CurrentValidValueSet;
};

}  // namespace GenApi_3_0_ORVANE
