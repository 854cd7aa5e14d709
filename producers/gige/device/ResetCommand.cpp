#include "gige/device/ResetCommand.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/Failure.h"
#include "gige/device/DescriptionText.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

/// A node of a description: its kind and its properties. A property may come several times.
struct Node {
    std::string kind;
    std::multimap<std::string, std::string> properties;

    bool Has(const std::string& name) const { return properties.contains(name); }
    /// Nothing unless the property comes exactly once.
    std::optional<std::string> Only(const std::string& name) const {
        return properties.count(name) == 1 ? std::optional(properties.find(name)->second)
                                           : std::nullopt;
    }
};

using Nodes = std::map<std::string, Node>;

/// Collects the nodes from the parser's calls. Groups aren't nodes, but have them.
class Collector {
public:
    Nodes nodes;

    void Begin(const std::string& element, const char* const* attributes) {
        m_path.push_back(element);
        m_text.clear();
        if (m_node != nullptr || element == "Group") {
            return;
        }
        for (; *attributes != nullptr; attributes += 2) {
            if (std::string_view(attributes[0]) == "Name") {
                m_node = &nodes[attributes[1]];
                m_node->kind = element;
                m_depth = m_path.size();
            }
        }
    }

    void End() {
        if (m_node != nullptr && m_path.size() == m_depth + 1) {
            m_node->properties.emplace(m_path.back(), m_text);
        }
        m_path.pop_back();
        m_text.clear();
        if (m_path.size() < m_depth) {
            m_node = nullptr;
        }
    }

    void Text(std::string_view text) { m_text += text; }

private:
    std::vector<std::string> m_path;
    std::string m_text;
    Node* m_node = nullptr;  // the one that is read
    size_t m_depth = 0;      // of its element
};

Nodes Collect(std::string_view xml) {
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    Collector collector;
    XML_SetUserData(parser.get(), &collector);
    XML_SetElementHandler(
        parser.get(),
        [](void* data, const XML_Char* element, const XML_Char** attributes) {
            static_cast<Collector*>(data)->Begin(element, attributes);
        },
        [](void* data, const XML_Char*) { static_cast<Collector*>(data)->End(); });
    XML_SetCharacterDataHandler(parser.get(), [](void* data, const XML_Char* text, int length) {
        static_cast<Collector*>(data)->Text({text, static_cast<size_t>(length)});
    });
    // What comes before a fault is as good as it gets: the description is used elsewhere, too.
    static_cast<void>(XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE));
    return std::move(collector.nodes);
}

std::optional<uint64_t> NumberOf(const std::optional<std::string>& text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    if (!text) {
        return {};
    }
    std::string_view digits = *text;
    digits.remove_prefix(std::min(digits.find_first_not_of(kBlanks), digits.size()));
    digits = digits.substr(0, digits.find_last_not_of(kBlanks) + 1);
    const bool isHex = digits.starts_with("0x") || digits.starts_with("0X");
    digits.remove_prefix(isHex ? 2 : 0);
    uint64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, isHex ? 16 : 10);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

const Node* NodeAt(const Nodes& nodes, const std::optional<std::string>& name) {
    const auto found = name ? nodes.find(*name) : nodes.end();
    return found == nodes.end() ? nullptr : &found->second;
}

/// The register that a value is kept in, through nodes that only pass it on.
const Node* RegisterOf(const Nodes& nodes, const Node& command) {
    constexpr int kHopsMax = 8;
    const Node* node = NodeAt(nodes, command.Only("pValue"));
    for (int hop = 0; hop < kHopsMax && node != nullptr && node->kind == "Integer"; ++hop) {
        node = NodeAt(nodes, node->Only("pValue"));
    }
    return node != nullptr && node->kind == "IntReg" ? node : nullptr;
}

/// The sum of a register's addresses, if all of them are numbers.
std::optional<uint64_t> AddressOf(const Node& reg) {
    for (const char* variable : {"pAddress", "IntSwissKnife", "pIndex", "pOffset"}) {
        if (reg.Has(variable)) {
            return {};
        }
    }
    uint64_t sum = 0;
    const auto [first, last] = reg.properties.equal_range("Address");
    for (auto entry = first; entry != last; ++entry) {
        const auto address = NumberOf(entry->second);
        if (!address) {
            return {};
        }
        sum += *address;
    }
    return first == last ? std::nullopt : std::optional(sum);
}

Bytes BytesOf(uint64_t value, size_t length, bool isBigEndian) {
    Bytes bytes(length);
    for (size_t i = 0; i < length; ++i) {
        bytes[isBigEndian ? length - 1 - i : i] = static_cast<std::byte>(value >> (8 * i));
    }
    return bytes;
}

/// Chunks and events have ports, too.
bool IsCamerasPort(const Node* port) {
    return port != nullptr && port->kind == "Port" && !port->Has("ChunkID") &&
           !port->Has("EventID");
}

}  // namespace

std::optional<ResetCommand> FindResetCommand(std::string_view xml) {
    const Nodes nodes = Collect(xml);
    const Node* const command = NodeAt(nodes, "DeviceReset");
    const auto value = command != nullptr ? NumberOf(command->Only("CommandValue")) : std::nullopt;
    const Node* const reg = value ? RegisterOf(nodes, *command) : nullptr;
    if (reg == nullptr || !IsCamerasPort(NodeAt(nodes, reg->Only("pPort")))) {
        return {};
    }
    const auto address = AddressOf(*reg);
    const auto length = NumberOf(reg->Only("Length"));
    if (!address || !length || *length == 0 || *length > sizeof(uint64_t)) {
        return {};
    }
    const bool isBigEndian = reg->Only("Endianess") == "BigEndian";
    return ResetCommand{*address, BytesOf(*value, *length, isBigEndian)};
}

void SendReset(CameraMemory& camera, const OvProducer::Port& port) {
    const auto command = FindResetCommand(ReadDescription(port));
    if (!command) {
        throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED,
                      "The camera's description has no command DeviceReset with a constant "
                      "register");
    }
    try {
        camera.Write(command->address, command->value);
    } catch (const Failure& failure) {
        if (failure.Code() != GenTL::GC_ERR_TIMEOUT) {
            throw;
        }
    }
}

}  // namespace OvGige
