#pragma once
/// Feature access over a few lines of description, on memory.

#include <string>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeatureControl.h"
#include "support/TestPort.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {

class FeatureNodes {
public:
    /// @param body  what stands between the "RegisterDescription" tags
    explicit FeatureNodes(const std::string& body) : m_control(&m_nodes) {
        m_nodes._LoadXMLFromString(EngineTest::XmlNodeMap::Describe(body).c_str());
        m_nodes._Connect(&m_port);
    }

    CFeatureControl& Control() { return m_control; }
    CFeatureControl* operator->() { return &m_control; }
    EngineTest::TestPort& Port() { return m_port; }
    template <class Interface>
    Interface& Node(const char* name) {
        return dynamic_cast<Interface&>(*m_nodes._GetNode(name));
    }

private:
    EngineTest::TestPort m_port;
    GenApi_3_0_ORVANE::CNodeMapRef m_nodes;
    CFeatureControl m_control;
};

}  // namespace OVTLClass
