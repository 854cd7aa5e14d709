#pragma once

#include <string>
#include <string_view>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// The name of the root element, which stands for the map itself and is no node.
inline constexpr std::string_view kRootNodeName = "_RegisterDescription";

/// Resolves the node and text identifiers that properties hold. Owners hold it
/// by its real type, so it is not deleted through this interface. One thread at
/// a time.
class INodeDataMap {
public:
    /// The identifier of a node name. An unknown name gives the invalid
    /// identifier, or, with @p create, reserves the next one.
    virtual NodeID_t GetNodeID(std::string_view name, bool create) = 0;
    /// The name behind a valid identifier; lives until the map next changes.
    virtual const std::string& GetNodeName(NodeID_t NodeID) const = 0;
    /// Stores a text and gives its identifier. Equal texts are not merged.
    virtual StringID_t SetString(std::string_view text) = 0;
    /// The text behind a valid identifier; lives until the map next changes.
    virtual const std::string& GetString(StringID_t StringID) const = 0;

protected:
    INodeDataMap() = default;
    ~INodeDataMap() = default;
    INodeDataMap(const INodeDataMap&) = default;
    INodeDataMap& operator=(const INodeDataMap&) = default;
};

}  // namespace GenApi_3_0_ORVANE
