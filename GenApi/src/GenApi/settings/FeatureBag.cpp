#include "GenApi/FeatureBag.h"

#include <algorithm>
#include <string>

#include "Base/OvAssert.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/Pointer.h"
#include "GenApi/SelectorSet.h"
#include "GenApi/Version.h"
#include "map/FaultyNodes.h"
#include "settings/FeaturePersistence.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Passes features on until there are enough.
class LimitedScript {
public:
    LimitedScript(IPersistScript& script, int64_t maxEntries)
        : m_Script(script), m_MaxEntries(maxEntries) {}

    bool IsFull() const { return m_MaxEntries >= 0 && m_Count >= m_MaxEntries; }
    int64_t GetCount() const { return m_Count; }
    void Persist(IValue& feature) {
        if (!IsFull()) {
            m_Script.PersistFeature(feature);
            ++m_Count;
        }
    }
    void PersistAll(const value_vector& features) {
        for (IValue* const feature : features) {
            Persist(*feature);
        }
    }

private:
    IPersistScript& m_Script;
    int64_t m_MaxEntries;
    int64_t m_Count = 0;
};

/// Behind all combinations stand the selectors as they were found, so that a
/// device that is written in this order ends with them.
void PersistCombinations(IValue& feature, LimitedScript& script) {
    CSelectorSet selectors(&feature);
    value_vector selectorList;
    selectors.GetSelectorList(selectorList, true);
    const int64_t countBefore = script.GetCount();
    ForEachCombination(selectors, [&] {
        if (feature.GetAccessMode() == RW) {
            script.PersistAll(selectorList);
            script.Persist(feature);
        }
        return !script.IsFull();
    });
    if (script.GetCount() != countBefore) {
        script.PersistAll(selectorList);
    }
}

bool IsWanted(INode& node, const gcstring_vector* filter) {
    return node.IsStreamable() && node.IsFeature() &&
           (filter == nullptr || filter->contains(node.GetName()));
}

gcstring VersionText(IDeviceInfo& device) {
    Version_t version;
    device.GetDeviceVersion(version);
    return (std::to_string(version.Major) + "." + std::to_string(version.Minor) + "." +
            std::to_string(version.SubMinor))
        .c_str();
}

gcstring DeviceText(IDeviceInfo& device) {
    return device.GetVendorName() + "." + device.GetModelName() + "::" + device.GetToolTip() +
           " = Device version = " + VersionText(device) +
           " -- Product GUID = " + device.GetProductGuid() +
           " -- Product version GUID = " + device.GetProductVersionGuid();
}

}  // namespace

CFeatureBag::CFeatureBag(const gcstring& bagName) : m_BagName(bagName) {}

CFeatureBag::~CFeatureBag() = default;

void CFeatureBag::Destroy() {
    delete this;
}

void CFeatureBag::SetInfo(const gcstring& info) {
    m_Info = info;
}

void CFeatureBag::PersistFeature(IValue& feature) {
    Append(feature.GetNode()->GetName(), feature.ToString(false, false));
}

void CFeatureBag::Append(const gcstring& name, const gcstring& value) {
    m_Names.push_back(name);
    m_Values.push_back(value);
}

int64_t CFeatureBag::StoreToBag(INodeMap* nodeMap, int64_t maxEntries,
                                const gcstring_vector* filter) {
    INodeMap& map = RequireNodeMap(nodeMap);
    int64_t count = 0;
    ExecuteIfPresent(map, "Std::DeviceFeaturePersistenceStart");
    RunAndEnd(
        [&] {
            if (auto* const device = dynamic_cast<IDeviceInfo*>(nodeMap)) {
                SetInfo(DeviceText(*device));
            }
            count = StoreToBagInternal(map, maxEntries, filter);
        },
        [&] { ExecuteIfPresent(map, "Std::DeviceFeaturePersistenceEnd"); });
    return count;
}

int64_t CFeatureBag::StoreToBagInternal(INodeMap& nodeMap, int64_t maxEntries,
                                        const gcstring_vector* filter) {
    LimitedScript script(*this, maxEntries);
    node_vector nodes;
    nodeMap.GetNodes(nodes);
    for (INode* const node : nodes) {
        if (script.IsFull()) {
            break;
        }
        const CPointer<IValue> feature(node);
        if (feature.IsValid() && IsWanted(*node, filter)) {
            VisitUnlessFaulty(*node, [&] { PersistCombinations(*feature, script); });
        }
    }
    return script.GetCount();
}

void CFeatureBag::RequireWhole() const {
    OV_ASSERT(m_Values.size() == m_Names.size());
}

bool CFeatureBag::operator==(const CFeatureBag& other) const {
    RequireWhole();
    other.RequireWhole();
    const auto isSame = [](const gcstring_vector& a, const gcstring_vector& b) {
        return std::equal(a.begin().operator->(), a.end().operator->(), b.begin().operator->(),
                          b.end().operator->());
    };
    return isSame(m_Names, other.m_Names) && isSame(m_Values, other.m_Values);
}

}  // namespace GenApi_3_0_ORVANE
