#include "camera/Features.h"

#include <algorithm>
#include <charconv>

#include "camera/Node.h"
#include "support/Error.h"
#include "support/Text.h"

namespace {

OV_NODE_MODULE ModuleOf(OV_FEATURE_ID id) {
    constexpr unsigned kModuleShift = 24;
    return static_cast<OV_NODE_MODULE>((id & OV_FEATURE_LEVEL_MASK) >> kModuleShift);
}

std::string Write(const Node& node) {
    return "set " + node.Name();
}

template <class T>
T ParseNumber(const std::string& text, const Node& node) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw UsageError("can't " + Write(node) + ": '" + text + "' is not a number");
    }
    return value;
}

bool ParseBool(const std::string& text, const Node& node) {
    if (text == "true" || text == "1") {
        return true;
    }
    if (text == "false" || text == "0") {
        return false;
    }
    throw UsageError("can't " + Write(node) + ": '" + text + "' is neither true nor false");
}

/// The limits, as a hint; what must be told is the failure that it is for.
std::string LimitsText(const Node& node) {
    try {
        return "\n" + node.Name() + " takes " + ToText(node.ReadRange());
    } catch (const ToolError&) {
        return "";
    }
}

/// Raises a value that the camera refuses, with the limits if it is outside them.
void CheckNumber(OV_STATUS status, const Node& node) {
    if (status != OV_STATUS_OUT_OF_RANGE) {
        Check(status, Write(node));
        return;
    }
    try {
        Check(status, Write(node), "");
    } catch (const ToolError& error) {
        throw ToolError(error.what() + LimitsText(node), error.Code(), error.Detail());
    }
}

void WriteEntry(const Node& node, const std::string& text) {
    for (const Node& entry : node.AvailableEntries()) {
        if (entry.Symbolic() == text || std::to_string(entry.Number()) == text) {
            Check(OvNodeSetNumber(node.Handle(), entry.Number()), Write(node));
            return;
        }
    }
    throw ToolError("can't " + Write(node) + ": it has no entry '" + text +
                    "', but: " + ToText(node.ReadRange()));
}

void WriteRegister(const Node& node, const std::string& text) {
    const std::vector<uint8_t> bytes = ParseHex(text, Write(node));
    Check(OvNodeSetRegister(node.Handle(), bytes.data(), bytes.size()), Write(node));
}

void WriteNode(const Node& node, const std::string& text) {
    switch (node.Type()) {
        case OV_NODE_TYPE_INTEGER:
            CheckNumber(OvNodeSetInteger(node.Handle(), ParseNumber<int64_t>(text, node)), node);
            break;
        case OV_NODE_TYPE_FLOAT:
            CheckNumber(OvNodeSetFloat(node.Handle(), ParseNumber<double>(text, node)), node);
            break;
        case OV_NODE_TYPE_ENUMERATION:
            WriteEntry(node, text);
            break;
        case OV_NODE_TYPE_BOOLEAN:
            Check(OvNodeSetBoolean(node.Handle(), ParseBool(text, node)), Write(node));
            break;
        case OV_NODE_TYPE_STRING:
            Check(OvNodeSetString(node.Handle(), text.c_str()), Write(node));
            break;
        case OV_NODE_TYPE_REGISTER:
            WriteRegister(node, text);
            break;
        default:
            Check(OvNodeExecute(node.Handle()), "run " + node.Name());
            break;
    }
}

}  // namespace

const std::vector<FeatureRow>& AllFeatures() {
    static const std::vector<FeatureRow> rows{
#define OV_TOOL_ROW(name, type, level, number) {#name, OV_FEATURE_##name},
        OV_FEATURE_TABLE(OV_TOOL_ROW)
#undef OV_TOOL_ROW
    };
    return rows;
}

FeatureRow RowByName(const std::string& name) {
    const auto& rows = AllFeatures();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const FeatureRow& row) { return row.name == name; });
    return found == rows.end() ? FeatureRow{name, kNoIdentifier} : *found;
}

FeatureRow RowOf(OV_FEATURE_ID id) {
    const auto& rows = AllFeatures();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [id](const FeatureRow& row) { return row.id == id; });
    return found == rows.end() ? FeatureRow{"?", id} : *found;
}

bool MayBeCommand(const FeatureRow& row) {
    return row.id == kNoIdentifier || (row.id & OV_FEATURE_TYPE_MASK) == OV_FEATURE_TYPE_COMMAND;
}

std::optional<Node> FindNode(OV_DEV_HANDLE camera, const FeatureRow& row) {
    if (row.id != kNoIdentifier) {
        return Node::Find(camera, ModuleOf(row.id), row.name);
    }
    for (const OV_NODE_MODULE module : kModules) {
        if (auto node = Node::Find(camera, module, row.name)) {
            return node;
        }
    }
    return std::nullopt;
}

Node NodeOf(OV_DEV_HANDLE camera, const FeatureRow& row) {
    // The failure is that of the camera, which has the names that are like it.
    const auto node = FindNode(camera, row);
    return node ? *node : Node(camera, ModuleOf(row.id), row.name);
}

bool IsCommand(OV_DEV_HANDLE camera, const FeatureRow& row) {
    const auto node = FindNode(camera, row);
    return node && node->Type() == OV_NODE_TYPE_COMMAND;
}

FeatureValue ReadFeature(OV_DEV_HANDLE camera, const FeatureRow& row) {
    return NodeOf(camera, row).Read();
}

std::optional<FeatureValue> ReadIfReadable(OV_DEV_HANDLE camera, const FeatureRow& row) {
    const auto node = FindNode(camera, row);
    const bool hasValue = node && node->Type() != OV_NODE_TYPE_COMMAND && node->IsReadable();
    return hasValue ? std::optional(node->Read()) : std::nullopt;
}

std::optional<FeatureValue> TryReadFeature(OV_DEV_HANDLE camera, const FeatureRow& row) {
    try {
        return ReadIfReadable(camera, row);
    } catch (const ToolError& error) {
        if (error.Code() == ExitCode::Lost) {
            throw;
        }
        return std::nullopt;
    }
}

FeatureRange ReadRange(OV_DEV_HANDLE camera, const FeatureRow& row) {
    return NodeOf(camera, row).ReadRange();
}

void WriteFeature(OV_DEV_HANDLE camera, const FeatureRow& row, const std::string& text) {
    WriteNode(NodeOf(camera, row), text);
}

void RequireFeature(OV_DEV_HANDLE camera, const FeatureRow& row) {
    if (row.id != kNoIdentifier) {
        return;
    }
    const auto failure = FailureOf([&] { static_cast<void>(NodeOf(camera, row)); });
    if (failure && failure->Code() == ExitCode::Lost) {
        throw *failure;
    }
    if (failure) {
        // The names that are like it.
        const std::string text = failure->what();
        const size_t like = text.find("; like it: ");
        const std::string names =
            like == std::string::npos ? "" : text.substr(like, text.find('\n', like) - like);
        throw UsageError("there is no feature '" + row.name + "'" + names +
                         "; all that a camera has: ovtool features");
    }
}
