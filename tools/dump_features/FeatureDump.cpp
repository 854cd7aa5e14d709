#include "FeatureDump.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

#include "Base/GCException.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

constexpr size_t kLongestText = 160;

/// A text that stays on its line and in its column.
std::string Printable(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F && byte != '\\') {
            result += character;
        } else {
            std::array<char, 5> escape{};
            std::snprintf(escape.data(), escape.size(), "\\x%02x", byte);
            result += escape.data();
        }
    }
    if (result.size() <= kLongestText) {
        return result;
    }
    return result.substr(0, kLongestText) + "... " + std::to_string(text.size()) + " bytes, hash " +
           std::to_string(std::hash<std::string>()(text));
}

/// What a call gives, or the text of its failure. Places in sources are left
/// out: they differ from version to version.
std::string Outcome(const std::function<std::string()>& call) {
    try {
        return Printable(call());
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        return "!" + Printable(failure.GetDescription());
    } catch (const std::exception& failure) {
        return "!!" + Printable(failure.what());
    }
}

const char* InterfaceName(INode& node) {
    static constexpr std::array kNames{"Value",    "Base",        "Integer",   "Boolean",
                                       "Command",  "Float",       "String",    "Register",
                                       "Category", "Enumeration", "EnumEntry", "Port"};
    const auto number = static_cast<size_t>(node.GetPrincipalInterfaceType());
    return number < kNames.size() ? kNames[number] : "?";
}

template <class Number>
std::string Limits(Number& number) {
    const auto text = [](const auto& call) {
        return Outcome([&] { return std::to_string(call()); });
    };
    return text([&] { return number.GetMin(); }) + ".." + text([&] { return number.GetMax(); }) +
           "/" + text([&] { return number.GetInc(); });
}

std::string Choices(IEnumeration& enumeration) {
    return Outcome([&] {
        gcstring_vector symbolics;
        enumeration.GetSymbolics(symbolics);
        std::string text;
        for (const gcstring& symbolic : symbolics) {
            text += (text.empty() ? "" : ",") + std::string(symbolic.c_str());
        }
        return text;
    });
}

std::string RangeOf(INode& node) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        return Limits(*integer);
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        return Limits(*real);
    }
    if (auto* const enumeration = dynamic_cast<IEnumeration*>(&node)) {
        return Choices(*enumeration);
    }
    return "-";
}

/// One line in the making.
struct Row {
    INode* node;
    std::string name;
    std::string access = {};
    std::string value = {};
    std::string range = {};
    std::string written = {};
    std::string after = {};

    std::string Line() const {
        return name + "\t" + InterfaceName(*node) + "\t" + access + "\t" + value + "\t" + range +
               "\t" + written + "\t" + after;
    }
};

std::string ReadValue(INode& node, ReadMode mode) {
    auto* const value = dynamic_cast<IValue*>(&node);
    return value == nullptr ? "-" : Outcome([&] {
        return std::string(value->ToString(false, mode == ReadMode::Uncached).c_str());
    });
}

std::string AccessOf(INode& node) {
    return Outcome([&] { return std::string(EAccessModeClass::ToString(node.GetAccessMode())); });
}

/// Writes back what the node gives, where it gives and takes something.
std::string WriteBack(INode& node) {
    auto* const value = dynamic_cast<IValue*>(&node);
    if (value == nullptr) {
        return "-";
    }
    return Outcome([&]() -> std::string {
        if (node.GetAccessMode() != RW) {
            return "-";
        }
        value->FromString(value->ToString());
        return "written";
    });
}

std::vector<Row> RowsOf(INodeMap& map) {
    node_vector nodes;
    map.GetNodes(nodes);
    std::vector<Row> rows;
    for (INode* const node : nodes) {
        rows.push_back({.node = node, .name = node->GetName(true).c_str()});
    }
    std::sort(rows.begin(), rows.end(),
              [](const Row& left, const Row& right) { return left.name < right.name; });
    return rows;
}

}  // namespace

std::vector<std::string> DumpFeatures(INodeMap& map, ReadMode mode) {
    std::vector<Row> rows = RowsOf(map);
    if (mode == ReadMode::Cached) {
        for (const Row& row : rows) {
            ReadValue(*row.node, mode);
            RangeOf(*row.node);
        }
    }
    for (Row& row : rows) {
        row.access = AccessOf(*row.node);
        row.value = ReadValue(*row.node, mode);
        row.range = RangeOf(*row.node);
    }
    for (Row& row : rows) {
        row.written = WriteBack(*row.node);
    }
    // A cache may keep a written number more exactly than the device does, so what
    // is told in the end comes from the device.
    map.InvalidateNodes();
    std::vector<std::string> lines;
    for (Row& row : rows) {
        row.after = ReadValue(*row.node, ReadMode::Uncached);
        lines.push_back(row.Line());
    }
    return lines;
}

size_t ConnectAllPorts(INodeMap& map, IPort& port) {
    node_vector nodes;
    map.GetNodes(nodes);
    return static_cast<size_t>(std::count_if(nodes.begin(), nodes.end(), [&](INode* node) {
        return dynamic_cast<IPort*>(node) != nullptr && map.Connect(&port, node->GetName());
    }));
}
