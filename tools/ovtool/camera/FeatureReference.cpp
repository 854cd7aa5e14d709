#include "camera/FeatureReference.h"

#include <algorithm>

#include "support/Error.h"

namespace {

/// Where the sign is that parts a feature from its value, which isn't one within brackets.
size_t FindAssign(const std::string& text) {
    const size_t assign = text.find('=');
    const size_t open = text.find('[');
    if (open > assign) {
        return assign;
    }
    const size_t close = text.find(']', open);
    return close == std::string::npos ? close : text.find('=', close);
}

/// "GainSelector=AnalogAll", several with commas between.
std::vector<SelectorChoice> ParseChoices(const std::string& text, const std::string& whole) {
    std::vector<SelectorChoice> choices;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(',', begin), text.size());
        const std::string choice = text.substr(begin, end - begin);
        const size_t assign = choice.find('=');
        if (assign == std::string::npos || assign == 0 || assign + 1 == choice.size()) {
            throw UsageError("'" + whole + "' is no feature; one with a selector is written as " +
                             "in: Gain[GainSelector=AnalogAll]");
        }
        choices.push_back({RowByName(choice.substr(0, assign)), choice.substr(assign + 1)});
        begin = end + 1;
    }
    return choices;
}

Assignment ParseAssignment(const std::string& argument) {
    const size_t assign = FindAssign(argument);
    if (assign != std::string::npos) {
        return {ParseReference(argument.substr(0, assign)), argument.substr(assign + 1)};
    }
    Assignment command{ParseReference(argument), std::nullopt};
    if (!MayBeCommand(command.target.feature)) {
        throw NoValue(argument);
    }
    return command;
}

/// Only the camera knows whether a feature without an identifier is a command: its name with
/// another word is taken for a name and a value.
bool IsTwoCommands(const std::vector<std::string>& arguments) {
    const FeatureRow first = ParseReference(arguments[0]).feature;
    return MayBeCommand(first) && first.id != kNoIdentifier;
}

bool IsOnePair(const std::vector<std::string>& arguments) {
    return arguments.size() == 2 && FindAssign(arguments[0]) == std::string::npos &&
           !IsTwoCommands(arguments);
}

}  // namespace

ToolError NoValue(const std::string& feature) {
    return UsageError("'" + feature + "' has no value; give it one: " + feature + "=VALUE");
}

FeatureReference ParseReference(const std::string& text) {
    const size_t open = text.find('[');
    FeatureReference reference{text, RowByName(text.substr(0, open)), {}};
    if (open != std::string::npos) {
        const bool isClosed = text.find(']') == text.size() - 1;
        reference.choices =
            ParseChoices(isClosed ? text.substr(open + 1, text.size() - open - 2) : "", text);
    }
    return reference;
}

std::vector<Assignment> ParseAssignments(const std::vector<std::string>& arguments) {
    if (IsOnePair(arguments)) {
        return {{ParseReference(arguments[0]), arguments[1]}};
    }
    std::vector<Assignment> assignments;
    assignments.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        assignments.push_back(ParseAssignment(argument));
    }
    return assignments;
}

// Once the other constructor is done, the destructor puts back whatever was chosen by then.
SelectedEntries::SelectedEntries(OV_DEV_HANDLE camera, const std::vector<SelectorChoice>& choices)
    : SelectedEntries(camera) {
    for (const SelectorChoice& choice : choices) {
        Choose(choice);
    }
}

void SelectedEntries::Choose(const SelectorChoice& choice) {
    const std::string before = ToText(ReadFeature(m_camera, choice.selector));
    if (before != choice.entry) {
        m_before.push_back({choice.selector, before});
        WriteFeature(m_camera, choice.selector, choice.entry);
    }
}

SelectedEntries::~SelectedEntries() {
    try {
        PutBack();
    } catch (const ToolError&) {
        // The failure that ended the work is the one that is told.
        m_before.clear();
    }
}

void SelectedEntries::PutBack() {
    while (!m_before.empty()) {
        const SelectorChoice before = m_before.back();
        m_before.pop_back();
        WriteFeature(m_camera, before.selector, before.entry);
    }
}
