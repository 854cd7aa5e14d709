#pragma once
/// Feature access over a few lines of description, on memory.

#include <string>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeatureControl.h"
#include "support/DescriptionXml.h"
#include "support/TestPort.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {

/// A register of four bytes whose every use reaches the port.
inline std::string UncachedRegXml(const std::string& name, int address,
                                  const std::string& access = "RW") {
    return DescriptionXml::RegXml{
        .name = name, .address = address, .access = access, .caching = "NoCache"}();
}

template <class Port>
class FeatureNodesOn {
public:
    /// @param body  what is between the "RegisterDescription" tags
    explicit FeatureNodesOn(const std::string& body, int schemaMinor = 1) : m_control(&m_nodes) {
        m_nodes._LoadXMLFromString(EngineTest::XmlNodeMap::Describe(body, schemaMinor).c_str());
        m_nodes._Connect(&m_port);
    }

    CFeatureControl& Control() { return m_control; }
    CFeatureControl* operator->() { return &m_control; }
    Port& GetPort() { return m_port; }
    template <class Interface>
    Interface& Node(const char* name) {
        return dynamic_cast<Interface&>(*m_nodes._GetNode(name));
    }

private:
    Port m_port;
    GenApi_3_0_ORVANE::CNodeMapRef m_nodes;
    CFeatureControl m_control;
};

class FeatureNodes : public FeatureNodesOn<EngineTest::TestPort> {
public:
    using FeatureNodesOn::FeatureNodesOn;
    EngineTest::TestPort& Port() { return GetPort(); }
};

}  // namespace OVTLClass
