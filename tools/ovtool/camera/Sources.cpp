#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>

#include "camera/Explanation.h"
#include "support/OrNull.h"
#include "support/Text.h"

namespace {

/// Links that say nothing of how the value comes about.
const std::set<std::string> kOtherLinks = {
    "pFeature", "pSelected",  "pSelecting", "pInvalidator", "pDependent",   "pTerminal",
    "pAlias",   "pCastAlias", "pEnumEntry", "pError",       "pBlockPolling"};

bool IsLink(const std::string& property) {
    return property.size() > 1 && property[0] == 'p' &&
           (std::isupper(static_cast<unsigned char>(property[1])) != 0 || property[1] == '1') &&
           kOtherLinks.count(property) == 0;
}

Json RegisterOf(const Node& node) {
    int64_t address = 0;
    int64_t length = 0;
    size_t size = 0;
    if (OvNodeGetRegisterPlace(node.Handle(), &address, &length) != OV_STATUS_SUCCESS ||
        OvNodeGetRegister(node.Handle(), nullptr, &size) != OV_STATUS_SUCCESS) {
        return nullptr;
    }
    // Long registers are tables and texts, which nobody reads in hexadecimal.
    constexpr size_t kMostBytes = 16;
    std::vector<uint8_t> bytes(size);
    const bool isShown = size <= kMostBytes &&
                         OvNodeGetRegister(node.Handle(), bytes.data(), &size) == OV_STATUS_SUCCESS;
    return {
        {"address", address}, {"length", length}, {"bytes", isShown ? Json(ToHex(bytes)) : Json()}};
}

/// Each node once with its content, so that what uses one another ends.
class SourceSearch {
public:
    SourceSearch(OV_DEV_HANDLE camera, OV_NODE_MODULE module)
        : m_camera(camera), m_module(module) {}

    Json ContentOf(const Node& node) {
        Json sources = Json::array();
        for (const std::string& link : node.PropertyNames()) {
            if (!IsLink(link)) {
                continue;
            }
            const auto names = node.Property(link);
            const auto attributes = node.PropertyAttributes(link);
            for (size_t i = 0; i < names.size(); ++i) {
                const std::string& role = i < attributes.size() ? attributes[i] : link;
                sources.push_back(SourceOf(role, names[i]));
            }
        }
        return sources;
    }

private:
    Json SourceOf(const std::string& role, const std::string& name) {
        Json source = {{"role", role}, {"name", name}};
        const auto node = Node::Find(m_camera, m_module, name);
        if (!node || !m_visited.insert(name).second) {
            return source;
        }
        source["type"] = TypeName(node->Type());
        source["access"] = OrNull([&] { return Json(NodeAccessName(node->Access())); });
        // A converter's formula has a value only while a value passes through it.
        const bool isConversion = role == "pSwissKnifeTo" || role == "pSwissKnifeFrom";
        source["value"] = isConversion ? Json() : OrNull([&] { return ToJson(node->Read()); });
        const auto formula = node->Property("Formula");
        source["formula"] = formula.empty() ? Json() : Json(formula.front());
        source["register"] = RegisterOf(*node);
        source["sources"] = ContentOf(*node);
        return source;
    }

    OV_DEV_HANDLE m_camera;
    OV_NODE_MODULE m_module;
    std::set<std::string> m_visited;
};

}  // namespace

Json SourcesOf(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const Node& node) {
    return SourceSearch(camera, module).ContentOf(node);
}
