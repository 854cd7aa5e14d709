#include <fnmatch.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>

#include "camera/Features.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

struct Feature {
    std::string name;
    OV_NODE_TYPE type;
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

void Look(const Node& node, Feature& feature) {
    if (feature.type != OV_NODE_TYPE_COMMAND && node.IsReadable()) {
        feature.value = node.Read();
        feature.range = node.ReadRange();
    }
    feature.isWritable = node.IsWritable();
}

/// Nothing for a feature that the camera lacks.
std::optional<Feature> LookAt(const Node& node) {
    Feature feature{node.Name(), node.Type(), false, std::nullopt, {}, ""};
    bool isThere = true;
    const auto failure = FailureOf([&] {
        isThere = node.IsThere();
        if (isThere) {
            Look(node, feature);
        }
    });
    if (failure && failure->Code() == ExitCode::Lost) {
        throw *failure;
    }
    feature.failure = failure ? Headline(*failure) : "";
    return isThere ? std::optional(feature) : std::nullopt;
}

Json DocumentOf(const Feature& feature) {
    Json document = {{"name", feature.name},
                     {"type", TypeName(feature.type)},
                     {"writable", feature.isWritable},
                     {"value", feature.value ? ToJson(*feature.value) : Json()},
                     {"range", ToJson(feature.range)}};
    if (!feature.failure.empty()) {
        document["failure"] = feature.failure;
    }
    return document;
}

void Print(const Feature& feature, size_t depth) {
    const std::string value = feature.value ? Visible(ToText(*feature.value)) : "-";
    const std::string remark =
        feature.failure.empty() ? Visible(ToText(feature.range)) : Visible(feature.failure);
    std::printf("%-40s %-8s %-2s %s%s%s%s\n",
                (std::string(2 * depth, ' ') + Visible(feature.name)).c_str(),
                TypeName(feature.type), feature.isWritable ? "rw" : "r", value.c_str(),
                remark.empty() ? "" : "  (", remark.c_str(), remark.empty() ? "" : ")");
}

/// Which features a user wants to see.
class Filter {
public:
    explicit Filter(const FeatureListOptions& options) {
        const bool hasWildcard = options.pattern.find_first_of("*?[") != std::string::npos;
        m_pattern = hasWildcard ? options.pattern : "*" + options.pattern + "*";
        const auto& names = VisibilityNames();
        m_visibility = static_cast<OV_NODE_VISIBILITY>(
            std::find(names.begin(), names.end(), options.visibility) - names.begin());
    }
    bool Wants(const Node& node) const {
        return node.Visibility() <= m_visibility &&
               fnmatch(m_pattern.c_str(), node.Name().c_str(), FNM_CASEFOLD) == 0;
    }

private:
    std::string m_pattern;
    OV_NODE_VISIBILITY m_visibility;
};

/// Lists features one after the other, each name once.
class FeatureList {
public:
    FeatureList(const Filter& filter, bool json) : m_filter(filter), m_json(json) {}

    void Add(const Node& node) {
        const bool isWanted = node.Type() != OV_NODE_TYPE_CATEGORY && m_filter.Wants(node);
        const auto feature =
            isWanted && m_listed.insert(node.Name()).second ? LookAt(node) : std::nullopt;
        if (feature && m_json) {
            m_document.push_back(DocumentOf(*feature));
        } else if (feature) {
            Print(*feature, 0);
        }
    }
    void End() const {
        if (m_json) {
            PrintJson({{"features", m_document}});
        }
    }

private:
    const Filter& m_filter;
    const bool m_json;
    std::set<std::string> m_listed;
    Json m_document = Json::array();
};

/// A category with what is wanted of it; nothing without content.
std::optional<Json> TreeOf(const Node& category, const Filter& filter) {
    Json content = Json::array();
    for (const Node& node : category.Related(OV_NODE_RELATION_FEATURES)) {
        if (node.Type() == OV_NODE_TYPE_CATEGORY) {
            if (auto tree = TreeOf(node, filter)) {
                content.push_back(*std::move(tree));
            }
        } else if (filter.Wants(node)) {
            if (const auto feature = LookAt(node)) {
                content.push_back(DocumentOf(*feature));
            }
        }
    }
    return content.empty() ? std::nullopt
                           : std::optional(Json{{"name", category.Name()}, {"content", content}});
}

/// A category is printed with the first that is wanted of it.
void PrintTree(const Node& category, const Filter& filter, std::vector<std::string> pending,
               size_t depth, size_t& printed) {
    pending.push_back(category.Name());
    for (const Node& node : category.Related(OV_NODE_RELATION_FEATURES)) {
        if (node.Type() == OV_NODE_TYPE_CATEGORY) {
            const size_t before = printed;
            PrintTree(node, filter, pending, depth + 1, printed);
            if (printed != before) {
                pending.clear();
            }
            continue;
        }
        const auto feature = filter.Wants(node) ? LookAt(node) : std::nullopt;
        if (!feature) {
            continue;
        }
        for (size_t i = 0; i < pending.size(); ++i) {
            const size_t indent = 2 * (depth + 1 + i - pending.size());
            std::printf("%*s%s\n", static_cast<int>(indent), "", Visible(pending[i]).c_str());
        }
        pending.clear();
        Print(*feature, depth + 1);
        ++printed;
    }
}

void ListTree(OV_DEV_HANDLE camera, const Filter& filter, bool json) {
    const auto root = Node::Find(camera, OV_NODE_MODULE_CAMERA, "Root");
    if (json) {
        const auto tree = root ? TreeOf(*root, filter) : std::nullopt;
        PrintJson({{"tree", tree ? *tree : Json()}});
    } else if (root) {
        size_t printed = 0;
        PrintTree(*root, filter, {}, 0, printed);
    }
}

}  // namespace

void ListFeatures(const CameraChoice& choice, const FeatureListOptions& options, bool json) {
    const Camera camera(choice, Access::ReadOnly);
    const Filter filter(options);
    if (options.tree) {
        ListTree(camera.Handle(), filter, json);
        return;
    }
    FeatureList list(filter, json);
    for (const OV_NODE_MODULE module :
         {OV_NODE_MODULE_CAMERA, OV_NODE_MODULE_HOST_DEVICE, OV_NODE_MODULE_STREAM}) {
        for (const Node& node : Node::All(camera.Handle(), module)) {
            list.Add(node);
        }
    }
    list.End();
}
