// References to integers. Each operation is one visit, with a row for each kind of source. The
// texts of failures name the operation, as clients know them from logs.

#include <limits>

#include "core/PolySource.h"

namespace GenApi_3_0_ORVANE {

namespace {

using Limits = std::numeric_limits<int64_t>;

/// The integer that is nearest to a limit of floats, which may lie outside the range of integers.
int64_t Reachable(double limit, const char* operation) {
    if (IsInInt64(limit)) {
        return RoundToInt64(limit, operation);
    }
    return limit < 0 ? Limits::min() : Limits::max();
}

}  // namespace

CIntegerPolyRef& CIntegerPolyRef::operator=(INodePrivate* node) {
    if (!SetPointer(node)) {
        RUNTIME_EXCEPTION(
            "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, "
            "nor IEnumeration*, nor IBoolean*, nor IFloat*");
    }
    return *this;
}

int64_t CIntegerPolyRef::ReadSource(bool verify, bool ignoreCache) const {
    constexpr const char* kOperation = "CIntegerPolyRef::GetValue()";
    return std::visit(By{[](std::monostate) -> int64_t { ThrowUninitialized(kOperation); },
                         [](int64_t value) { return value; },
                         [&](IInteger* source) { return source->GetValue(verify, ignoreCache); },
                         [&](IEnumeration* source) {
                             return RoundToInt64(NumericValueOf(*source, verify, ignoreCache),
                                                 kOperation);
                         },
                         [&](IBoolean* source) -> int64_t {
                             return source->GetValue(verify, ignoreCache) ? 1 : 0;
                         },
                         [&](IFloat* source) {
                             return RoundToInt64(source->GetValue(verify, ignoreCache), kOperation);
                         }},
                      m_Source);
}

void CIntegerPolyRef::SetValue(int64_t value, bool verify) const {
    constexpr const char* kOperation = "CIntegerPolyRef::SetValue()";
    std::visit(
        By{[](std::monostate) { ThrowUninitialized(kOperation); },
           [](int64_t) { ThrowUninitialized(kOperation); },
           [&](IInteger* source) { source->SetValue(value, verify); },
           [&](IEnumeration* source) { SetNearest(*source, static_cast<double>(value), verify); },
           [&](IBoolean* source) { source->SetValue(value != 0, verify); },
           [&](IFloat* source) { source->SetValue(static_cast<double>(value), verify); }},
        m_Source);
}

int64_t CIntegerPolyRef::GetMin() const {
    constexpr const char* kOperation = "CIntegerPolyRef::GetMin()";
    return std::visit(
        By{[](std::monostate) -> int64_t { ThrowUninitialized(kOperation); },
           [](int64_t) { return Limits::min(); }, [](IInteger* source) { return source->GetMin(); },
           [](IEnumeration*) { return Limits::min(); }, [](IBoolean*) { return Limits::min(); },
           [](IFloat* source) { return RoundToInt64(source->GetMin(), kOperation); }},
        m_Source);
}

int64_t CIntegerPolyRef::GetMax() const {
    constexpr const char* kOperation = "CIntegerPolyRef::GetMax()";
    return std::visit(
        By{[](std::monostate) -> int64_t { ThrowUninitialized(kOperation); },
           [](int64_t) { return Limits::max(); }, [](IInteger* source) { return source->GetMax(); },
           [](IEnumeration*) { return Limits::max(); }, [](IBoolean*) { return Limits::max(); },
           [](IFloat* source) { return RoundToInt64(source->GetMax(), kOperation); }},
        m_Source);
}

/// With several sources, each may narrow the limits of the others; one whose limits are beyond
/// all integers narrows nothing, and must not fail the rest.
int64_t CIntegerPolyRef::GetReachableMin() const {
    IFloat* const* const source = std::get_if<IFloat*>(&m_Source);
    return source == nullptr ? GetMin()
                             : Reachable((*source)->GetMin(), "CIntegerPolyRef::GetMin()");
}

int64_t CIntegerPolyRef::GetReachableMax() const {
    IFloat* const* const source = std::get_if<IFloat*>(&m_Source);
    return source == nullptr ? GetMax()
                             : Reachable((*source)->GetMax(), "CIntegerPolyRef::GetMax()");
}

bool CIntegerPolyRef::HasInc() const {
    return std::visit(
        By{[](std::monostate) -> bool { ThrowUninitialized("CIntegerPolyRef::HasInc()"); },
           [](IFloat* source) { return source->HasInc(); }, [](const auto&) { return true; }},
        m_Source);
}

int64_t CIntegerPolyRef::GetInc() const {
    constexpr const char* kOperation = "CIntegerPolyRef::GetInc()";
    return std::visit(
        By{[](std::monostate) -> int64_t { ThrowUninitialized(kOperation); },
           [](int64_t) -> int64_t { return 1; }, [](IInteger* source) { return source->GetInc(); },
           [](IEnumeration*) -> int64_t { return 1; }, [](IBoolean*) -> int64_t { return 1; },
           [](IFloat* source) -> int64_t {
               return source->HasInc() ? RoundToInt64(source->GetInc(), kOperation) : 1;
           }},
        m_Source);
}

EIncMode CIntegerPolyRef::GetIncMode() const {
    return std::visit(
        By{[](std::monostate) -> EIncMode { ThrowUninitialized("CIntegerPolyRef::GetIncMode()"); },
           [](IInteger* source) { return source->GetIncMode(); },
           [](IFloat* source) { return source->GetIncMode(); },
           [](const auto&) { return fixedIncrement; }},
        m_Source);
}

int64_autovector_t CIntegerPolyRef::GetListOfValidValues(bool bounded) const {
    return std::visit(By{[](std::monostate) -> int64_autovector_t {
                             ThrowUninitialized("CIntegerPolyRef::GetListOfValidValues()");
                         },
                         [&](IInteger* source) { return source->GetListOfValidValues(bounded); },
                         [](const auto&) { return int64_autovector_t(); }},
                      m_Source);
}

ERepresentation CIntegerPolyRef::GetRepresentation() const {
    return std::visit(By{[](std::monostate) -> ERepresentation {
                             ThrowUninitialized("CIntegerPolyRef::GetRepresentation()");
                         },
                         [](IInteger* source) { return source->GetRepresentation(); },
                         [](IFloat* source) { return source->GetRepresentation(); },
                         [](IBoolean*) { return Boolean; }, [](const auto&) { return PureNumber; }},
                      m_Source);
}

gcstring CIntegerPolyRef::GetUnit() const {
    return std::visit(
        By{[](std::monostate) -> gcstring { ThrowUninitialized("CIntegerPolyRef::GetUnit()"); },
           [](IInteger* source) { return source->GetUnit(); },
           [](IFloat* source) { return source->GetUnit(); },
           [](const auto&) { return gcstring(); }},
        m_Source);
}

bool CIntegerPolyRef::IsValueCacheValid() const {
    return std::visit(
        By{[](std::monostate) -> bool {
               ThrowUninitialized("CIntegerPolyRef::IsValueCacheValid()");
           },
           [](int64_t) { return true; }, [](auto* source) { return CacheValidOf(source); }},
        m_Source);
}

ECachingMode CIntegerPolyRef::GetCachingMode() const {
    return std::visit(By{[](std::monostate) -> ECachingMode {
                             ThrowUninitialized("CIntegerPolyRef::GetCachingMode()");
                         },
                         [](int64_t) { return WriteThrough; },
                         [](auto* source) { return CachingModeOf(source); }},
                      m_Source);
}

}  // namespace GenApi_3_0_ORVANE
