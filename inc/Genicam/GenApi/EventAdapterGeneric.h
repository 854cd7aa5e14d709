#pragma once

#include "Base/GCString.h"
#include "GenApi/EventAdapter.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::gcstring;

/// Events that the caller has found in a message, for transports whose layout the engine doesn't
/// know. Features read the bytes as they were delivered.
class OV_ENGINE_API CEventAdapterGeneric : public CEventAdapter {
public:
    /// @param map  attached at once; may be null
    explicit CEventAdapterGeneric(INodeMap* map = nullptr);

    /// Not for this adapter, which knows no layout: a call ends the process.
    void DeliverMessage(const uint8_t* bytes, int64_t length) override;
    /// Hands over one event.
    /// @throws LogicalErrorException, if any node waits for the event, for a negative length and
    ///         for a length without bytes
    void DeliverMessage(const uint8_t* bytes, int64_t length, uint64_t id);
    /// The same with an identifier as text.
    /// @param id  hexadecimal digits, an even number of them
    /// @throws RuntimeException for another text
    void DeliverMessage(const uint8_t* bytes, int64_t length, const gcstring& id);

private:
    /// The bytes of the identifier in use; kept for its memory.
    std::vector<uint8_t> m_Identifier;
};

}  // namespace GenApi_3_0_ORVANE
