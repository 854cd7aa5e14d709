#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/Features.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/OrNull.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

Json NamesOf(const std::vector<Node>& nodes) {
    Json names = Json::array();
    for (const Node& node : nodes) {
        names.push_back(node.Name());
    }
    return names;
}

Json Flags(const Node& node) {
    const std::pair<uint32_t, const char*> words[] = {
        {OV_NODE_FLAG_SELECTOR, "selector"},     {OV_NODE_FLAG_STREAMABLE, "in settings files"},
        {OV_NODE_FLAG_DEPRECATED, "deprecated"}, {OV_NODE_FLAG_CACHED, "cached"},
        {OV_NODE_FLAG_STANDARD, "standard"},
    };
    Json flags = Json::array();
    for (const auto& [flag, word] : words) {
        if ((node.Flags() & flag) != 0) {
            flags.push_back(word);
        }
    }
    return flags;
}

Json Describe(const Node& node) {
    return {
        {"name", node.Name()},
        {"displayName", node.Text(OV_NODE_TEXT_DISPLAY_NAME)},
        {"type", TypeName(node.Type())},
        {"access", OrNull([&] { return Json(NodeAccessName(node.Access())); })},
        {"visibility", VisibilityName(node.Visibility())},
        {"properties", Flags(node)},
        {"value", OrNull([&] { return ToJson(node.Read()); })},
        {"range", OrNull([&] { return ToJson(node.ReadRange()); })},
        {"unit", node.Text(OV_NODE_TEXT_UNIT)},
        {"toolTip", node.Text(OV_NODE_TEXT_TOOL_TIP)},
        {"description", node.Text(OV_NODE_TEXT_DESCRIPTION)},
        {"categories", NamesOf(node.Related(OV_NODE_RELATION_PARENTS))},
        {"selectedBy", NamesOf(node.Related(OV_NODE_RELATION_SELECTORS))},
        {"selects", NamesOf(node.Related(OV_NODE_RELATION_SELECTED))},
        {"dependsOn", NamesOf(node.Related(OV_NODE_RELATION_SOURCES))},
    };
}

std::string TextOf(const Json& value) {
    if (value.is_array()) {
        std::string text;
        for (const Json& one : value) {
            text += (text.empty() ? "" : ", ") + TextOf(one);
        }
        return text;
    }
    if (value.is_object()) {
        std::string text;
        for (const auto& [key, one] : value.items()) {
            text += (text.empty() ? "" : ", ") + key + " " + TextOf(one);
        }
        return text;
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

/// What is empty has no line.
void PrintDescription(const Json& description) {
    for (const auto& [key, value] : description.items()) {
        const std::string text = value.is_null() ? "" : TextOf(value);
        if (!text.empty()) {
            std::printf("%-12s %s\n", key.c_str(), Visible(text).c_str());
        }
    }
}

}  // namespace

void DescribeFeatures(const CameraChoice& choice, const std::vector<std::string>& names,
                      bool json) {
    const Camera camera(choice, Access::ReadOnly);
    for (const std::string& name : names) {
        RequireFeature(camera.Handle(), RowByName(name));
    }
    Json features = Json::array();
    for (const std::string& name : names) {
        features.push_back(Describe(NodeOf(camera.Handle(), RowByName(name))));
    }
    if (json) {
        PrintJson({{"features", features}});
        return;
    }
    for (size_t i = 0; i < features.size(); ++i) {
        std::printf("%s", i == 0 ? "" : "\n");
        PrintDescription(features[i]);
    }
}

const std::vector<std::string>& ModuleNames() {
    static const std::vector<std::string> names{"camera", "system", "interface", "host", "stream"};
    return names;
}

void PrintXml(const CameraChoice& choice, const std::string& module) {
    const Camera camera(choice, Access::ReadOnly);
    const auto& names = ModuleNames();
    const auto number =
        static_cast<OV_NODE_MODULE>(std::find(names.begin(), names.end(), module) - names.begin());
    size_t size = 0;
    Check(OvNodeGetXml(camera.Handle(), number, nullptr, &size), "read the description");
    std::vector<char> text(size);
    Check(OvNodeGetXml(camera.Handle(), number, text.data(), &size), "read the description");
    // Without the terminating zero.
    std::fwrite(text.data(), 1, size - 1, stdout);
    FlushOutput();
}
