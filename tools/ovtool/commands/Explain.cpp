#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/Explanation.h"
#include "camera/Features.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/OrNull.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

Json DocumentOf(const std::vector<Cause>& causes) {
    Json document = Json::array();
    for (const Cause& cause : causes) {
        document.push_back(
            {{"effect", cause.effect}, {"node", cause.node}, {"reason", cause.reason}});
    }
    return document;
}

/// Explains features of one camera.
class Explainer {
public:
    explicit Explainer(OV_DEV_HANDLE camera) : m_camera(camera) {}

    Json Explain(const FeatureRow& row) const {
        OV_NODE_MODULE module = OV_NODE_MODULE_CAMERA;
        const Node node = Find(row, module);
        return {
            {"name", node.Name()},
            {"type", TypeName(node.Type())},
            {"access", OrNull([&] { return Json(NodeAccessName(node.Access())); })},
            {"visibility", VisibilityName(node.Visibility())},
            {"causes", DocumentOf(CausesOf(m_camera, module, node))},
            {"range", OrNull([&] { return ToJson(node.ReadRange()); })},
            {"entries", EntriesOf(node, module)},
            {"selectedBy", SelectorsOf(node)},
            {"selects", NamesOf(node, OV_NODE_RELATION_SELECTED)},
            {"mayChange", NamesOf(node, OV_NODE_RELATION_DEPENDENTS)},
            {"sources", SourcesOf(m_camera, module, node)},
        };
    }

private:
    /// The node with the module that has it.
    Node Find(const FeatureRow& row, OV_NODE_MODULE& module) const {
        for (const OV_NODE_MODULE each : kModules) {
            module = each;
            if (auto node = Node::Find(m_camera, each, row.name)) {
                return *std::move(node);
            }
        }
        return NodeOf(m_camera, row);
    }

    /// Those that can't be chosen now, and why.
    Json EntriesOf(const Node& node, OV_NODE_MODULE module) const {
        Json entries = Json::array();
        for (const Node& entry : node.Related(OV_NODE_RELATION_ENTRIES)) {
            const Json access = OrNull([&] { return Json(entry.Access()); });
            if (access.is_null() || access <= OV_NODE_ACCESS_NOT_AVAILABLE) {
                entries.push_back({{"name", entry.Symbolic()},
                                   {"causes", DocumentOf(CausesOf(m_camera, module, entry))}});
            }
        }
        return entries;
    }

    static Json SelectorsOf(const Node& node) {
        Json selectors = Json::array();
        for (const Node& selector : node.Related(OV_NODE_RELATION_SELECTORS)) {
            selectors.push_back({{"name", selector.Name()},
                                 {"value", OrNull([&] { return ToJson(selector.Read()); })}});
        }
        return selectors;
    }

    /// Of features: what lies behind them means nothing to a user.
    static Json NamesOf(const Node& node, OV_NODE_RELATION relation) {
        Json names = Json::array();
        for (const Node& related : node.Related(relation)) {
            if ((related.Flags() & OV_NODE_FLAG_FEATURE) != 0 &&
                related.Type() != OV_NODE_TYPE_CATEGORY) {
                names.push_back(related.Name());
            }
        }
        return names;
    }

    OV_DEV_HANDLE m_camera;
};

void PrintCauses(const Json& causes, int indent) {
    for (const Json& cause : causes) {
        std::printf("%*s%s: %s: %s\n", indent, "", Visible(ToText(cause["node"])).c_str(),
                    ToText(cause["effect"]).c_str(), Visible(ToText(cause["reason"])).c_str());
    }
}

void PrintNames(const char* heading, const Json& names) {
    std::string text;
    for (const Json& name : names) {
        text += (text.empty() ? "" : ", ") + ToText(name);
    }
    if (!text.empty()) {
        std::printf("  %s: %s\n", heading, Visible(text).c_str());
    }
}

void PrintRange(const Json& range) {
    if (!range.is_object()) {
        return;
    }
    std::string text;
    for (const auto& [name, value] : range.items()) {
        text += (text.empty() ? "" : ", ") + name + " " + ToText(value);
    }
    std::printf("  limits: %s\n", Visible(text).c_str());
}

void PrintSources(const Json& sources, int indent) {
    for (const Json& source : sources) {
        std::string line = ToText(source["role"]) + ": " + ToText(source["name"]);
        if (!source.contains("type")) {
            std::printf("%*s%s\n", indent, "", Visible(line).c_str());
            continue;
        }
        line += ", " + ToText(source["type"]) + ", " + ToText(source["access"]);
        if (!source["value"].is_null()) {
            line += " = " + ToText(source["value"]);
        }
        if (!source["formula"].is_null()) {
            line += "; formula " + ToText(source["formula"]);
        }
        const Json& place = source["register"];
        if (!place.is_null()) {
            line += "; " + std::to_string(place["length"].get<int64_t>()) + " bytes at " +
                    AddressText(place["address"].get<uint64_t>());
            line += place["bytes"].is_null() ? "" : ": " + ToText(place["bytes"]);
        }
        std::printf("%*s%s\n", indent, "", Visible(line).c_str());
        PrintSources(source["sources"], indent + 2);
    }
}

void PrintExplanation(const Json& feature) {
    std::printf("%s: %s, %s, for %s users\n", Visible(ToText(feature["name"])).c_str(),
                ToText(feature["type"]).c_str(), ToText(feature["access"]).c_str(),
                ToText(feature["visibility"]).c_str());
    PrintCauses(feature["causes"], 2);
    PrintRange(feature["range"]);
    for (const Json& entry : feature["entries"]) {
        std::printf("  can't be chosen: %s\n", Visible(ToText(entry["name"])).c_str());
        PrintCauses(entry["causes"], 4);
    }
    for (const Json& selector : feature["selectedBy"]) {
        std::printf("  selected by: %s = %s\n", Visible(ToText(selector["name"])).c_str(),
                    Visible(ToText(selector["value"])).c_str());
    }
    PrintNames("selects", feature["selects"]);
    PrintNames("may change", feature["mayChange"]);
    PrintSources(feature["sources"], 2);
}

}  // namespace

void ExplainFeatures(const CameraChoice& choice, const std::vector<std::string>& names, bool json) {
    const Camera camera(choice, Access::ReadOnly);
    for (const std::string& name : names) {
        RequireFeature(camera.Handle(), RowByName(name));
    }
    const Explainer explainer(camera.Handle());
    Json features = Json::array();
    for (const std::string& name : names) {
        features.push_back(explainer.Explain(RowByName(name)));
    }
    if (json) {
        PrintJson({{"features", features}});
        return;
    }
    for (size_t i = 0; i < features.size(); ++i) {
        std::printf("%s", i == 0 ? "" : "\n");
        PrintExplanation(features[i]);
    }
}
