#pragma once
/// The link between a port node and its chunk: metadata within a frame's buffer.

#include <memory>

#include "Base/Lock.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/Pointer.h"
#include "GenApi/PortID.h"

namespace GenApi_3_0_ORVANE {

/// Lets the registers of a port node read from the chunk in place of the device.
///
/// Addresses count from the chunk's start, negative ones from its end. Writing
/// changes the buffer or the private copy, whichever is in use, and no device.
/// The buffer belongs to the client and must live until DetachChunk. All
/// operations take the lock of the node's map; attaching to a node and detaching
/// from it are the owner's, one thread at a time.
class OV_ENGINE_API CChunkPort : public IPortConstruct {
public:
    CChunkPort() = default;
    explicit CChunkPort(IPort* port) : CChunkPort() { AttachPort(port); }
    /// Detaches from the node, which must still live.
    ~CChunkPort() override;
    CChunkPort(const CChunkPort&) = delete;
    CChunkPort& operator=(const CChunkPort&) = delete;

    /// Takes the place of the node's transport and learns the identifier. A port
    /// that is no node ends the process. RuntimeException for an identifier that is
    /// no hexadecimal number of whole bytes, which leaves the node as it was.
    void AttachPort(IPort* port);
    void DetachPort();

    /// Whether the identifier that a device sent, leading zeros aside, is ours.
    bool CheckChunkID(const uint8_t* bytes, int64_t length) const;
    /// The same for transports that send a number; false for an identifier of
    /// more than 64 bits.
    bool CheckChunkID(uint64_t number) const { return m_ChunkID.Matches(number); }
    /// In bytes, without leading zeros.
    int64_t GetChunkIDLength() const { return static_cast<int64_t>(m_ChunkID.GetLength()); }

    /// Binds the chunk of a new buffer.
    /// @param base    the buffer's start, never null
    /// @param offset  of the chunk in the buffer, in bytes
    /// @param length  of the chunk, in bytes, above 0
    /// @param cache   whether a private copy may be made; the node decides then
    void AttachChunk(uint8_t* base, int64_t offset, int64_t length, bool cache);
    /// Lets the buffer go. With a private copy the chunk stays readable.
    void DetachChunk();
    /// The chunk lies at the same place of another buffer now. Without a chunk
    /// nothing happens: the old place says nothing of the new buffer. When the
    /// private copy was freed it is a RuntimeException, and the chunk is read from
    /// the new buffer.
    void UpdateBuffer(uint8_t* base);
    /// Frees the private copy; what is bound is read from the buffer again.
    void ClearCache();
    void InvalidateNode();

    /// RW with a chunk to read from, else NA.
    EAccessMode GetAccessMode() override;
    /// Two addresses tell of the chunk itself, as numbers of 8 bytes:
    /// 0x7FFFFFFFFFFFFFFF where it lies in memory and 0x7FFFFFFFFFFFFFF0 its
    /// length. RuntimeException for what isn't within the chunk.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;
    /// Called by the node in return.
    void SetPortImpl(IPort* port) override;
    EYesNo GetSwapEndianess() override;

private:
    GenICam_3_0_ORVANE::CLock& GetLock() const;
    void RequirePort() const;
    bool ReadAboutChunk(void* buffer, int64_t address, int64_t length) const;
    void FillCopy();
    /// Where the chunk is read from; null when there is nothing to read.
    uint8_t* GetData() const;
    /// A range of the chunk; null when the chunk doesn't hold all of it.
    uint8_t* Find(int64_t address, int64_t length) const;

    /// The buffer's start; null when detached.
    uint8_t* m_pBaseAddress = nullptr;
    int64_t m_ChunkOffset = 0;
    int64_t m_Length = 0;
    /// The size of the private copy.
    int64_t m_LengthAlloc = 0;
    CPointer<INode> m_ptrPort;
    /// Of the same node.
    CPointer<IChunkPort> m_ptrChunkPort;
    CPortID m_ChunkID;
    std::unique_ptr<uint8_t[]> m_pChunkData;
    /// Whether this attachment uses the private copy.
    bool m_CacheData = false;
};

}  // namespace GenApi_3_0_ORVANE
