// The identifiers of chunks and events, as descriptions write them and devices send them.

#include "GenApi/PortID.h"

#include <algorithm>
#include <charconv>

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

namespace {

bool IsZero(uint8_t byte) {
    return byte == 0;
}

}  // namespace

/// Not through a number: identifiers may have any length.
bool AppendHexBytes(std::string_view text, std::vector<uint8_t>& bytes) {
    for (; text.size() >= 2; text.remove_prefix(2)) {
        uint8_t byte = 0;
        const char* const end = text.data() + 2;
        if (std::from_chars(text.data(), end, byte, 16).ptr != end) {
            return false;
        }
        bytes.push_back(byte);
    }
    return text.empty();
}

/// An odd number of digits is a fault of the node, so that adapters skip it. Other characters are
/// an exception for whoever attaches the adapter.
CPortID::CPortID(std::string_view text, INode& node, const char* evenRule) {
    if (text.size() % 2 != 0) {
        throw ExceptionReporterNode<NodeFaultException<GenICam_3_0_ORVANE::RuntimeException>>(
            dynamic_cast<INodePrivate&>(node), __FILE__, __LINE__, "RuntimeException")
            .Report("%s", evenRule);
    }
    if (!AppendHexBytes(text, m_Bytes)) {
        RUNTIME_EXCEPTION("Invalid ID of a port: %.*s", static_cast<int>(text.size()), text.data());
    }
    m_Bytes.erase(m_Bytes.begin(), std::find_if_not(m_Bytes.begin(), m_Bytes.end(), IsZero));
    // Transports that send numbers would otherwise have to convert one for each comparison.
    m_IsNumber = m_Bytes.size() <= sizeof(m_Number);
    if (m_IsNumber) {
        for (const uint8_t byte : m_Bytes) {
            m_Number = m_Number << 8 | byte;
        }
    }
}

/// The device's leading zeros are skipped here, those of the description when it was read.
bool CPortID::Matches(const uint8_t* bytes, size_t length) const {
    const uint8_t* const end = bytes + length;
    const uint8_t* const first = std::find_if_not(bytes, end, IsZero);
    return std::equal(first, end, m_Bytes.begin(), m_Bytes.end());
}

}  // namespace GenApi_3_0_ORVANE
