#include "camera/Node.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "support/Error.h"
#include "support/Text.h"

namespace {

/// What a call in the two-call form returns. A content that grows in between is asked for anew.
template <class T, class Call>
std::vector<T> ContentOf(const Call& call, const std::string& what) {
    std::vector<T> content;
    size_t size = 0;
    Check(call(nullptr, &size), what);
    OV_STATUS status = OV_STATUS_SUCCESS;
    do {
        content.resize(size);
        status = call(content.data(), &size);
    } while (status == OV_STATUS_NEED_MORE_BUFFER && call(nullptr, &size) == OV_STATUS_SUCCESS);
    Check(status, what);
    content.resize(size);
    return content;
}

template <class Call>
std::string TextOf(const Call& call, const std::string& what) {
    const std::vector<char> text = ContentOf<char>(call, what);
    return {text.data(), strnlen(text.data(), text.size())};
}

/// The library puts a tab between them.
std::vector<std::string> EntriesOf(const std::string& list) {
    std::vector<std::string> entries;
    std::istringstream text(list);
    for (std::string entry; std::getline(text, entry, '\t');) {
        entries.push_back(entry);
    }
    return entries;
}

std::vector<Node> NodesOf(const std::vector<OV_NODE_HANDLE>& handles) {
    return {handles.begin(), handles.end()};
}

template <size_t Size>
const char* WordOf(const std::array<const char*, Size>& words, int32_t number) {
    return number >= 0 && number < static_cast<int32_t>(Size) ? words[static_cast<size_t>(number)]
                                                              : "?";
}

template <class T, class Get>
FeatureValue ValueBy(const Get& get, OV_NODE_HANDLE node, const std::string& what) {
    T value{};
    Check(get(node, &value), what);
    return value;
}

}  // namespace

Node::Node(OV_NODE_HANDLE handle) : m_handle(handle) {
    m_name = Text(OV_NODE_TEXT_NAME);
    Check(OvNodeGetInfo(handle, &m_info), "look at " + m_name);
}

Node::Node(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const std::string& name)
    : m_handle(0), m_name(name) {
    Check(OvNodeFind(camera, module, name.c_str(), &m_handle), "find " + name);
    Check(OvNodeGetInfo(m_handle, &m_info), "look at " + name);
}

std::optional<Node> Node::Find(OV_DEV_HANDLE camera, OV_NODE_MODULE module,
                               const std::string& name) {
    OV_NODE_HANDLE handle = 0;
    const OV_STATUS status = OvNodeFind(camera, module, name.c_str(), &handle);
    if (status == OV_STATUS_NOT_IMPLEMENTED) {
        return std::nullopt;
    }
    Check(status, "find " + name);
    return Node(handle);
}

std::vector<Node> Node::All(OV_DEV_HANDLE camera, OV_NODE_MODULE module) {
    return NodesOf(ContentOf<OV_NODE_HANDLE>(
        [&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetAll(camera, module, nodes, number);
        },
        "list the features"));
}

OV_NODE_ACCESS Node::Access() const {
    OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_IMPLEMENTED;
    Check(OvNodeGetAccess(m_handle, &access), "look at " + m_name);
    return access;
}

bool Node::IsReadable() const {
    const OV_NODE_ACCESS access = Access();
    return access == OV_NODE_ACCESS_READ_ONLY || access == OV_NODE_ACCESS_READ_WRITE;
}

bool Node::IsWritable() const {
    const OV_NODE_ACCESS access = Access();
    return access == OV_NODE_ACCESS_WRITE_ONLY || access == OV_NODE_ACCESS_READ_WRITE;
}

std::string Node::Text(OV_NODE_TEXT text) const {
    return TextOf(
        [&](char* memory, size_t* size) { return OvNodeGetText(m_handle, text, memory, size); },
        "look at " + m_name);
}

std::vector<std::string> Node::PropertyNames() const {
    return EntriesOf(TextOf(
        [&](char* memory, size_t* size) { return OvNodeGetPropertyNames(m_handle, memory, size); },
        "look at " + m_name));
}

std::vector<std::string> Node::PropertyPart(const std::string& name,
                                            OV_NODE_PROPERTY_PART part) const {
    size_t size = 0;
    if (OvNodeGetProperty(m_handle, name.c_str(), part, nullptr, &size) ==
        OV_STATUS_NOT_IMPLEMENTED) {
        return {};
    }
    return EntriesOf(TextOf(
        [&](char* memory, size_t* room) {
            return OvNodeGetProperty(m_handle, name.c_str(), part, memory, room);
        },
        "look at " + m_name));
}

std::vector<std::string> Node::Property(const std::string& name) const {
    return PropertyPart(name, OV_NODE_PROPERTY_VALUE);
}

std::vector<std::string> Node::PropertyAttributes(const std::string& name) const {
    return PropertyPart(name, OV_NODE_PROPERTY_ATTRIBUTE);
}

std::vector<Node> Node::Related(OV_NODE_RELATION relation) const {
    return NodesOf(ContentOf<OV_NODE_HANDLE>(
        [&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetRelated(m_handle, relation, nodes, number);
        },
        "look at " + m_name));
}

std::vector<Node> Node::AvailableEntries() const {
    std::vector<Node> entries = Related(OV_NODE_RELATION_ENTRIES);
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const Node& entry) {
                                     return entry.Access() <= OV_NODE_ACCESS_NOT_AVAILABLE;
                                 }),
                  entries.end());
    return entries;
}

std::string Node::Symbolic() const {
    return TextOf(
        [&](char* memory, size_t* size) { return OvNodeGetSymbolic(m_handle, memory, size); },
        "read " + m_name);
}

int64_t Node::Number() const {
    int64_t number = 0;
    Check(OvNodeGetNumber(m_handle, &number), "read " + m_name);
    return number;
}

FeatureValue Node::Read() const {
    const std::string what = "read " + m_name;
    switch (m_info.type) {
        case OV_NODE_TYPE_INTEGER:
            return ValueBy<int64_t>(OvNodeGetInteger, m_handle, what);
        case OV_NODE_TYPE_FLOAT:
            return ValueBy<double>(OvNodeGetFloat, m_handle, what);
        case OV_NODE_TYPE_BOOLEAN:
            return ValueBy<bool>(OvNodeGetBoolean, m_handle, what);
        case OV_NODE_TYPE_ENUMERATION: {
            const int64_t number = Number();
            for (const Node& entry : AvailableEntries()) {
                if (entry.Number() == number) {
                    return entry.Symbolic();
                }
            }
            return std::to_string(number);
        }
        case OV_NODE_TYPE_STRING:
            return TextOf(
                [&](char* memory, size_t* size) { return OvNodeGetString(m_handle, memory, size); },
                what);
        case OV_NODE_TYPE_REGISTER:
            return ToHex(ContentOf<uint8_t>(
                [&](uint8_t* memory, size_t* size) {
                    return OvNodeGetRegister(m_handle, memory, size);
                },
                what));
        default:
            throw ToolError("can't " + what + ": a " + TypeName(m_info.type) + " has no value");
    }
}

FeatureRange Node::ReadRange() const {
    const std::string what = "read " + m_name;
    if (m_info.type == OV_NODE_TYPE_INTEGER) {
        OV_INT_RANGE range{};
        Check(OvNodeGetIntegerRange(m_handle, &range), what);
        return range;
    }
    if (m_info.type == OV_NODE_TYPE_FLOAT) {
        OV_FLOAT_RANGE range{};
        Check(OvNodeGetFloatRange(m_handle, &range), what);
        return range;
    }
    if (m_info.type == OV_NODE_TYPE_ENUMERATION) {
        std::vector<std::string> names;
        for (const Node& entry : AvailableEntries()) {
            names.push_back(entry.Symbolic());
        }
        return names;
    }
    return std::monostate{};
}

const char* TypeName(OV_NODE_TYPE type) {
    static constexpr std::array kNames{"?",      "integer", "float",    "enum",  "bool", "string",
                                       "buffer", "command", "category", "entry", "port"};
    return WordOf(kNames, type);
}

const char* NodeAccessName(OV_NODE_ACCESS access) {
    static constexpr std::array kNames{"not implemented", "not available", "write only",
                                       "read only", "read and write"};
    return WordOf(kNames, access);
}

const std::vector<std::string>& VisibilityNames() {
    static const std::vector<std::string> names{"beginner", "expert", "guru", "invisible"};
    return names;
}

const char* VisibilityName(OV_NODE_VISIBILITY visibility) {
    const auto index = static_cast<size_t>(visibility);
    return index < VisibilityNames().size() ? VisibilityNames()[index].c_str() : "?";
}
