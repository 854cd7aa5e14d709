#include "GenApi/impl/PortWriteList.h"

namespace GenApi_3_0_ORVANE {

void CPortWriteList::Write(const void* buffer, int64_t address, int64_t length) {
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    m_Records.push_back({address, {bytes, bytes + length}});
}

void CPortWriteList::Replay(IPort* port) {
    for (const Record& record : m_Records) {
        port->Write(record.bytes.data(), record.address, static_cast<int64_t>(record.bytes.size()));
    }
}

}  // namespace GenApi_3_0_ORVANE
