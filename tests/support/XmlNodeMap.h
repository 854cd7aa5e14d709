#pragma once
/// Live nodes on a TestPort, made from a few lines of description.

#include <memory>
#include <string>

#include "GenApi/INode.h"
#include "GenApi/NodeMapFactory.h"
#include "support/DescriptionXml.h"
#include "support/TestPort.h"

namespace EngineTest {

/// The nodes of a description. `body` has its nodes, without the "RegisterDescription"
/// around them. A port "Device", which is added unless the body has it, is connected to
/// memory.
class XmlNodeMap {
public:
    struct Options {
        /// Shared with other maps; null for a lock of the map's own.
        GenApi_3_0_ORVANE::CLock* lock = nullptr;
        /// Descriptions of version 1.0 may hold cycles that later ones may not.
        int schemaMinor = 1;
    };

    explicit XmlNodeMap(const std::string& body) : XmlNodeMap(body, Options()) {}
    XmlNodeMap(const std::string& body, const Options& options) : m_Map(Create(body, options)) {
        m_Map->Connect(&m_Port);
    }

    TestPort& Port() { return m_Port; }
    GenApi_3_0_ORVANE::INodeMap& Map() { return *m_Map; }
    GenApi_3_0_ORVANE::INodeMap* operator->() { return m_Map.get(); }
    /// A node by one of its interfaces. Throws std::bad_cast if there is no such node.
    template <class Interface = GenApi_3_0_ORVANE::INode>
    Interface& Get(const char* name) {
        return dynamic_cast<Interface&>(*m_Map->GetNode(name));
    }

    /// The whole description, for tests that load it by themselves.
    static std::string Describe(const std::string& body, int schemaMinor = 1) {
        return DescriptionXml::DocumentXml{.schemaMinor = schemaMinor}(body);
    }

private:
    struct Destroyer {
        void operator()(GenApi_3_0_ORVANE::INodeMap* map) const {
            dynamic_cast<GenApi_3_0_ORVANE::IDestroy&>(*map).Destroy();
        }
    };

    static GenApi_3_0_ORVANE::INodeMap* Create(const std::string& body, const Options& options) {
        GenApi_3_0_ORVANE::CNodeMapFactory factory(Describe(body, options.schemaMinor).c_str());
        return options.lock == nullptr ? factory.CreateNodeMap()
                                       : factory.CreateNodeMap(*options.lock, "Device", true);
    }

    TestPort m_Port;
    std::unique_ptr<GenApi_3_0_ORVANE::INodeMap, Destroyer> m_Map;
};

}  // namespace EngineTest
