#pragma once
/// Features by name, as text.

#include <optional>
#include <string>
#include <vector>

#include "OvIAPI.h"

/// One feature of the interface's table.
struct FeatureRow {
    const char* name;
    OV_FEATURE_ID id;
};

/// All features that have an identifier, in the order of the table.
const std::vector<FeatureRow>& AllFeatures();

/// Raises for a name that no feature has.
OV_FEATURE_ID FeatureByName(const std::string& name);

/// The word for a feature's type.
const char* TypeName(OV_FEATURE_ID id);

/// The value as text. A buffer is written in hexadecimal; a command has none.
std::string ReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// The value as text, or nothing when it can't be read now.
std::optional<std::string> TryReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// Limits, or the entries of an enumeration; empty for the other types.
std::string DescribeRange(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// Sets a feature from text; any text runs a command. An enumeration takes the
/// name of an entry or its number.
void WriteFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id, const std::string& text);
