// What integers and floats share: a value that the node or others hold, with limits of its own
// where the description has some. A value may be written to several nodes at once, or an index
// may select the one among several that counts.

#include "values/NumericNodeImpl.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// Lists of valid values are plain numbers, however the node is displayed.
bool IntegerNodeTypes::FromText(const gcstring& text, Value* value) {
    return String2Value(text.c_str(), value, PureNumber);
}

bool FloatNodeTypes::FromText(const gcstring& text, Value* value) {
    return String2Value(text, value);
}

/// In steps, because a single switch over all properties would be too long to read.
template <class Types>
void CNumericNodeImpl<Types>::SetProperty(const CProperty& property) {
    if (SetSourceProperty(property) || SetLimitProperty(property) || m_Display.Set(property)) {
        return;
    }
    if (property.GetPropertyID() == CPropertyID::ValidValueSet_ID) {
        SetValidValues(property.String());
    } else {
        CNodeImpl::SetProperty(property);
    }
}

/// What a property refers to: a node, or the value that it holds itself.
template <class Types>
auto CNumericNodeImpl<Types>::Referred(const CProperty& property, unsigned roles) -> PolyRef_t {
    PolyRef_t reference;
    if (property.GetPropertyID().IsLink()) {
        reference = LinkChild(property, roles);
    } else {
        reference = Types::ValueOf(property);
    }
    return reference;
}

template <class Types>
bool CNumericNodeImpl<Types>::SetSourceProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
        case CPropertyID::pValue_ID:
            m_Source = Referred(property, SourceRoles);
            return true;
        case CPropertyID::pValueCopy_ID:
            m_Copies.push_back(Referred(property, SourceRoles));
            return true;
        case CPropertyID::pIndex_ID:
            m_Index = LinkChild(property, ReadRole);
            return true;
        case CPropertyID::ValueIndexed_ID:
        case CPropertyID::pValueIndexed_ID:
            OV_ASSERT(property.GetAttribute() != nullptr);
            m_Indexed[property.GetAttribute()->Integer()] = Referred(property, SourceRoles);
            return true;
        case CPropertyID::ValueDefault_ID:
        case CPropertyID::pValueDefault_ID:
            m_Default = Referred(property, SourceRoles);
            return true;
        default:
            return false;
    }
}

template <class Types>
bool CNumericNodeImpl<Types>::SetLimitProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Min_ID:
        case CPropertyID::pMin_ID:
            m_Min = Referred(property, ReadRole);
            return true;
        case CPropertyID::Max_ID:
        case CPropertyID::pMax_ID:
            m_Max = Referred(property, ReadRole);
            return true;
        case CPropertyID::Inc_ID:
        case CPropertyID::pInc_ID:
            m_Inc = Referred(property, ReadRole);
            return true;
        default:
            return false;
    }
}

/// Cameras separate the values by semicolons, blanks and line breaks in any mixture.
template <class Types>
void CNumericNodeImpl<Types>::SetValidValues(std::string_view text) {
    constexpr std::string_view kSeparators = "; \t\r\n";
    m_ValidValues.emplace();
    for (size_t begin = text.find_first_not_of(kSeparators); begin != std::string_view::npos;
         begin = text.find_first_not_of(kSeparators, begin)) {
        const size_t end = std::min(text.find_first_of(kSeparators, begin), text.size());
        const gcstring token(text.data() + begin, end - begin);
        Value_t value{};
        if (!Types::FromText(token, &value)) {
            INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert string '%s' to a value.",
                                            m_Name.c_str(), token.c_str());
        }
        m_ValidValues->push_back(value);
        begin = end;
    }
}

/// Finds the children that count for the access mode whichever source is selected. A node may be
/// linked as a source and in another role as well, so only as many of its links are left out as
/// there are sources.
template <class Types>
void CNumericNodeImpl<Types>::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (!IsIndexed()) {
        return;
    }
    std::unordered_map<INodePrivate*, size_t> sources;
    ++sources[m_Default.GetNode()];
    for (const auto& [index, source] : m_Indexed) {
        ++sources[source.GetNode()];
    }
    for (Child& child : m_Children) {
        if ((child.roles & ReadRole) == 0) {
            continue;
        }
        const auto source = sources.find(child.node);
        if (source == sources.end() || source->second == 0) {
            child.roles |= BesideIndexRole;
        } else {
            --source->second;
        }
    }
}

template <class Types>
void CNumericNodeImpl<Types>::SetInvalid(ESetInvalidMode mode) {
    CNodeImpl::SetInvalid(mode);
    if (IsIndexed()) {
        // A write may have been to the index: then another source is selected,
        // with rights of its own, even where the value just written is kept.
        m_AccessModeCache = _UndefinedAccesMode;
    }
}

/// If the index may change unnoticed, nothing of this node can be kept.
template <class Types>
ECachingMode CNumericNodeImpl<Types>::ComputeCachingMode() {
    const ECachingMode mode = CNodeImpl::ComputeCachingMode();
    return IsIndexed() ? Combine(mode, m_Index.GetCachingMode()) : mode;
}

/// The node's own limits count, and for those that it lacks the limits of its sources.
template <class Types>
ECachingMode CNumericNodeImpl<Types>::ComputeLimitsCachingMode() {
    ECachingMode mode = InternalGetCachingMode();
    bool isComplete = true;
    for (const PolyRef_t* const limit : {&m_Min, &m_Max, &m_Inc}) {
        isComplete = isComplete && limit->IsInitialized();
        if (limit->IsPointer()) {
            mode = Combine(mode, limit->GetCachingMode());
        }
    }
    if (!isComplete) {
        ForEachChild(WriteRole, [&mode](INodePrivate& source) {
            mode = Combine(mode, source.InternalGetLimitsCachingMode());
        });
    }
    return mode;
}

/// The default applies to every value of the index that isn't listed.
template <class Types>
auto CNumericNodeImpl<Types>::GetSource(bool ignoreCache) const -> const PolyRef_t& {
    if (!IsIndexed()) {
        return m_Source;
    }
    const auto found = m_Indexed.find(m_Index.GetValue(false, ignoreCache));
    return found == m_Indexed.end() ? m_Default : found->second;
}

/// A value that can't be written to all copies can't be written at all: they would differ
/// afterwards.
template <class Types>
EAccessMode CNumericNodeImpl<Types>::ComputeMode() {
    if (IsIndexed()) {
        return ComputeIndexedMode();
    }
    const EAccessMode mode = ComputeAccessMode(m_Source.GetNode());
    if (IsWritable(mode) && !DoAllSourcesFollow()) {
        return mode == RW ? RO : NA;
    }
    return mode;
}

/// Sources that aren't selected don't count, so that a camera may well lack one of them.
template <class Types>
EAccessMode CNumericNodeImpl<Types>::ComputeIndexedMode() {
    const EAccessMode indexMode = m_Index.GetNode()->GetAccessMode();
    if (!IsReadable(indexMode)) {
        return indexMode == NI ? NI : NA;
    }
    const PolyRef_t& source = GetSource();
    if (!source.IsInitialized()) {
        return NA;
    }
    const EAccessMode mode = source.IsConstant() ? RO : source.GetNode()->GetAccessMode();
    return ComputeAccessMode(mode, BesideIndexRole);
}

/// Whether whatever the first source accepts can be written to all copies as well. A copy without
/// an increment accepts everything.
template <class Types>
bool CNumericNodeImpl<Types>::DoAllSourcesFollow() const {
    return std::all_of(m_Copies.begin(), m_Copies.end(), [this](const PolyRef_t& copy) {
        if (!IsWritable(copy.GetNode()->GetAccessMode())) {
            return false;
        }
        return !copy.HasInc() || (Types::HasInc(m_Source) && copy.GetInc() == m_Source.GetInc());
    });
}

/// The source comes first: if it refuses the value, no copy has changed.
template <class Types>
void CNumericNodeImpl<Types>::InternalSetValue(Value_t value, bool verify) {
    if (IsIndexed()) {
        GetSource().SetValue(value, verify);
        return;
    }
    if (!m_Source.IsConstant()) {
        m_Source.SetValue(value, verify);
    }
    for (const PolyRef_t& copy : m_Copies) {
        copy.SetValue(value, verify);
    }
    if (m_Source.IsConstant()) {
        // The last of all, so that it stays as it was where a copy fails.
        m_Source = value;
    }
}

/// Copies are never read: they follow the first source.
template <class Types>
auto CNumericNodeImpl<Types>::InternalGetValue(bool verify, bool ignoreCache) -> Value_t {
    return GetSource(ignoreCache).GetValue(verify, ignoreCache);
}

/// A limit of the node itself replaces those of the sources. Among several sources the narrowest
/// limits count, since the value has to suit all of them.
template <class Types>
auto CNumericNodeImpl<Types>::InternalGetMin() -> Value_t {
    if (m_Min.IsInitialized()) {
        return m_Min.GetValue();
    }
    if (IsIndexed()) {
        return GetSource().GetMin();
    }
    constexpr Value_t kLowest = std::numeric_limits<Value_t>::lowest();
    if (m_Copies.empty()) {
        return std::max(kLowest, m_Source.GetMin());
    }
    Value_t min = std::max(kLowest, Types::MinBesideOthers(m_Source));
    for (const PolyRef_t& copy : m_Copies) {
        min = std::max(min, Types::MinBesideOthers(copy));
    }
    return min;
}

/// As for the minimum.
template <class Types>
auto CNumericNodeImpl<Types>::InternalGetMax() -> Value_t {
    if (m_Max.IsInitialized()) {
        return m_Max.GetValue();
    }
    if (IsIndexed()) {
        return GetSource().GetMax();
    }
    constexpr Value_t kHighest = std::numeric_limits<Value_t>::max();
    if (m_Copies.empty()) {
        return std::min(kHighest, m_Source.GetMax());
    }
    Value_t max = std::min(kHighest, Types::MaxBesideOthers(m_Source));
    for (const PolyRef_t& copy : m_Copies) {
        max = std::min(max, Types::MaxBesideOthers(copy));
    }
    return max;
}

/// The increments of copies don't count: DoAllSourcesFollow has made sure that they suit.
template <class Types>
bool CNumericNodeImpl<Types>::InternalHasInc() {
    return m_Inc.IsInitialized() || Types::HasInc(GetSource());
}

template <class Types>
auto CNumericNodeImpl<Types>::InternalGetInc() -> Value_t {
    return m_Inc.IsInitialized() ? m_Inc.GetValue() : GetSource().GetInc();
}

/// A node with limits or an increment of its own says which values are valid, so a list below it
/// doesn't apply.
template <class Types>
auto CNumericNodeImpl<Types>::InternalGetListOfValidValues() -> List_t {
    if (m_Min.IsInitialized() || m_Max.IsInitialized() || m_Inc.IsInitialized()) {
        return {};
    }
    const bool hasOwn = m_ValidValues.has_value() && m_ValidValues->size() != 0;
    return hasOwn ? *m_ValidValues : GetSource().GetListOfValidValues(false);
}

template <class Types>
ERepresentation CNumericNodeImpl<Types>::InternalGetRepresentation() {
    return m_Display.representation != _UndefinedRepresentation ? m_Display.representation
                                                                : GetSource().GetRepresentation();
}

template <class Types>
gcstring CNumericNodeImpl<Types>::InternalGetUnit() {
    return m_Display.unit.empty() ? GetSource().GetUnit() : TextOf(m_Display.unit);
}

template class CNumericNodeImpl<IntegerNodeTypes>;
template class CNumericNodeImpl<FloatNodeTypes>;

}  // namespace GenApi_3_0_ORVANE
