#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

#include "camera/FeatureReference.h"
#include "camera/Features.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Interrupts.h"
#include "support/Json.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

struct Feature {
    FeatureRow row;
    bool isWritable = false;
    std::optional<FeatureValue> value;
    FeatureRange range;
    /// Why it can't be looked at; empty when it can.
    std::string failure;
};

/// The first line of a failure, without the word on what to try.
std::string Headline(const ToolError& error) {
    const std::string text = error.what();
    return text.substr(0, text.find('\n'));
}

void Look(OV_DEV_HANDLE camera, Feature& feature) {
    feature.value = ReadIfReadable(camera, feature.row.id);
    Check(OVIsWritable(camera, feature.row.id, &feature.isWritable),
          "look at " + std::string(feature.row.name));
    if (feature.value) {
        feature.range = ReadRange(camera, feature.row.id);
    }
}

/// Nothing for a feature that the camera lacks.
std::optional<Feature> LookAt(OV_DEV_HANDLE camera, const FeatureRow& row) {
    Feature feature{row, false, std::nullopt, {}, ""};
    try {
        bool isImplemented = false;
        Check(OVIsImplemented(camera, row.id, &isImplemented), "look at " + std::string(row.name));
        if (!isImplemented) {
            return std::nullopt;
        }
        Look(camera, feature);
    } catch (const ToolError& error) {
        if (error.Code() == ExitCode::Lost) {
            throw;
        }
        feature.failure = Headline(error);
    }
    return feature;
}

Json Describe(const Feature& feature) {
    Json document = {{"name", feature.row.name},
                     {"type", TypeName(feature.row.id)},
                     {"writable", feature.isWritable},
                     {"value", feature.value ? ToJson(*feature.value) : Json()},
                     {"range", ToJson(feature.range)}};
    if (!feature.failure.empty()) {
        document["failure"] = feature.failure;
    }
    return document;
}

void Print(const Feature& feature) {
    const std::string value = feature.value ? Visible(ToText(*feature.value)) : "-";
    const std::string remark =
        feature.failure.empty() ? Visible(ToText(feature.range)) : Visible(feature.failure);
    std::printf("%-40s %-8s %-2s %s%s%s%s\n", feature.row.name, TypeName(feature.row.id),
                feature.isWritable ? "rw" : "r", value.c_str(), remark.empty() ? "" : "  (",
                remark.c_str(), remark.empty() ? "" : ")");
}

/// Those that a command needs, with as much access as they ask for.
Access AccessFor(const std::vector<FeatureReference>& references) {
    const bool choose =
        std::any_of(references.begin(), references.end(),
                    [](const FeatureReference& reference) { return !reference.choices.empty(); });
    return choose ? Access::Control : Access::ReadOnly;
}

FeatureValue Read(OV_DEV_HANDLE camera, const FeatureReference& reference) {
    SelectedEntries selected(camera, reference.choices);
    FeatureValue value = ReadFeature(camera, reference.feature.id);
    selected.PutBack();
    return value;
}

/// Values for people or for machines, in the order in which they come.
class Values {
public:
    explicit Values(bool json) : m_json(json) {}

    void Add(const std::string& name, const Json& value, const std::string& line) {
        if (m_json) {
            m_document[name] = value;
        } else {
            std::printf("%s\n", line.c_str());
            FlushOutput();
        }
    }
    void End() const {
        if (m_json) {
            PrintJson(m_document);
        }
    }

private:
    const bool m_json;
    Json m_document = Json::object();
};

bool IsSame(const std::string& asked, const std::string& made) {
    if (asked == made) {
        return true;
    }
    char* end = nullptr;
    const double number = std::strtod(asked.c_str(), &end);
    return end != asked.c_str() && *end == '\0' && number == std::strtod(made.c_str(), nullptr);
}

/// What was done, and the selectors as they were then.
struct Done {
    const Assignment* assignment;
    std::vector<SelectorChoice> choices;
};

/// A value may be chosen by any selector that was set before it.
bool IsSelector(const FeatureRow& row) {
    return std::string_view(row.name).ends_with("Selector");
}

void SetAll(OV_DEV_HANDLE camera, const std::vector<Assignment>& assignments,
            Interrupts& interrupts, std::vector<Done>& done) {
    std::vector<SelectorChoice> choices;
    for (const Assignment& assignment : assignments) {
        interrupts.Check();
        const auto& [target, value] = assignment;
        SelectedEntries selected(camera, target.choices);
        WriteFeature(camera, target.feature.id, value.value_or(""));
        if (IsSelector(target.feature) && target.choices.empty()) {
            choices.push_back({target.feature, *value});
        }
        done.push_back({&assignment, choices});
        done.back().choices.insert(done.back().choices.end(), target.choices.begin(),
                                   target.choices.end());
        selected.PutBack();
    }
}

void TellValue(const FeatureReference& target, const FeatureValue& value, const std::string& asked,
               Values& values) {
    const std::string made = ToText(value);
    // An entry's number and a text's bytes have more than one form.
    const bool isNumber =
        std::holds_alternative<int64_t>(value) || std::holds_alternative<double>(value);
    const bool isOther = isNumber && !IsSame(asked, made);
    values.Add(target.text, ToJson(value),
               target.text + " = " + Visible(made) + (isOther ? ", not " + asked : ""));
}

/// What the camera made of it.
void Tell(OV_DEV_HANDLE camera, const Done& done, Values& values) {
    const auto& [target, asked] = *done.assignment;
    if (IsCommand(target.feature.id)) {
        values.Add(target.text, nullptr, target.text + " done");
        return;
    }
    SelectedEntries selected(camera, done.choices);
    if (const auto value = TryReadFeature(camera, target.feature.id)) {
        TellValue(target, *value, *asked, values);
    } else {
        values.Add(target.text, nullptr, target.text + " is set, but can't be read");
    }
    selected.PutBack();
}

}  // namespace

void ListFeatures(const CameraChoice& choice, bool json) {
    const Camera camera(choice, Access::ReadOnly);
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
    Interrupts interrupts;
    std::vector<FeatureReference> references;
    std::transform(names.begin(), names.end(), std::back_inserter(references), ParseReference);
    const Camera camera(choice, AccessFor(references));
    Values values(json);
    std::optional<ToolError> failure;
    for (const FeatureReference& reference : references) {
        interrupts.Check();
        try {
            const FeatureValue value = Read(camera.Handle(), reference);
            values.Add(reference.text, ToJson(value), Visible(ToText(value)));
        } catch (const ToolError& error) {
            if (references.size() == 1 || error.Code() == ExitCode::Lost) {
                throw;
            }
            // The others still have their lines.
            values.Add(reference.text, nullptr, "-");
            failure = failure ? failure : error;
        }
    }
    values.End();
    if (failure) {
        throw *failure;
    }
}

void Set(const CameraChoice& choice, const std::vector<std::string>& arguments, bool json) {
    Interrupts interrupts;
    const std::vector<Assignment> assignments = ParseAssignments(arguments);
    Camera camera(choice, Access::Control);
    std::vector<Done> done;
    const auto failure = FailureOf([&] { SetAll(camera.Handle(), assignments, interrupts, done); });
    if (!done.empty()) {
        camera.Reopen();
        Values values(json);
        for (const Done& one : done) {
            Tell(camera.Handle(), one, values);
        }
        values.End();
    }
    if (failure) {
        throw *failure;
    }
}

void SaveSettings(const CameraChoice& choice, const std::string& file) {
    const Camera camera(choice, Access::Control);
    Check(OVExportConfigFile(camera.Handle(), file.c_str()), "save settings to " + file);
}

void LoadSettings(const CameraChoice& choice, const std::string& file, bool verify) {
    const Camera camera(choice, Access::Control);
    Check(OVImportConfigFile(camera.Handle(), file.c_str(), verify), "load settings from " + file);
}
