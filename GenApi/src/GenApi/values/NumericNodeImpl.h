#pragma once

#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "node/DisplayProperties.h"
#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// What integer and float nodes share: a value that the node itself or others hold, with limits
/// of its own where the description has some.
///
/// The value has one source with any number of copies, or an index selects one source among
/// several. A source that isn't a node is the value itself, which writes change; those that an
/// index selects stay as described. Types has the `Value`, the `List` of values, the reference to
/// a source, and the conversions from a property and from a text. Call the Internal... operations
/// with the map's lock held.
template <class Types>
class CNumericNodeImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    void SetInvalid(ESetInvalidMode mode) override;
    EAccessMode InternalGetAccessMode() override {
        return CachedAccessMode([this] { return ComputeMode(); });
    }

protected:
    ECachingMode ComputeCachingMode() override;
    ECachingMode ComputeLimitsCachingMode() override;

    using Value_t = typename Types::Value;
    using List_t = typename Types::List;
    using PolyRef_t = typename Types::PolyRef;

    void InternalSetValue(Value_t value, bool verify);
    Value_t InternalGetValue(bool verify, bool ignoreCache);
    Value_t InternalGetMin();
    Value_t InternalGetMax();
    bool InternalHasInc();
    Value_t InternalGetInc();
    List_t InternalGetListOfValidValues();
    ERepresentation InternalGetRepresentation();
    gcstring InternalGetUnit();

    /// Returns the source that reads use. The index isn't part of the value: it comes from the
    /// cache even when the value is verified.
    const PolyRef_t& GetSource(bool ignoreCache = false) const;

    DisplayProperties m_Display;

private:
    static constexpr unsigned SourceRoles = ReadRole | WriteRole | ValueRole;

    bool IsIndexed() const { return m_Index.IsInitialized(); }
    bool SetSourceProperty(const CProperty& property);
    bool SetLimitProperty(const CProperty& property);
    void SetValidValues(std::string_view text);
    PolyRef_t Referred(const CProperty& property, unsigned roles);
    EAccessMode ComputeMode();
    EAccessMode ComputeIndexedMode();
    bool DoAllSourcesFollow() const;

    PolyRef_t m_Source;
    /// Further nodes that a write goes to.
    std::vector<PolyRef_t> m_Copies;
    CIntegerPolyRef m_Index;
    std::map<int64_t, PolyRef_t> m_Indexed;
    PolyRef_t m_Default;
    PolyRef_t m_Min;
    PolyRef_t m_Max;
    PolyRef_t m_Inc;
    std::optional<List_t> m_ValidValues;
};

struct IntegerNodeTypes {
    using Value = int64_t;
    using List = int64_autovector_t;
    using PolyRef = CIntegerPolyRef;
    static Value ValueOf(const CProperty& property) { return property.Integer(); }
    static bool HasInc(const PolyRef& /*source*/) { return true; }
    /// One of several sources may well reach further than integers do.
    static Value MinBesideOthers(const PolyRef& source) { return source.GetReachableMin(); }
    static Value MaxBesideOthers(const PolyRef& source) { return source.GetReachableMax(); }
    static bool FromText(const gcstring& text, Value* value);
};

struct FloatNodeTypes {
    using Value = double;
    using List = double_autovector_t;
    using PolyRef = CFloatPolyRef;
    static Value ValueOf(const CProperty& property) { return property.Float(); }
    static bool HasInc(const PolyRef& source) { return source.HasInc(); }
    static Value MinBesideOthers(const PolyRef& source) { return source.GetMin(); }
    static Value MaxBesideOthers(const PolyRef& source) { return source.GetMax(); }
    static bool FromText(const gcstring& text, Value* value);
};

extern template class CNumericNodeImpl<IntegerNodeTypes>;
extern template class CNumericNodeImpl<FloatNodeTypes>;

}  // namespace GenApi_3_0_ORVANE
