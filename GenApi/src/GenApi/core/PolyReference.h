#pragma once
/// References to a value that is either written in the description or held by another node,
/// whatever interface that node has.
///
/// All four kinds have one design: a tag and a constant or pointer, and for each operation one
/// row for each tag. Call them with the map's lock held.

#include <string>
#include <type_traits>
#include <variant>

#include "GenApi/IBoolean.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IString.h"
#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

/// Asks a node for an interface; null if it lacks that.
template <class Interface>
Interface* InterfaceOf(INodePrivate& node) {
    if constexpr (std::is_same_v<Interface, IInteger>) {
        return node.AsInteger();
    } else if constexpr (std::is_same_v<Interface, IFloat>) {
        return node.AsFloat();
    } else if constexpr (std::is_same_v<Interface, IBoolean>) {
        return node.AsBoolean();
    } else if constexpr (std::is_same_v<Interface, IEnumeration>) {
        return node.AsEnumeration();
    } else {
        static_assert(std::is_same_v<Interface, IString>);
        return node.AsString();
    }
}

/// What all references share. The alternatives of the variant are the tags, in this order:
/// uninitialised, constant, then the interfaces.
template <class Constant, class... Interfaces>
class CPolyRefBase {
public:
    using Constant_t = Constant;

    bool IsInitialized() const { return m_Source.index() != 0; }
    bool IsConstant() const { return m_Source.index() == 1; }
    bool IsPointer() const { return m_Source.index() > 1; }

    /// Returns the node that the reference points to; null for a constant.
    INodePrivate* GetNode() const { return m_pNode; }
    /// Whether it points to a node that can be read now. False for a constant.
    bool IsReadable() const {
        return m_pNode != nullptr && GenApi_3_0_ORVANE::IsReadable(m_pNode->GetAccessMode());
    }

protected:
    /// Null unless this is a constant. Most references are: lengths, addresses and limits, which
    /// every access asks for.
    const Constant* GetConstant() const { return std::get_if<1>(&m_Source); }
    void SetConstant(Constant value) {
        m_Source = std::move(value);
        m_pNode = nullptr;
    }

    /// Uses the first of the interfaces that the node has.
    /// @return false if it has none of them
    bool SetPointer(INodePrivate* node) {
        m_pNode = node;
        return node != nullptr && (TryPointer(InterfaceOf<Interfaces>(*node)) || ...);
    }

    std::variant<std::monostate, Constant, Interfaces*...> m_Source;

private:
    template <class Interface>
    bool TryPointer(Interface* pointer) {
        if (pointer == nullptr) {
            return false;
        }
        m_Source = pointer;
        return true;
    }

    INodePrivate* m_pNode = nullptr;
};

class CIntegerPolyRef : public CPolyRefBase<int64_t, IInteger, IEnumeration, IBoolean, IFloat> {
public:
    CIntegerPolyRef& operator=(int64_t value) {
        SetConstant(value);
        return *this;
    }
    /// RuntimeException for a node of no fitting interface.
    CIntegerPolyRef& operator=(INodePrivate* node);

    int64_t GetValue(bool verify = false, bool ignoreCache = false) const {
        const int64_t* const constant = GetConstant();
        return constant != nullptr ? *constant : ReadSource(verify, ignoreCache);
    }
    void SetValue(int64_t value, bool verify = true) const;
    int64_t GetMin() const;
    int64_t GetMax() const;
    /// The limits as far as integers reach: those of a float may lie beyond.
    int64_t GetReachableMin() const;
    int64_t GetReachableMax() const;
    /// False for a float that takes any value.
    bool HasInc() const;
    /// 1 where the source has none.
    int64_t GetInc() const;
    EIncMode GetIncMode() const;
    int64_autovector_t GetListOfValidValues(bool bounded) const;
    ERepresentation GetRepresentation() const;
    gcstring GetUnit() const;
    bool IsValueCacheValid() const;
    ECachingMode GetCachingMode() const;

private:
    int64_t ReadSource(bool verify, bool ignoreCache) const;
};

class CFloatPolyRef : public CPolyRefBase<double, IFloat, IInteger, IEnumeration> {
public:
    CFloatPolyRef& operator=(double value) {
        SetConstant(value);
        return *this;
    }
    /// RuntimeException for a node of no fitting interface.
    CFloatPolyRef& operator=(INodePrivate* node);

    double GetValue(bool verify = false, bool ignoreCache = false) const;
    void SetValue(double value, bool verify = true) const;
    double GetMin() const;
    double GetMax() const;
    bool HasInc() const;
    double GetInc() const;
    EIncMode GetIncMode() const;
    double_autovector_t GetListOfValidValues(bool bounded) const;
    ERepresentation GetRepresentation() const;
    gcstring GetUnit() const;
    EDisplayNotation GetDisplayNotation() const;
    int64_t GetDisplayPrecision() const;
    bool IsValueCacheValid() const;
    ECachingMode GetCachingMode() const;
};

class CBooleanPolyRef : public CPolyRefBase<bool, IInteger, IEnumeration, IBoolean> {
public:
    CBooleanPolyRef& operator=(bool value) {
        SetConstant(value);
        return *this;
    }
    /// RuntimeException for a node of no fitting interface.
    CBooleanPolyRef& operator=(INodePrivate* node);

    bool GetValue(bool verify = false, bool ignoreCache = false) const;
    ECachingMode GetCachingMode() const;
};

class CStringPolyRef : public CPolyRefBase<gcstring, IString> {
public:
    CStringPolyRef& operator=(const gcstring& value) {
        SetConstant(value);
        return *this;
    }
    /// RuntimeException for a node that is no text.
    CStringPolyRef& operator=(INodePrivate* node);

    gcstring GetValue(bool verify = false, bool ignoreCache = false) const;
    void SetValue(const gcstring& value, bool verify = true);
    int64_t GetMaxLength() const;
    bool IsValueCacheValid() const;
    ECachingMode GetCachingMode() const;
};

/// Writes a node's value to where it is kept: to the node that the reference points to, or,
/// without one, into the reference itself.
template <class Reference, class Value>
void SetOrHold(Reference& reference, const Value& value, bool verify) {
    if (reference.IsConstant()) {
        reference = value;
    } else {
        reference.SetValue(value, verify);
    }
}

/// Rounds half away from zero.
/// @throws RuntimeException that names the operation, outside the range of 64-bit integers
int64_t RoundToInt64(double value, const char* operation);

}  // namespace GenApi_3_0_ORVANE
