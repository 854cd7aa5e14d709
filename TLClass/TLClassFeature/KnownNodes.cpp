#include "TLClassFeature/KnownNodes.h"

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"

namespace OVTLClass {

CKnownNode::CKnownNode(GenApi_3_0_ORVANE::INode& node) : m_node(node) {
    std::apply(
        [&node](auto*&... interfaces) {
            ((interfaces = dynamic_cast<std::remove_reference_t<decltype(interfaces)>>(&node)),
             ...);
        },
        m_interfaces);
}

/// Two threads may look for the same feature. The first one's node stays: both are the same.
void CKnownNodes::Add(const CFeatureName& name, GenApi_3_0_ORVANE::INode& node) {
    if (!name.HasNumber()) {
        return;
    }
    const CAutoLock lock(m_lock);
    auto& place = m_byNumber[name.GetNumber()];
    if (place.load(std::memory_order_relaxed) == nullptr) {
        place.store(&m_nodes.emplace_back(node), std::memory_order_release);
    }
}

}  // namespace OVTLClass
