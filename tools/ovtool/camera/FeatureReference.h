#pragma once
/// Features as a user names them: "Gain", or "Gain[GainSelector=AnalogAll]" for one of the
/// values that a selector chooses from.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "camera/Features.h"
#include "support/Error.h"

/// A selector and the entry that it is to have.
struct SelectorChoice {
    FeatureRow selector;
    std::string entry;
};

struct FeatureReference {
    /// As the user wrote it.
    std::string text;
    FeatureRow feature;
    /// In the order in which they are set.
    std::vector<SelectorChoice> choices;
};

/// Raises a text that isn't such. Whether the camera has the feature is found out later.
FeatureReference ParseReference(const std::string& text);

/// A value for a feature; none for a command.
struct Assignment {
    FeatureReference target;
    std::optional<std::string> value;
};

/// The failure of a feature that needs a value and has none.
ToolError NoValue(const std::string& feature);

/// "A=x" "B=y" and so on, among which may be names of commands, or the one pair "A" "x".
std::vector<Assignment> ParseAssignments(const std::vector<std::string>& arguments);

/// Selectors as a reference has them, for the life of the object.
class SelectedEntries {
public:
    SelectedEntries(OV_DEV_HANDLE camera, const std::vector<SelectorChoice>& choices);
    /// Puts back what `PutBack` hasn't, as after a failure, of which no second one is told.
    ~SelectedEntries();
    SelectedEntries(const SelectedEntries&) = delete;
    SelectedEntries& operator=(const SelectedEntries&) = delete;

    /// Sets the selectors as they were. Raises when one can't be.
    void PutBack();

private:
    explicit SelectedEntries(OV_DEV_HANDLE camera) : m_camera(camera) {}
    void Choose(const SelectorChoice& choice);

    OV_DEV_HANDLE m_camera;
    std::vector<SelectorChoice> m_before;
};
