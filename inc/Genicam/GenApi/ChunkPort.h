#pragma once
/// Connects a port node to its chunk: metadata in the buffer of a frame.

#include <memory>

#include "Base/Lock.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/Pointer.h"
#include "GenApi/PortID.h"

namespace GenApi_3_0_ORVANE {

/// Lets the registers of a port node read from a chunk instead of from the device.
///
/// Addresses count from the start of the chunk, negative ones from its end. Writes change the
/// buffer, or the private copy if there is one; the device doesn't see them. The buffer belongs
/// to the client and must live until DetachChunk. All operations take the lock of the node's map,
/// except that one thread at a time attaches and detaches nodes.
class OV_ENGINE_API CChunkPort : public IPortConstruct {
public:
    CChunkPort() = default;
    /// Attaches to a port node.
    explicit CChunkPort(IPort* port) : CChunkPort() { AttachPort(port); }
    /// Detaches from the node, which must still live.
    ~CChunkPort() override;
    CChunkPort(const CChunkPort&) = delete;
    CChunkPort& operator=(const CChunkPort&) = delete;

    /// Takes the place of the transport of a port node, and learns the identifier from it. A port
    /// that isn't a node ends the process.
    /// @throws RuntimeException if the identifier isn't a hexadecimal number of whole bytes; the
    ///         node is as before then
    void AttachPort(IPort* port);
    /// Leaves the node without a transport. Nothing happens if no node is attached.
    void DetachPort();

    /// Whether these bytes are the identifier, leading zeros aside.
    /// @param length  in bytes
    bool CheckChunkID(const uint8_t* bytes, int64_t length) const;
    /// The same for transports that send a number; false for an identifier of more than 64 bits.
    bool CheckChunkID(uint64_t number) const { return m_ChunkID.Matches(number); }
    /// Returns the length of the identifier in bytes, without leading zeros.
    int64_t GetChunkIDLength() const { return static_cast<int64_t>(m_ChunkID.GetLength()); }

    /// Binds the chunk of a new buffer and sets the node invalid.
    /// @param base    the start of the buffer, never null
    /// @param offset  of the chunk in the buffer, in bytes
    /// @param length  of the chunk, in bytes, above 0
    /// @param cache   whether a private copy may be made; it is made if the node asks for one,
    ///         too
    void AttachChunk(uint8_t* base, int64_t offset, int64_t length, bool cache);
    /// Lets go of the buffer. With a private copy the chunk stays readable.
    void DetachChunk();
    /// Binds the chunk to the same place of another buffer. Nothing happens without a chunk: the
    /// old place says nothing about the new buffer.
    /// @throws RuntimeException if the private copy was freed; the chunk is then read from the
    ///         new buffer
    void UpdateBuffer(uint8_t* base);
    /// Frees the private copy. A chunk that is bound is then read from the buffer.
    void ClearCache();
    /// Sets the node invalid, with all that depends on it.
    void InvalidateNode();

    /// Returns RW while there is a chunk to read from, else NA.
    EAccessMode GetAccessMode() override;
    /// Reads from the chunk. Two addresses return numbers of 8 bytes about the chunk itself:
    /// 0x7FFFFFFFFFFFFFFF where it is in memory, 0x7FFFFFFFFFFFFFF0 its length.
    /// @throws RuntimeException for what isn't within the chunk
    void Read(void* buffer, int64_t address, int64_t length) override;
    /// Writes to the buffer or the private copy.
    /// @throws RuntimeException for what isn't within the chunk
    void Write(const void* buffer, int64_t address, int64_t length) override;
    /// For the node, which calls it when this takes the place of its transport.
    void SetPortImpl(IPort* port) override;
    /// Returns what the node's description says.
    EYesNo GetSwapEndianess() override;

private:
    GenICam_3_0_ORVANE::CLock& GetLock() const;
    void RequirePort() const;
    bool ReadAboutChunk(void* buffer, int64_t address, int64_t length) const;
    void FillCopy();
    /// Where the chunk is read from; null while there is nothing to read.
    uint8_t* GetData() const;
    /// A range of the chunk; null unless the chunk holds all of it.
    uint8_t* Find(int64_t address, int64_t length) const;

    /// The start of the buffer; null while none is attached.
    uint8_t* m_pBaseAddress = nullptr;
    int64_t m_ChunkOffset = 0;
    int64_t m_Length = 0;
    /// The size of the private copy, which shorter chunks use again.
    int64_t m_LengthAlloc = 0;
    CPointer<INode> m_ptrPort;
    /// The other interface of the same node.
    CPointer<IChunkPort> m_ptrChunkPort;
    CPortID m_ChunkID;
    std::unique_ptr<uint8_t[]> m_pChunkData;
    /// Whether this attachment uses the private copy.
    bool m_CacheData = false;
};

}  // namespace GenApi_3_0_ORVANE
