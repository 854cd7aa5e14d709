#pragma once
/// Nodes over a port of a producer, without the library in between.

#include <memory>
#include <string>

#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "camera/GenTLProducer.h"
#include "support/Error.h"

struct NodeMapDestroyer {
    void operator()(GenApi_3_0_ORVANE::INodeMap* map) const;
};
using NodeMap = std::unique_ptr<GenApi_3_0_ORVANE::INodeMap, NodeMapDestroyer>;

/// The nodes of the description that a port has, which lead nowhere yet. Raises when the
/// description lies elsewhere.
NodeMap LoadNodes(const GenTLProducer& producer, GenTL::PORT_HANDLE port);

/// The nodes of a module, which read and write its port. The producer must live longer.
class ProducerNodes : private GenApi_3_0_ORVANE::IPort {
public:
    ProducerNodes(const GenTLProducer& producer, GenTL::PORT_HANDLE port);

    /// Whether the module has the feature.
    bool Has(const std::string& name) const;
    /// Raises for a name that isn't there, or whose node is of another kind.
    template <class Kind>
    Kind& As(const std::string& name) const {
        auto* const node = dynamic_cast<Kind*>(m_map->GetNode(name.c_str()));
        if (node == nullptr) {
            throw ToolError("the producer lacks the feature " + name);
        }
        return *node;
    }

private:
    GenApi_3_0_ORVANE::EAccessMode GetAccessMode() override { return GenApi_3_0_ORVANE::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

    const GenTLProducer& m_producer;
    const GenTL::PORT_HANDLE m_port;
    NodeMap m_map;
};
