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

/// Those that a command needs, with as much access as they ask for.
Access AccessFor(const std::vector<FeatureReference>& references) {
    const bool choose =
        std::any_of(references.begin(), references.end(),
                    [](const FeatureReference& reference) { return !reference.choices.empty(); });
    return choose ? Access::Control : Access::ReadOnly;
}

FeatureValue Read(OV_DEV_HANDLE camera, const FeatureReference& reference) {
    SelectedEntries selected(camera, reference.choices);
    FeatureValue value = ReadFeature(camera, reference.feature);
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

void RequireFeatures(OV_DEV_HANDLE camera, const FeatureReference& reference) {
    RequireFeature(camera, reference.feature);
    for (const SelectorChoice& choice : reference.choices) {
        RequireFeature(camera, choice.selector);
    }
}

/// Before anything is set: a mistake in the last word must leave the camera as it was.
void RequireAssignable(OV_DEV_HANDLE camera, const std::vector<Assignment>& assignments) {
    for (const auto& [target, value] : assignments) {
        RequireFeatures(camera, target);
        if (!value && target.feature.id == kNoIdentifier && !IsCommand(camera, target.feature)) {
            throw NoValue(target.text);
        }
    }
}

void SetAll(OV_DEV_HANDLE camera, const std::vector<Assignment>& assignments,
            Interrupts& interrupts, std::vector<Done>& done) {
    std::vector<SelectorChoice> choices;
    for (const Assignment& assignment : assignments) {
        interrupts.Check();
        const auto& [target, value] = assignment;
        SelectedEntries selected(camera, target.choices);
        WriteFeature(camera, target.feature, value.value_or(""));
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
    if (IsCommand(camera, target.feature)) {
        values.Add(target.text, nullptr, target.text + " done");
        return;
    }
    SelectedEntries selected(camera, done.choices);
    if (const auto value = TryReadFeature(camera, target.feature)) {
        TellValue(target, *value, *asked, values);
    } else {
        values.Add(target.text, nullptr, target.text + " is set, but can't be read");
    }
    selected.PutBack();
}

}  // namespace

void Get(const CameraChoice& choice, const std::vector<std::string>& names, bool json) {
    Interrupts interrupts;
    std::vector<FeatureReference> references;
    std::transform(names.begin(), names.end(), std::back_inserter(references), ParseReference);
    const Camera camera(choice, AccessFor(references));
    for (const FeatureReference& reference : references) {
        RequireFeatures(camera.Handle(), reference);
    }
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
    RequireAssignable(camera.Handle(), assignments);
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
