#include <array>
#include <optional>
#include <set>

#include "camera/Explanation.h"
#include "support/Error.h"

namespace {

bool CanRead(OV_NODE_ACCESS access) {
    return access == OV_NODE_ACCESS_READ_ONLY || access == OV_NODE_ACCESS_READ_WRITE;
}

/// What a condition says now; nothing if it can't be read.
std::optional<bool> TruthOf(const Node& condition) {
    std::optional<bool> truth;
    FailureOf([&] {
        if (!condition.IsReadable()) {
            return;
        }
        if (condition.Type() == OV_NODE_TYPE_ENUMERATION) {
            truth = condition.Number() != 0;
            return;
        }
        truth = std::visit(
            [](const auto& value) {
                using Value = std::decay_t<decltype(value)>;
                if constexpr (std::is_same_v<Value, std::string>) {
                    return !value.empty();
                } else {
                    return value != Value{};
                }
            },
            condition.Read());
    });
    return truth;
}

/// A link to a node whose value decides.
struct Condition {
    const char* link;
    /// The value that restricts.
    bool restricts;
    const char* effect;
};

constexpr Condition kConditions[] = {
    {"pIsImplemented", false, "not implemented"},
    {"pIsAvailable", false, "not available"},
    {"pIsLocked", true, "locked"},
};

/// Links to nodes without which the value can't be had.
constexpr const char* kNeeded[] = {"pValue",  "pPort",      "pVariable",       "pAddress",
                                   "pIndex",  "pLength",    "pSwissKnifeFrom", "pSwissKnifeTo",
                                   "pOffset", "p1212Parser"};

/// Collects what restricts one node, and those beneath it.
class CauseSearch {
public:
    CauseSearch(OV_DEV_HANDLE camera, OV_NODE_MODULE module) : m_camera(camera), m_module(module) {}

    void Search(const Node& node) {
        if (!m_visited.insert(node.Name()).second) {
            return;
        }
        OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_AVAILABLE;
        if (const auto failure = FailureOf([&] { access = node.Access(); })) {
            Add("not available", node, failure->what());
            return;
        }
        if (access == OV_NODE_ACCESS_READ_WRITE) {
            return;
        }
        for (const Condition& condition : kConditions) {
            AddCondition(node, condition);
        }
        AddOwnAccess(node, access);
        for (const char* const link : kNeeded) {
            for (const std::string& name : node.Property(link)) {
                SearchNeeded(name, access);
            }
        }
    }

    std::vector<Cause> Take() { return std::move(m_causes); }

private:
    void Add(const std::string& effect, const Node& node, const std::string& reason) {
        m_causes.push_back({effect, node.Name(), reason});
    }

    std::optional<Node> Find(const std::string& name) const {
        return Node::Find(m_camera, m_module, name);
    }

    void AddCondition(const Node& node, const Condition& condition) {
        for (const std::string& name : node.Property(condition.link)) {
            const auto decides = Find(name);
            if (!decides) {
                continue;
            }
            const std::optional<bool> truth = TruthOf(*decides);
            if (!truth) {
                Add("not available", node,
                    name + " (" + condition.link + ") must be known and can't be read");
                Search(*decides);
            } else if (*truth == condition.restricts) {
                Add(condition.effect, node,
                    name + " (" + condition.link + ") is " + ToText(decides->Read()));
            }
        }
    }

    /// What the description says of the node itself, and not of the moment.
    void AddOwnAccess(const Node& node, OV_NODE_ACCESS access) {
        for (const char* const property : {"AccessMode", "ImposedAccessMode"}) {
            for (const std::string& mode : node.Property(property)) {
                if (mode != "RW") {
                    Add(mode == "WO" ? "write only" : "read only", node,
                        "the description says so: " + std::string(property) + " is " + mode);
                }
            }
        }
        if (!node.Property("Formula").empty() && node.Property("pValue").empty() &&
            CanRead(access)) {
            Add("read only", node, "it is computed");
        }
        const auto chunk = node.Property("ChunkID");
        if (!chunk.empty() && access == OV_NODE_ACCESS_NOT_AVAILABLE) {
            Add("not available", node, "no frame is attached that has the chunk " + chunk.front());
        }
    }

    /// A node that can be read doesn't keep a value from being read.
    void SearchNeeded(const std::string& name, OV_NODE_ACCESS access) {
        const auto needed = Find(name);
        if (!needed) {
            return;
        }
        OV_NODE_ACCESS its = OV_NODE_ACCESS_NOT_AVAILABLE;
        FailureOf([&] { its = needed->Access(); });
        if (!CanRead(its) || CanRead(access)) {
            Search(*needed);
        }
    }

    OV_DEV_HANDLE m_camera;
    OV_NODE_MODULE m_module;
    std::set<std::string> m_visited;
    std::vector<Cause> m_causes;
};

}  // namespace

std::vector<Cause> CausesOf(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const Node& node) {
    CauseSearch search(camera, module);
    search.Search(node);
    return search.Take();
}
