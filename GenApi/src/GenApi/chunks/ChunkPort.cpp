// Connects a port node to its chunk. The chunk is read from the frame's buffer, or from a private
// copy that outlives the buffer.

#include "GenApi/ChunkPort.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "core/NodeExceptions.h"
#include "ports/ChunkAddresses.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::AutoLock;
using GenICam_3_0_ORVANE::CLock;

namespace {

/// The text of the failure is the broken condition. It is fixed: programs may compare it.
CPortID IdentifierOf(IChunkPort& port, INode& node) {
    const gcstring ChunkID = port.GetChunkID();
    return {
        {ChunkID.c_str(), ChunkID.length()},
        node,
        "ChunkID.length() % 2 == 0 && \"a hex string must consist of an even number of chars\""};
}

}  // namespace

CChunkPort::~CChunkPort() {
    try {
        DetachPort();
    } catch (...) {  // NOLINT(bugprone-empty-catch): a callback's; the node is free of us
    }
}

/// The map's lock, so that features which are read during an update see one buffer or the other.
CLock& CChunkPort::GetLock() const {
    return m_ptrPort->GetNodeMap()->GetLock();
}

void CChunkPort::AttachPort(IPort* port) {
    DetachPort();
    m_ptrPort = CPointer<INode>(port);
    OV_ASSERT(m_ptrPort.IsValid() && "its not a port???");
    // Not ours until its identifier is known: a failure leaves the node as it was.
    const CPointer<INode> node = std::exchange(m_ptrPort, {});
    const CPointer<IChunkPort> chunkPort(port);
    m_ChunkID = IdentifierOf(*chunkPort, *node);
    m_CacheData = chunkPort->CacheChunkData() == Yes;
    m_ptrPort = node;
    // From here on the node reads from here. It hands itself to SetPortImpl below.
    CPointer<IPortConstruct>(port)->SetPortImpl(this);
}

/// The node is free of this port before it learns that: SetPortImpl runs callbacks, which may
/// look here.
void CChunkPort::DetachPort() {
    if (!m_ptrPort.IsValid()) {
        return;
    }
    const CPointer<IPortConstruct> port(m_ptrPort);
    {
        const AutoLock lock(GetLock());
        m_ptrPort = {};
        m_ptrChunkPort = {};
    }
    port->SetPortImpl(nullptr);
}

void CChunkPort::SetPortImpl(IPort* port) {
    m_ptrPort = CPointer<INode>(port);
    m_ptrChunkPort = CPointer<IChunkPort>(port);
    OV_ASSERT(m_ptrPort.IsValid() && m_ptrChunkPort.IsValid());
}

EYesNo CChunkPort::GetSwapEndianess() {
    return CPointer<IPortConstruct>(m_ptrPort)->GetSwapEndianess();
}

bool CChunkPort::CheckChunkID(const uint8_t* bytes, int64_t length) const {
    return m_ChunkID.Matches(bytes, static_cast<size_t>(length));
}

/// The memory of the private copy is kept and only grows, so that a stream of frames allocates
/// nothing. A copy is made only if both the description and the adapter's limit allow it.
void CChunkPort::AttachChunk(uint8_t* base, int64_t offset, int64_t length, bool cache) {
    OV_ASSERT(base != nullptr);
    OV_ASSERT(length > 0);
    const AutoLock lock(GetLock());
    const bool useCopy = cache && m_ptrChunkPort->CacheChunkData() == Yes;
    if (useCopy && m_LengthAlloc < length) {
        m_pChunkData = std::make_unique_for_overwrite<uint8_t[]>(static_cast<size_t>(length));
        m_LengthAlloc = length;
    }
    m_CacheData = useCopy;
    m_pBaseAddress = base;
    m_ChunkOffset = offset;
    m_Length = length;
    if (m_CacheData) {
        FillCopy();
    }
    // With the lock still held, so that nobody reads the new chunk together with values
    // that are kept of the old one.
    InvalidateNode();
}

/// Made at once, with the buffer at hand: when somebody reads, the buffer may be the device's
/// again.
void CChunkPort::FillCopy() {
    std::copy_n(m_pBaseAddress + m_ChunkOffset, m_Length, m_pChunkData.get());
}

/// With a private copy, offset and length stay those of the copy's chunk.
void CChunkPort::DetachChunk() {
    const AutoLock lock(GetLock());
    m_pBaseAddress = nullptr;
    if (!m_CacheData) {
        m_ChunkOffset = 0;
        m_Length = 0;
    }
    InvalidateNode();
}

/// For clients that copy a frame and want the features to follow the copy.
void CChunkPort::UpdateBuffer(uint8_t* base) {
    OV_ASSERT(base != nullptr);
    const AutoLock lock(GetLock());
    if (m_pBaseAddress == nullptr) {
        return;
    }
    m_pBaseAddress = base;
    if (m_CacheData) {
        if (!m_pChunkData) {
            // The new buffer is bound all the same: the old one may be gone.
            InvalidateNode();
            RUNTIME_EXCEPTION("m_pChunkData && \"if the cache is valid there must be data\"");
        }
        FillCopy();
    }
}

/// Whether a copy is in use isn't changed: the next buffer makes a new one.
void CChunkPort::ClearCache() {
    const AutoLock lock(GetLock());
    m_pChunkData.reset();
    m_LengthAlloc = 0;
}

void CChunkPort::InvalidateNode() {
    m_ptrPort->InvalidateNode();
}

/// Chunks can be written because clients may want to correct them in the buffer.
EAccessMode CChunkPort::GetAccessMode() {
    return GetData() != nullptr ? RW : NA;
}

uint8_t* CChunkPort::GetData() const {
    // A copy that is left from an earlier buffer is memory to be used again, not data.
    if (m_CacheData && m_pChunkData) {
        return m_pChunkData.get();
    }
    return m_pBaseAddress == nullptr ? nullptr : m_pBaseAddress + m_ChunkOffset;
}

/// Negative addresses count from the end. The comparisons avoid sums, which could overflow: a
/// description decides about both numbers.
uint8_t* CChunkPort::Find(int64_t address, int64_t length) const {
    const int64_t start = address < 0 ? address + m_Length : address;
    const bool isWithin =
        start >= 0 && start <= m_Length && length >= 0 && length <= m_Length - start;
    uint8_t* const data = GetData();
    return isWithin && data != nullptr ? data + start : nullptr;
}

/// The text is fixed, though it names the wrong port: programs may compare it.
void CChunkPort::RequirePort() const {
    if (!m_ptrPort.IsValid()) {
        RUNTIME_EXCEPTION("The event port is not attached to a node");
    }
}

bool CChunkPort::ReadAboutChunk(void* buffer, int64_t address, int64_t length) const {
    const bool isPlace = address == kChunkPlaceAddress;
    if (length != sizeof(int64_t) || (!isPlace && address != kChunkLengthAddress)) {
        return false;
    }
    // Added as numbers: the offset outlives the buffer, so the sum may no longer be a
    // pointer.
    const int64_t place = static_cast<int64_t>(reinterpret_cast<intptr_t>(m_pBaseAddress));
    const int64_t value = isPlace ? place + m_ChunkOffset : m_Length;
    std::memcpy(buffer, &value, sizeof(value));
    return true;
}

void CChunkPort::Read(void* buffer, int64_t address, int64_t length) {
    RequirePort();
    const AutoLock lock(GetLock());
    if (ReadAboutChunk(buffer, address, length)) {
        return;
    }
    const uint8_t* const source = Find(address, length);
    if (source == nullptr) {
        RUNTIME_EXCEPTION("Range error reading(%lX, %ld)", static_cast<unsigned long>(address),
                          length);
    }
    std::copy_n(source, length, static_cast<uint8_t*>(buffer));
}

void CChunkPort::Write(const void* buffer, int64_t address, int64_t length) {
    RequirePort();
    const AutoLock lock(GetLock());
    uint8_t* const target = Find(address, length);
    if (target == nullptr) {
        RUNTIME_EXCEPTION("Range error writing(%lX, %ld)", static_cast<unsigned long>(address),
                          length);
    }
    std::copy_n(static_cast<const uint8_t*>(buffer), length, target);
}

}  // namespace GenApi_3_0_ORVANE
