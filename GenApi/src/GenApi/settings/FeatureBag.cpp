// The settings of a device as names and texts: storing them. Writing them back is in
// FeatureBagLoad.cpp, the text form in FeatureBagStream.cpp.

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

/// Passes features on until there are as many as the caller wants.
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

/// Stores a feature once for each combination of its selectors, each time after the selectors. At
/// the end come the selectors as they were found, so that a device which is written in this order
/// ends with them.
void PersistCombinations(IValue& feature, LimitedScript& script) {
    CSelectorSet selectors(&feature);
    value_vector selectorList;
    selectors.GetSelectorList(selectorList, true);
    const int64_t countBefore = script.GetCount();
    ForEachCombination(selectors, [&] {
        // Values that can't be written back aren't stored. A feature may be writable for some
        // combinations of its selectors only.
        if (feature.GetAccessMode() == RW) {
            script.PersistAll(selectorList);
            script.Persist(feature);
        }
        return !script.IsFull();
    });
    // Entries that move the selectors need entries that move them back.
    if (script.GetCount() != countBefore) {
        script.PersistAll(selectorList);
    }
}

/// Nodes that aren't features, such as the registers below them, would be stored twice.
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

/// For people, and for programs that want to know whether the settings are those of such a
/// device.
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

/// Without verification: the value that the device has at present is stored even if it is outside
/// the limits.
void CFeatureBag::PersistFeature(IValue& feature) {
    Append(feature.GetNode()->GetName(), feature.ToString(false, false));
}

void CFeatureBag::Append(const gcstring& name, const gcstring& value) {
    m_Names.push_back(name);
    m_Values.push_back(value);
}

/// The two commands tell a device that its settings are being stored: it may then show values
/// that don't change meanwhile. Once the first has succeeded, the second is
/// sent even if storing fails.
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

/// In the order of the nodes. A feature whose description is faulty is skipped and logged, so
/// that all others are stored; a failure of the device ends the call.
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

/// Both lists grow together only.
void CFeatureBag::RequireWhole() const {
    OV_ASSERT(m_Values.size() == m_Names.size());
}

/// Compares the entries only: the description of the device differs even between two devices
/// of one model.
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
