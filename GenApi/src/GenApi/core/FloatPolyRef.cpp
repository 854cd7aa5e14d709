// References to floats: as those to integers, without truth values.

#include <limits>

#include "core/PolySource.h"

namespace GenApi_3_0_ORVANE {

CFloatPolyRef& CFloatPolyRef::operator=(INodePrivate* node) {
    if (!SetPointer(node)) {
        RUNTIME_EXCEPTION(
            "CFloatPolyRef::operator(IBase*) : pointer is neither IFloat*, "
            "IInteger*, nor IEnumeration*");
    }
    return *this;
}

double CFloatPolyRef::GetValue(bool verify, bool ignoreCache) const {
    return std::visit(
        By{[](std::monostate) -> double { ThrowUninitialized("CFloatPolyRef::GetValue()"); },
           [](double value) { return value; },
           [&](IFloat* source) { return source->GetValue(verify, ignoreCache); },
           [&](IInteger* source) {
               return static_cast<double>(source->GetValue(verify, ignoreCache));
           },
           [&](IEnumeration* source) { return NumericValueOf(*source, verify, ignoreCache); }},
        m_Source);
}

void CFloatPolyRef::SetValue(double value, bool verify) const {
    constexpr const char* kOperation = "CFloatPolyRef::SetValue()";
    std::visit(By{[](std::monostate) { ThrowUninitialized(kOperation); },
                  [](double) { ThrowUninitialized(kOperation); },
                  [&](IFloat* source) { source->SetValue(value, verify); },
                  [&](IInteger* source) {
                      if (!IsInInt64(value)) {
                          RUNTIME_EXCEPTION(
                              "CIntegerPolyRef::SetValue(): double value outside int64 range");
                      }
                      source->SetValue(RoundToInt64(value, kOperation), verify);
                  },
                  [&](IEnumeration* source) { SetNearest(*source, value, verify); }},
               m_Source);
}

double CFloatPolyRef::GetMin() const {
    return std::visit(
        By{[](std::monostate) -> double { ThrowUninitialized("CFloatPolyRef::GetMin()"); },
           [](IFloat* source) { return source->GetMin(); },
           [](IInteger* source) { return static_cast<double>(source->GetMin()); },
           [](const auto&) { return std::numeric_limits<double>::lowest(); }},
        m_Source);
}

double CFloatPolyRef::GetMax() const {
    return std::visit(
        By{[](std::monostate) -> double { ThrowUninitialized("CFloatPolyRef::GetMax()"); },
           [](IFloat* source) { return source->GetMax(); },
           [](IInteger* source) { return static_cast<double>(source->GetMax()); },
           [](const auto&) { return std::numeric_limits<double>::max(); }},
        m_Source);
}

bool CFloatPolyRef::HasInc() const {
    return std::visit(
        By{[](std::monostate) -> bool { ThrowUninitialized("CFloatPolyRef::HasInc()"); },
           [](IFloat* source) { return source->HasInc(); }, [](IInteger*) { return true; },
           [](const auto&) { return false; }},
        m_Source);
}

double CFloatPolyRef::GetInc() const {
    return std::visit(
        By{[](std::monostate) -> double { ThrowUninitialized("CFloatPolyRef::GetInc()"); },
           [](IFloat* source) { return source->GetInc(); },
           [](IInteger* source) { return static_cast<double>(source->GetInc()); },
           [](const auto&) { return 1.0; }},
        m_Source);
}

EIncMode CFloatPolyRef::GetIncMode() const {
    return std::visit(
        By{[](std::monostate) -> EIncMode { ThrowUninitialized("CFloatPolyRef::GetIncMode()"); },
           [](IFloat* source) { return source->GetIncMode(); },
           [](IInteger* source) { return source->GetIncMode(); },
           [](const auto&) { return noIncrement; }},
        m_Source);
}

double_autovector_t CFloatPolyRef::GetListOfValidValues(bool bounded) const {
    return std::visit(By{[](std::monostate) -> double_autovector_t {
                             ThrowUninitialized("CFloatPolyRef::GetListOfValidValues()");
                         },
                         [&](IFloat* source) { return source->GetListOfValidValues(bounded); },
                         [](const auto&) { return double_autovector_t(); }},
                      m_Source);
}

ERepresentation CFloatPolyRef::GetRepresentation() const {
    return std::visit(By{[](std::monostate) -> ERepresentation {
                             ThrowUninitialized("CFloatPolyRef::GetRepresentation()");
                         },
                         [](IFloat* source) { return source->GetRepresentation(); },
                         [](IInteger* source) { return source->GetRepresentation(); },
                         [](const auto&) { return PureNumber; }},
                      m_Source);
}

gcstring CFloatPolyRef::GetUnit() const {
    return std::visit(
        By{[](std::monostate) -> gcstring { ThrowUninitialized("CFloatPolyRef::GetUnit()"); },
           [](IFloat* source) { return source->GetUnit(); },
           [](IInteger* source) { return source->GetUnit(); },
           [](const auto&) { return gcstring(); }},
        m_Source);
}

EDisplayNotation CFloatPolyRef::GetDisplayNotation() const {
    return std::visit(By{[](IFloat* source) { return source->GetDisplayNotation(); },
                         [](const auto&) { return fnAutomatic; }},
                      m_Source);
}

int64_t CFloatPolyRef::GetDisplayPrecision() const {
    return std::visit(By{[](IFloat* source) { return source->GetDisplayPrecision(); },
                         [](const auto&) -> int64_t { return -1; }},
                      m_Source);
}

bool CFloatPolyRef::IsValueCacheValid() const {
    return std::visit(
        By{[](std::monostate) -> bool { ThrowUninitialized("CFloatPolyRef::IsValueCacheValid()"); },
           [](double) { return true; }, [](auto* source) { return CacheValidOf(source); }},
        m_Source);
}

ECachingMode CFloatPolyRef::GetCachingMode() const {
    return std::visit(
        By{[](std::monostate) -> ECachingMode {
               ThrowUninitialized("CFloatPolyRef::GetCachingMode()");
           },
           [](double) { return WriteThrough; }, [](auto* source) { return CachingModeOf(source); }},
        m_Source);
}

}  // namespace GenApi_3_0_ORVANE
