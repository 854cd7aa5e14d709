// Writes in the order in which they were made, with copies of their bytes: the registers' buffers
// are gone by the time of the replay.

#include "ports/PortWriteList.h"

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

/// Clients may write to a list directly, and with anything.
void CPortWriteList::Write(const void* buffer, int64_t address, int64_t length) {
    if (buffer == nullptr || length < 0) {
        INVALID_ARGUMENT_EXCEPTION("CPortWriteList::Write : no bytes, or less than none");
    }
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    m_Records.push_back({address, {bytes, bytes + length}});
}

/// A failure ends the replay: the writes after it may depend on this one.
void CPortWriteList::Replay(IPort* port) {
    for (const Record& record : m_Records) {
        port->Write(record.bytes.data(), record.address, static_cast<int64_t>(record.bytes.size()));
    }
}

}  // namespace GenApi_3_0_ORVANE
