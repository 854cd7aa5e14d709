#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/Features.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"

namespace {

struct Feature {
    FeatureRow row;
    bool isWritable = false;
    std::optional<FeatureValue> value;
    FeatureRange range;
};

/// Nothing for a feature that the camera lacks.
std::optional<Feature> LookAt(OV_DEV_HANDLE camera, const FeatureRow& row) {
    const std::string what = "look at " + std::string(row.name);
    bool isImplemented = false;
    Check(OVIsImplemented(camera, row.id, &isImplemented), what);
    if (!isImplemented) {
        return std::nullopt;
    }
    Feature feature{row, false, TryReadFeature(camera, row.id), {}};
    Check(OVIsWritable(camera, row.id, &feature.isWritable), what);
    if (feature.value) {
        feature.range = ReadRange(camera, row.id);
    }
    return feature;
}

Json Describe(const Feature& feature) {
    return {{"name", feature.row.name},
            {"type", TypeName(feature.row.id)},
            {"writable", feature.isWritable},
            {"value", feature.value ? ToJson(*feature.value) : Json()},
            {"range", ToJson(feature.range)}};
}

void Print(const Feature& feature) {
    const std::string value = feature.value ? ToText(*feature.value) : "-";
    const std::string range = ToText(feature.range);
    std::printf("%-40s %-8s %-2s %s%s%s%s\n", feature.row.name, TypeName(feature.row.id),
                feature.isWritable ? "rw" : "r", value.c_str(), range.empty() ? "" : "  (",
                range.c_str(), range.empty() ? "" : ")");
}

}  // namespace

void ListFeatures(const CameraChoice& choice, bool json) {
    const Camera camera(choice);
    Json features = Json::array();
    for (const FeatureRow& row : AllFeatures()) {
        if (const auto feature = LookAt(camera.Handle(), row)) {
            if (json) {
                features.push_back(Describe(*feature));
            } else {
                Print(*feature);
            }
        }
    }
    if (json) {
        PrintJson({{"features", features}});
    }
}

void Get(const CameraChoice& choice, const std::vector<std::string>& names, bool json) {
    const Camera camera(choice);
    Json values = Json::object();
    for (const std::string& name : names) {
        const FeatureValue value = ReadFeature(camera.Handle(), FeatureByName(name));
        if (json) {
            values[name] = ToJson(value);
        } else {
            std::printf("%s\n", ToText(value).c_str());
        }
    }
    if (json) {
        PrintJson(values);
    }
}

void Set(const CameraChoice& choice, const std::string& name, const std::string& value) {
    const Camera camera(choice);
    WriteFeature(camera.Handle(), FeatureByName(name), value);
}

void SaveSettings(const CameraChoice& choice, const std::string& file) {
    const Camera camera(choice);
    Check(OVExportConfigFile(camera.Handle(), file.c_str()), "save settings to " + file);
}

void LoadSettings(const CameraChoice& choice, const std::string& file, bool verify) {
    const Camera camera(choice);
    Check(OVImportConfigFile(camera.Handle(), file.c_str(), verify), "load settings from " + file);
}
