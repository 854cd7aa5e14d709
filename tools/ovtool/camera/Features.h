#pragma once
/// Features by name.

#include <optional>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "camera/FeatureValue.h"
#include "camera/Node.h"

/// Of a feature that only the camera's description knows.
constexpr OV_FEATURE_ID kNoIdentifier = 0;

/// Where a feature without an identifier is looked for, in this order.
constexpr OV_NODE_MODULE kModules[] = {OV_NODE_MODULE_CAMERA, OV_NODE_MODULE_HOST_DEVICE,
                                       OV_NODE_MODULE_STREAM, OV_NODE_MODULE_INTERFACE,
                                       OV_NODE_MODULE_SYSTEM};

struct FeatureRow {
    std::string name;
    OV_FEATURE_ID id;
};

/// All features that have an identifier, in the order of the table.
const std::vector<FeatureRow>& AllFeatures();

/// Any name is one: only a camera knows whether it has the feature.
FeatureRow RowByName(const std::string& name);
FeatureRow RowOf(OV_FEATURE_ID id);

/// False for a feature that is surely none.
bool MayBeCommand(const FeatureRow& row);
bool IsCommand(OV_DEV_HANDLE camera, const FeatureRow& row);

/// Nothing for a feature that no description has.
std::optional<Node> FindNode(OV_DEV_HANDLE camera, const FeatureRow& row);
/// Raises for a feature that no description has.
Node NodeOf(OV_DEV_HANDLE camera, const FeatureRow& row);
/// Raises a mistake of the user for a name without an identifier that the camera's description
/// hasn't, with the names that are like it.
void RequireFeature(OV_DEV_HANDLE camera, const FeatureRow& row);

/// The value; raises for a command, which has none.
FeatureValue ReadFeature(OV_DEV_HANDLE camera, const FeatureRow& row);

/// The value, or nothing when it can't be read now. Raises a failure to read it.
std::optional<FeatureValue> ReadIfReadable(OV_DEV_HANDLE camera, const FeatureRow& row);

/// The value, or nothing when it can't be read, for whatever reason but the camera's loss,
/// which is raised.
std::optional<FeatureValue> TryReadFeature(OV_DEV_HANDLE camera, const FeatureRow& row);

FeatureRange ReadRange(OV_DEV_HANDLE camera, const FeatureRow& row);

/// Sets a feature from text; any text runs a command. An enumeration takes the
/// name of an entry or its number. The failure of a value out of the range names the range.
void WriteFeature(OV_DEV_HANDLE camera, const FeatureRow& row, const std::string& text);
