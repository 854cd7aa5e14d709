#pragma once
/// Takes the place of a data map for live nodes that are made from a cache file.

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Base/OvAssert.h"
#include "properties/INodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// Resolves texts for the nodes, and collects the names that were read so far. The texts are in
/// the bytes of the file.
class DirectNodeDataMap final : public INodeDataMap {
public:
    DirectNodeDataMap(std::vector<std::string_view> strings, size_t numNodes)
        : m_Strings(std::move(strings)), m_Names(numNodes) {}

    /// Links in the file are identifiers already.
    NodeID_t GetNodeID(std::string_view, bool) override {
        OV_ASSERT(0);
        return {};
    }
    /// Live nodes have their names themselves.
    const std::string& GetNodeName(NodeID_t) const override {
        OV_ASSERT(0);
        return m_NoName;
    }
    /// A file has all texts from the start.
    StringID_t SetString(std::string_view) override {
        OV_ASSERT(0);
        return {};
    }
    std::string_view GetString(StringID_t StringID) const override {
        OV_ASSERT(StringID.IsValid());
        return m_Strings.at(static_cast<size_t>(StringID.ToIndex()));
    }
    /// @return false for a node that has a name already
    bool SetNodeName(NodeID_t NodeID, StringID_t name) {
        StringID_t& slot = m_Names.at(static_cast<size_t>(NodeID.ToIndex()));
        const bool isFirst = !slot.IsValid();
        slot = name;
        return isFirst;
    }
    /// Whether each node has a name of its own, and the first that of the root
    /// element.
    bool AreNamesComplete() const {
        std::unordered_set<std::string_view> names;
        names.reserve(m_Names.size());
        return GetNameOrNothing(m_Names.front()) == kRootNodeName &&
               std::all_of(m_Names.begin(), m_Names.end(), [&](StringID_t name) {
                   return name.IsValid() && names.insert(GetString(name)).second;
               });
    }

private:
    std::string_view GetNameOrNothing(StringID_t name) const {
        return name.IsValid() ? GetString(name) : std::string_view();
    }

    std::vector<std::string_view> m_Strings;
    std::vector<StringID_t> m_Names;
    std::string m_NoName;
};

}  // namespace GenApi_3_0_ORVANE
