#pragma once
/// What tests of selectors and bags share: nodes in a few words, a device that
/// does something by itself.

#include <cstddef>
#include <functional>
#include <initializer_list>

#include "GenApi/FeatureBag.h"
#include "NodeGraph.h"

namespace EngineTest {

// Where devices have the selectors "Bank" and "Channel", and a feature.
inline constexpr int kBank = 0;
inline constexpr int kChannel = 4;
inline constexpr int kGain = 0x100;

inline const std::string kStreamable = "<Streamable>Yes</Streamable>";

/// The category that makes features of nodes.
inline std::string RootXml(std::initializer_list<const char*> features) {
    std::string content;
    for (const char* const feature : features) {
        content += Element("pFeature", feature);
    }
    return NodeXml("Category", "Root", content);
}

/// A register that keeps a number for each value of its selectors.
struct IndexXml {
    const char* selector;
    int offset;
};
inline std::string SelectedXml(const std::string& name, int address,
                               std::initializer_list<IndexXml> indices) {
    std::string place = At(address);
    for (const IndexXml& index : indices) {
        place += "<pIndex Offset=\"" + std::to_string(index.offset) + "\">" + index.selector +
                 "</pIndex>";
    }
    return RegXml{.name = name, .common = kStreamable, .place = place}();
}

/// What a selector selects, as elements.
inline std::string Selects(std::initializer_list<const char*> features) {
    std::string content;
    for (const char* const feature : features) {
        content += Element("pSelected", feature);
    }
    return content;
}

/// An integer over a register of its own.
inline std::string IntSelectorXml(const std::string& name, int address, const std::string& limits,
                                  std::initializer_list<const char*> selected,
                                  bool isStandard = false) {
    return RegXml{.name = name + "Reg", .address = address}() +
           NodeXml("Integer", name, Element("pValue", name + "Reg") + limits + Selects(selected),
                   isStandard);
}

/// An enumeration over a register of its own. Entries count from 0; `common` is
/// what an entry has beyond its number.
struct EntryXml {
    const char* symbolic;
    const char* common = "";
};
inline std::string EnumSelectorXml(const std::string& name, int address,
                                   std::initializer_list<EntryXml> entries,
                                   std::initializer_list<const char*> selected,
                                   bool isStandard = false) {
    std::string content;
    int value = 0;
    for (const EntryXml& entry : entries) {
        content += NodeXml("EnumEntry", entry.symbolic,
                           entry.common + Element("Value", std::to_string(value++)));
    }
    return RegXml{.name = name + "Reg", .address = address}() +
           NodeXml("Enumeration", name,
                   content + Element("pValue", name + "Reg") + Selects(selected), isStandard);
}

/// A command that writes 1 to a register of its own.
inline std::string CommandXml(const std::string& name, int address,
                              const std::string& access = "WO") {
    return RegXml{.name = name + "Reg", .address = address, .access = access}() +
           NodeXml("Command", name,
                   Element("pValue", name + "Reg") + "<CommandValue>1</CommandValue>", true);
}

/// Memory behind which a device acts: the hooks run after an access.
class DevicePort : public TestPort {
public:
    using Hook = std::function<void(int64_t address)>;

    void Read(void* buffer, int64_t address, int64_t length) override {
        TestPort::Read(buffer, address, length);
        if (onRead) {
            onRead(address);
        }
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        TestPort::Write(buffer, address, length);
        if (onWrite) {
            onWrite(address);
        }
    }

    Hook onRead;
    Hook onWrite;
};

/// Live nodes over such a device.
class Device {
public:
    explicit Device(const std::string& body) : m_Nodes(body) { m_Nodes->Connect(&m_Port); }

    DevicePort& Port() { return m_Port; }
    INodeMap* Map() { return &m_Nodes.Map(); }
    template <class Interface = INode>
    Interface& Get(const char* name) {
        return m_Nodes.Get<Interface>(name);
    }

private:
    DevicePort m_Port;
    XmlNodeMap m_Nodes;
};

/// The entries of a bag as "Name=Value".
inline std::vector<std::string> EntriesOf(const CFeatureBag& bag) {
    std::vector<std::string> entries;
    for (size_t i = 0; i < bag.GetNames().size(); ++i) {
        entries.emplace_back(bag.GetNames()[i] + "=" + bag.GetValues()[i]);
    }
    return entries;
}

inline std::vector<std::string> TextsOf(const gcstring_vector& texts) {
    std::vector<std::string> result;
    for (const gcstring& text : texts) {
        result.emplace_back(text.c_str());
    }
    return result;
}

}  // namespace EngineTest
