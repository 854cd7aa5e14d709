#pragma once
/// Features and other nodes of an open camera, by name.

#include <optional>
#include <string>
#include <vector>

#include "OvINodes.h"
#include "camera/FeatureValue.h"

/// A node. All calls raise the library's failures.
class Node {
public:
    explicit Node(OV_NODE_HANDLE handle);
    /// Raises for a name that isn't there.
    Node(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const std::string& name);
    /// Nothing for a name that isn't there.
    static std::optional<Node> Find(OV_DEV_HANDLE camera, OV_NODE_MODULE module,
                                    const std::string& name);
    /// The features of a module, in the order of their tree.
    static std::vector<Node> All(OV_DEV_HANDLE camera, OV_NODE_MODULE module);

    OV_NODE_HANDLE Handle() const { return m_handle; }
    const std::string& Name() const { return m_name; }
    OV_NODE_TYPE Type() const { return m_info.type; }
    OV_NODE_VISIBILITY Visibility() const { return m_info.visibility; }
    uint32_t Flags() const { return m_info.nFlags; }
    /// At present.
    OV_NODE_ACCESS Access() const;
    bool IsThere() const { return Access() != OV_NODE_ACCESS_NOT_IMPLEMENTED; }
    bool IsReadable() const;
    bool IsWritable() const;

    std::string Text(OV_NODE_TEXT text) const;
    /// The names of all that the description says of it.
    std::vector<std::string> PropertyNames() const;
    /// What the description says of it under that name, one after the other; nothing if it doesn't.
    std::vector<std::string> Property(const std::string& name) const;
    /// What qualifies each of them, such as the name of a variable.
    std::vector<std::string> PropertyAttributes(const std::string& name) const;
    std::vector<Node> Related(OV_NODE_RELATION relation) const;
    /// Those that can be chosen at present.
    std::vector<Node> AvailableEntries() const;
    /// Of an enumeration's value, or of an entry.
    std::string Symbolic() const;
    int64_t Number() const;

    /// The value; raises for a node that has none.
    FeatureValue Read() const;
    FeatureRange ReadRange() const;

private:
    std::vector<std::string> PropertyPart(const std::string& name,
                                          OV_NODE_PROPERTY_PART part) const;

    OV_NODE_HANDLE m_handle;
    std::string m_name;
    OV_NODE_INFO m_info{};
};

/// The word for a type.
const char* TypeName(OV_NODE_TYPE type);
/// The word for what can be done with a node.
const char* NodeAccessName(OV_NODE_ACCESS access);
/// The word for those that a node is meant for.
const char* VisibilityName(OV_NODE_VISIBILITY visibility);
/// The names of the visibilities, from the widest.
const std::vector<std::string>& VisibilityNames();
