#pragma once

#include <string>
#include <string_view>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// The name of the root element, which is the map itself and not a node.
inline constexpr std::string_view kRootNodeName = "_RegisterDescription";

/// Resolves the node and text identifiers that properties hold. Owners hold it
/// by its real type, so it is not deleted through this interface. One thread at
/// a time.
class INodeDataMap {
public:
    /// Returns the identifier of a node name. For an unknown name that is the invalid identifier,
    /// or with @p create the next free one, which is then reserved.
    virtual NodeID_t GetNodeID(std::string_view name, bool create) = 0;
    /// Returns the name of a valid identifier; it lives until the map next changes.
    virtual const std::string& GetNodeName(NodeID_t NodeID) const = 0;
    /// Stores a text and returns its identifier. Equal texts aren't merged.
    virtual StringID_t SetString(std::string_view text) = 0;
    /// Returns the text of a valid identifier, with a zero at its end. It lives as long as the map
    /// has it, and never moves.
    virtual std::string_view GetString(StringID_t StringID) const = 0;

protected:
    INodeDataMap() = default;
    ~INodeDataMap() = default;
    INodeDataMap(const INodeDataMap&) = default;
    INodeDataMap& operator=(const INodeDataMap&) = default;
};

}  // namespace GenApi_3_0_ORVANE
