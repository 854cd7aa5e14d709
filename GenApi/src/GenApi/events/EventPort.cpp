// Connects a port node to its event. The event is copied: the message is gone when its features
// are read.

#include "GenApi/EventPort.h"

#include <algorithm>
#include <utility>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::AutoLock;
using GenICam_3_0_ORVANE::CLock;

namespace {

/// The text of the failure is the broken condition. It is fixed: programs may compare it.
CPortID IdentifierOf(INode& node) {
    const gcstring EventID = node.GetEventID();
    return {{EventID.c_str(), EventID.length()},
            node,
            "EventID.length() % 2 == 0 && \"a hex string must be composed of an "
            "even number of characters\""};
}

/// One text for both ways of access.
[[noreturn]] void RefuseAccess(const char* way, int64_t address, EAccessMode mode) {
    RUNTIME_EXCEPTION("Can't %s Register %016lX. Access mode is %s", way,
                      static_cast<unsigned long>(address), EAccessModeClass::ToString(mode));
}

}  // namespace

CEventPort::~CEventPort() {
    try {
        DetachNode();
    } catch (...) {  // NOLINT(bugprone-empty-catch)
        // A callback has raised it. The node is detached all the same, and a destructor
        // has nobody to report to.
    }
}

CLock& CEventPort::GetLock() const {
    return m_ptrNode->GetNodeMap()->GetLock();
}

void CEventPort::AttachNode(INode* node) {
    DetachNode();
    m_ptrNode = CPointer<INode>(node);
    OV_ASSERT(m_ptrNode.IsValid() && "every port is a node");
    // Not ours until its identifier is known: a failure leaves the node as it was.
    const CPointer<INode> own = std::exchange(m_ptrNode, {});
    m_EventID = IdentifierOf(*own);
    m_ptrNode = own;
    // From here on the node reads from here. It hands itself to SetPortImpl below.
    const CPointer<IPortConstruct> port(m_ptrNode);
    if (port.IsValid()) {
        port->SetPortImpl(this);
    }
}

/// The node is free of this port before it learns that: SetPortImpl runs callbacks, which may
/// look here.
void CEventPort::DetachNode() {
    if (!m_ptrNode.IsValid()) {
        return;
    }
    const CPointer<IPortConstruct> port(m_ptrNode);
    {
        const AutoLock lock(GetLock());
        m_ptrNode = {};
        DropEvent();
    }
    if (port.IsValid()) {
        port->SetPortImpl(nullptr);
    }
}

/// The node passes itself while it takes this port as its transport.
void CEventPort::SetPortImpl(IPort* port) {
    m_ptrNode = CPointer<INode>(port);
    OV_ASSERT(m_ptrNode.IsValid() && "every port is a node");
}

EYesNo CEventPort::GetSwapEndianess() {
    const CPointer<IPortConstruct> port(m_ptrNode);
    return port.IsValid() ? port->GetSwapEndianess() : No;
}

bool CEventPort::CheckEventID(const uint8_t* bytes, int64_t length) const {
    return m_EventID.Matches(bytes, static_cast<size_t>(length));
}

/// The arguments are checked before the node is looked at, so that a wrong call fails with and
/// without one.
void CEventPort::AttachEvent(const uint8_t* data, int64_t length) {
    if (length < 0) {
        LOGICAL_ERROR_EXCEPTION("Negative 'Length' is not allowed here");
    }
    if (length > 0 && data == nullptr) {
        LOGICAL_ERROR_EXCEPTION(
            "If an event carries data ('Length' > 0) a valid pointer must be provided");
    }
    if (m_ptrNode.IsValid()) {
        Keep(data, length);
        InvalidateNode();
    }
}

/// The lock is released before the node is set invalid, so that callbacks which may take other
/// locks run without it.
void CEventPort::Keep(const uint8_t* data, int64_t length) {
    const AutoLock lock(GetLock());
    if (m_EventDataAlloc < length) {
        // The old event goes first: if there is no memory for the new one, nobody reads an event
        // that is outdated.
        DropEvent();
        m_pEventData = std::make_unique_for_overwrite<uint8_t[]>(static_cast<size_t>(length));
        m_EventDataAlloc = length;
    }
    m_EventDataLength = length;
    std::copy_n(data, length, m_pEventData.get());
}

/// A node that had no event hasn't changed.
void CEventPort::DetachEvent() {
    if (!m_ptrNode.IsValid()) {
        return;
    }
    bool hadEvent = false;
    {
        const AutoLock lock(GetLock());
        hadEvent = DropEvent();
    }
    if (hadEvent) {
        InvalidateNode();
    }
}

bool CEventPort::DropEvent() {
    const bool hadEvent = m_EventDataLength > 0;
    m_pEventData.reset();
    m_EventDataAlloc = 0;
    m_EventDataLength = 0;
    return hadEvent;
}

void CEventPort::InvalidateNode() {
    m_ptrNode->InvalidateNode();
}

/// An event without data has nothing to read; it only ran the callbacks.
EAccessMode CEventPort::GetAccessMode() {
    return m_EventDataLength > 0 ? RO : NA;
}

void CEventPort::Read(void* buffer, int64_t address, int64_t length) {
    // Without a node there is no lock, and no event that it would guard.
    if (!m_ptrNode.IsValid()) {
        RefuseAccess("read from", address, NA);
    }
    const AutoLock lock(GetLock());
    CopyOut(buffer, address, length);
}

/// The comparisons avoid sums, which could overflow: a description decides about both numbers.
void CEventPort::CopyOut(void* buffer, int64_t address, int64_t length) {
    const EAccessMode mode = GetAccessMode();
    if (mode != RO) {
        RefuseAccess("read from", address, mode);
    }
    const bool isWithin = address >= 0 && address <= m_EventDataLength && length >= 0 &&
                          length <= m_EventDataLength - address;
    if (!isWithin) {
        const auto end = static_cast<uint64_t>(address) + static_cast<uint64_t>(length);
        RUNTIME_EXCEPTION(
            "CEventPort : Attempt to read address range [%ld,%ld] which is outside the buffers "
            "address range [0,%ld]",
            address, static_cast<int64_t>(end), m_EventDataLength);
    }
    std::copy_n(m_pEventData.get() + address, length, static_cast<uint8_t*>(buffer));
}

void CEventPort::Write(const void* /*buffer*/, int64_t address, int64_t /*length*/) {
    RefuseAccess("write to", address, GetAccessMode());
}

}  // namespace GenApi_3_0_ORVANE
