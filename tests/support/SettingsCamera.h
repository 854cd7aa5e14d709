#pragma once
/// Describes cameras with settings.

#include "support/FeatureCalls.h"

/// Describes a number in the camera's memory that is never cached.
/// @param more  elements that all nodes have
inline std::string DescribeNumber(const std::string& name, uint64_t address,
                                  const std::string& more) {
    return DescriptionXml::RegXml{.name = name,
                                  .address = static_cast<int64_t>(address),
                                  .caching = "NoCache",
                                  .common = more,
                                  .sign = ""}();
}

inline const std::string kStreamable = "<Streamable>Yes</Streamable>";

/// A camera "Own Camera" with the settings "Offset" and "Gain", which are given.
inline std::string DescribeSettings(const std::string& settings) {
    return DescribeCamera(
        "<Category Name=\"Root\"><pFeature>DeviceModelName</pFeature><pFeature>Offset</pFeature>"
        "<pFeature>Gain</pFeature></Category>"
        "<String Name=\"DeviceModelName\"><Value>Own Camera</Value></String>" +
        settings);
}
