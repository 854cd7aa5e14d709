// Events that the caller has found in a message of its own transport.

#include "GenApi/EventAdapterGeneric.h"

#include <string_view>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/PortID.h"

namespace GenApi_3_0_ORVANE {

CEventAdapterGeneric::CEventAdapterGeneric(INodeMap* map) : CEventAdapter(map) {}

/// Only a programmer can mix up the adapters.
void CEventAdapterGeneric::DeliverMessage(const uint8_t* /*bytes*/, int64_t /*length*/) {
    OV_ASSERT(!"The generic event adapter knows no layout");
}

void CEventAdapterGeneric::DeliverMessage(const uint8_t* bytes, int64_t length, uint64_t id) {
    AttachEventToPorts(bytes, length, id);
}

/// The bytes of the identifier are kept in a member, whose memory the next event uses again.
void CEventAdapterGeneric::DeliverMessage(const uint8_t* bytes, int64_t length,
                                          const gcstring& id) {
    m_Identifier.clear();
    if (id.empty() || !AppendHexBytes(std::string_view(id.c_str(), id.length()), m_Identifier)) {
        RUNTIME_EXCEPTION("Invalid event ID delivered: %s", id.c_str());
    }
    AttachEventToPorts(bytes, length, m_Identifier);
}

}  // namespace GenApi_3_0_ORVANE
