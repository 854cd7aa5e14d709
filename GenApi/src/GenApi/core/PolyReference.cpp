// References to a value that is either written in the description or held by another node,
// whatever its interface. Each operation is one visit with a row for each kind of source. The
// texts of failures name the operation, as clients know them from logs.

#include "core/PolyReference.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "Base/GCException.h"
#include "GenApi/IEnumEntry.h"

namespace GenApi_3_0_ORVANE {

namespace {

using Limits = std::numeric_limits<int64_t>;

/// The lower bound is a number that int64_t has; the upper one is the first that it doesn't have,
/// and both are exact as doubles.
bool IsInInt64(double value) {
    constexpr double kBound = 9223372036854775808.0;
    return value >= -kBound && value < kBound;
}

/// The integer that is nearest to a limit of floats, which may lie outside the range of integers.
int64_t Reachable(double limit, const char* operation) {
    if (IsInInt64(limit)) {
        return RoundToInt64(limit, operation);
    }
    return limit < 0 ? Limits::min() : Limits::max();
}

/// Joins lambdas into one callable with an overload for each kind of source.
template <class... Rows>
struct By : Rows... {
    using Rows::operator()...;
};
template <class... Rows>
By(Rows...) -> By<Rows...>;

[[noreturn]] void ThrowUninitialized(const char* operation) {
    RUNTIME_EXCEPTION("%s: uninitialized pointer", operation);
}

/// An enumeration takes the place of a number by the numeric value of its entry, which need not
/// be the number that the device uses for it.
double NumericValueOf(IEnumeration& enumeration, bool verify, bool ignoreCache) {
    IEnumEntry* const entry = enumeration.GetCurrentEntry(verify, ignoreCache);
    if (entry == nullptr) {
        LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
    }
    return entry->GetNumericValue();
}

/// Chooses, of the entries that can be chosen now, the one with the nearest numeric value. A
/// computed value seldom hits one exactly. Of two that are equally near, the first in the
/// description is taken.
void SetNearest(IEnumeration& enumeration, double value, bool verify) {
    node_vector nodes;
    enumeration.GetEntries(nodes);
    IEnumEntry* nearest = nullptr;
    double distance = std::numeric_limits<double>::infinity();
    for (INode* const node : nodes) {
        auto* const entry = dynamic_cast<IEnumEntry*>(node);
        if (!IsAvailable(node->GetAccessMode())) {
            continue;
        }
        const double candidate = std::fabs(entry->GetNumericValue() - value);
        if (nearest == nullptr || candidate < distance) {
            nearest = entry;
            distance = candidate;
        }
    }
    if (nearest == nullptr) {
        ACCESS_EXCEPTION("Failed to write enumeration. None of the entries is writable");
    }
    enumeration.SetIntValue(nearest->GetValue(), verify);
}

/// Constants never change, so what holds one may be cached in any way.
template <class Interface>
ECachingMode CachingModeOf(Interface* source) {
    return source->GetNode()->GetCachingMode();
}

template <class Interface>
bool CacheValidOf(Interface* source) {
    return source->IsValueCacheValid();
}

}  // namespace

int64_t RoundToInt64(double value, const char* operation) {
    if (!IsInInt64(value)) {
        RUNTIME_EXCEPTION("%s: Float value %f out of integer range", operation, value);
    }
    return static_cast<int64_t>(value > 0 ? value + 0.5 : value - 0.5);
}

CIntegerPolyRef& CIntegerPolyRef::operator=(IBase* base) {
    if (!SetPointer(base)) {
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

CFloatPolyRef& CFloatPolyRef::operator=(IBase* base) {
    if (!SetPointer(base)) {
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

CBooleanPolyRef& CBooleanPolyRef::operator=(IBase* base) {
    if (!SetPointer(base)) {
        RUNTIME_EXCEPTION(
            "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, "
            "IEnumeration*, nor IBoolean*");
    }
    return *this;
}

bool CBooleanPolyRef::GetValue(bool verify, bool ignoreCache) const {
    return std::visit(
        By{[](std::monostate) -> bool { ThrowUninitialized("CBooleanPolyRef::GetValue()"); },
           [](bool value) { return value; },
           [&](IInteger* source) { return source->GetValue(verify, ignoreCache) != 0; },
           [&](IEnumeration* source) { return source->GetIntValue(verify, ignoreCache) != 0; },
           [&](IBoolean* source) { return source->GetValue(verify, ignoreCache); }},
        m_Source);
}

ECachingMode CBooleanPolyRef::GetCachingMode() const {
    return std::visit(
        By{[](std::monostate) -> ECachingMode {
               ThrowUninitialized("CBooleanPolyRef::GetCachingMode()");
           },
           [](bool) { return WriteThrough; }, [](auto* source) { return CachingModeOf(source); }},
        m_Source);
}

CStringPolyRef& CStringPolyRef::operator=(IBase* base) {
    if (!SetPointer(base)) {
        RUNTIME_EXCEPTION("CStringPolyRef::operator(IBase*) : pointer is not IString*");
    }
    return *this;
}

gcstring CStringPolyRef::GetValue(bool verify, bool ignoreCache) const {
    return std::visit(
        By{[](std::monostate) -> gcstring { ThrowUninitialized("CStringPolyRef::GetValue()"); },
           [](const gcstring& value) { return value; },
           [&](IString* source) { return source->GetValue(verify, ignoreCache); }},
        m_Source);
}

void CStringPolyRef::SetValue(const gcstring& value, bool verify) {
    std::visit(By{[](std::monostate) { ThrowUninitialized("CStringPolyRef::SetValue()"); },
                  [&](gcstring& constant) { constant = value; },
                  [&](IString* source) { source->SetValue(value, verify); }},
               m_Source);
}

int64_t CStringPolyRef::GetMaxLength() const {
    return std::visit(
        By{[](std::monostate) -> int64_t { ThrowUninitialized("CStringPolyRef::GetMaxLength()"); },
           [](const gcstring& value) { return static_cast<int64_t>(value.size()); },
           [](IString* source) { return source->GetMaxLength(); }},
        m_Source);
}

bool CStringPolyRef::IsValueCacheValid() const {
    return std::visit(By{[](std::monostate) -> bool {
                             ThrowUninitialized("CStringPolyRef::IsValueCacheValid()");
                         },
                         [](const gcstring&) { return true; },
                         [](IString* source) { return CacheValidOf(source); }},
                      m_Source);
}

ECachingMode CStringPolyRef::GetCachingMode() const {
    return std::visit(By{[](std::monostate) -> ECachingMode {
                             ThrowUninitialized("CStringPolyRef::GetCachingMode()");
                         },
                         [](const gcstring&) { return WriteThrough; },
                         [](IString* source) { return CachingModeOf(source); }},
                      m_Source);
}

}  // namespace GenApi_3_0_ORVANE
