#pragma once
/// Features by name.

#include <optional>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "camera/FeatureValue.h"

/// One feature of the interface's table.
struct FeatureRow {
    const char* name;
    OV_FEATURE_ID id;
};

/// All features that have an identifier, in the order of the table.
const std::vector<FeatureRow>& AllFeatures();

/// Raises for a name that no feature has.
OV_FEATURE_ID FeatureByName(const std::string& name);

bool IsCommand(OV_FEATURE_ID id);

/// The word for a feature's type.
const char* TypeName(OV_FEATURE_ID id);

/// The value; raises for a command, which has none.
FeatureValue ReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// The value, or nothing when it can't be read now. Raises a failure to read it.
std::optional<FeatureValue> ReadIfReadable(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// The value, or nothing when it can't be read, for whatever reason but the camera's loss,
/// which is raised.
std::optional<FeatureValue> TryReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

FeatureRange ReadRange(OV_DEV_HANDLE camera, OV_FEATURE_ID id);

/// Sets a feature from text; any text runs a command. An enumeration takes the
/// name of an entry or its number. The failure of a value out of the range names the range.
void WriteFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id, const std::string& text);
