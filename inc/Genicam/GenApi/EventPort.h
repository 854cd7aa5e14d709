#pragma once
/// Connects a port node to its event: the latest message that the device sent about it.

#include <memory>

#include "Base/Lock.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/Pointer.h"
#include "GenApi/PortID.h"

namespace GenApi_3_0_ORVANE {

/// Lets the registers of a port node read from the latest event instead of from the device.
///
/// Addresses count from the first byte of the event. The port keeps a copy, so features stay
/// readable until the next event. A node that declares an event without being a port only has its
/// callbacks run. All operations take the lock of the node's map, except that one thread at a
/// time attaches and detaches nodes.
class OV_ENGINE_API CEventPort : public IPortConstruct {
public:
    CEventPort() = default;
    /// Attaches to a node.
    explicit CEventPort(INode* node) : CEventPort() { AttachNode(node); }
    /// Detaches from the node, which must still live.
    ~CEventPort() override;
    CEventPort(const CEventPort&) = delete;
    CEventPort& operator=(const CEventPort&) = delete;

    /// Takes the place of the transport of a port node, and learns the identifier from it. Null
    /// ends the process.
    /// @throws RuntimeException if the identifier isn't a hexadecimal number of whole bytes; the
    ///         node is as before then
    void AttachNode(INode* node);
    /// Leaves the node without a transport and forgets the event. An exception from a callback of
    /// the node passes on to the caller, with the node detached.
    void DetachNode();

    /// Whether these bytes are the identifier, leading zeros aside.
    /// @param length  in bytes
    bool CheckEventID(const uint8_t* bytes, int64_t length) const;
    /// The same for transports that send a number; false for an identifier of more than 64 bits.
    bool CheckEventID(uint64_t number) const { return m_EventID.Matches(number); }
    /// Returns the length of the identifier in bytes, without leading zeros.
    int64_t GetEventIDLength() const { return static_cast<int64_t>(m_EventID.GetLength()); }

    /// Keeps a copy of an event and sets the node invalid, which runs its callbacks. Without a
    /// node the event is dropped.
    /// @param data    read during the call only; may be null for an event that carries no data
    /// @param length  in bytes
    /// @throws LogicalErrorException for a negative length and for a length without bytes
    void AttachEvent(const uint8_t* data, int64_t length);
    /// Forgets the event and frees its memory. If there was one, sets the node invalid.
    void DetachEvent();
    /// Sets the node invalid, with all that depends on it.
    void InvalidateNode();

    /// Returns RO while there is an event that carries data, else NA.
    EAccessMode GetAccessMode() override;
    /// Reads from the event.
    /// @throws RuntimeException without an event and for what isn't within it
    void Read(void* buffer, int64_t address, int64_t length) override;
    /// Events can't be changed.
    /// @throws RuntimeException always
    void Write(const void* buffer, int64_t address, int64_t length) override;
    /// For the node, which calls it when this takes the place of its transport.
    void SetPortImpl(IPort* port) override;
    /// Returns what the node's description says.
    EYesNo GetSwapEndianess() override;

private:
    GenICam_3_0_ORVANE::CLock& GetLock() const;
    void Keep(const uint8_t* data, int64_t length);
    bool DropEvent();
    void CopyOut(void* buffer, int64_t address, int64_t length);

    std::unique_ptr<uint8_t[]> m_pEventData;
    int64_t m_EventDataLength = 0;
    /// The size of the copy's memory, which shorter events use again.
    int64_t m_EventDataAlloc = 0;
    CPointer<INode> m_ptrNode;
    CPortID m_EventID;
};

}  // namespace GenApi_3_0_ORVANE
