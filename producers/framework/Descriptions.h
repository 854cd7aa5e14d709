#pragma once
/// Changes of a module's description, for producers whose modules have more features.

#include <string>
#include <string_view>

namespace OvProducer {

/// By which consumers tell descriptions apart.
struct DescriptionIdentity {
    std::string_view model;
    std::string_view product;  ///< a GUID, as the next one
    std::string_view version;
};

/// The description with another identity, with more nodes, and with more categories at the end of
/// its root.
/// @param rootFeatures  lines with a `pFeature` for each
/// @param nodes         of the categories and their features
std::string WithNodes(std::string description, const DescriptionIdentity& identity,
                      std::string_view rootFeatures, std::string_view nodes);

}  // namespace OvProducer
