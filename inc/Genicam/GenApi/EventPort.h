#pragma once
/// The link between a port node and its event: what the device last sent of it.

#include <memory>

#include "Base/Lock.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/Pointer.h"
#include "GenApi/PortID.h"

namespace GenApi_3_0_ORVANE {

/// Lets the registers of a port node read from the latest event in place of the
/// device.
///
/// Addresses count from the event's first byte. The port keeps a copy, so
/// features stay readable until the next event. A node that declares an event
/// without being a port learns of it by its callbacks alone. All operations take
/// the lock of the node's map; attaching to a node and detaching from it are the
/// owner's, one thread at a time.
class OV_ENGINE_API CEventPort : public IPortConstruct {
public:
    CEventPort() = default;
    explicit CEventPort(INode* node) : CEventPort() { AttachNode(node); }
    /// Detaches from the node, which must still live.
    ~CEventPort() override;
    CEventPort(const CEventPort&) = delete;
    CEventPort& operator=(const CEventPort&) = delete;

    /// Takes the place of the node's transport and learns the identifier. No node
    /// ends the process. RuntimeException for an identifier that is no hexadecimal
    /// number of whole bytes, which leaves the node as it was.
    void AttachNode(INode* node);
    /// Leaves the node without a transport and forgets the event. What a callback
    /// of the node raises goes on to the caller; the node is detached then.
    void DetachNode();

    /// Whether the identifier that a device sent, leading zeros aside, is ours.
    /// @param length  in bytes
    bool CheckEventID(const uint8_t* bytes, int64_t length) const;
    /// The same for transports that send a number; false for an identifier of
    /// more than 64 bits.
    bool CheckEventID(uint64_t number) const { return m_EventID.Matches(number); }
    /// In bytes, without leading zeros.
    int64_t GetEventIDLength() const { return static_cast<int64_t>(m_EventID.GetLength()); }

    /// Keeps a copy of an event and invalidates the node, so that its callbacks
    /// run: those that may take locks of their own without the map's. Without a
    /// node the event is dropped. LogicalErrorException for a negative length and
    /// for a length without bytes.
    /// @param data    read during the call only; may be null for an event that
    ///                carries no data
    /// @param length  in bytes
    void AttachEvent(const uint8_t* data, int64_t length);
    /// Forgets the event and frees its memory. Invalidates the node if there was
    /// one.
    void DetachEvent();
    void InvalidateNode();

    /// RO with an event that carries data, else NA.
    EAccessMode GetAccessMode() override;
    /// RuntimeException without an event and for what isn't within it.
    void Read(void* buffer, int64_t address, int64_t length) override;
    /// An event can't be changed: always RuntimeException.
    void Write(const void* buffer, int64_t address, int64_t length) override;
    /// Called by the node in return.
    void SetPortImpl(IPort* port) override;
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
