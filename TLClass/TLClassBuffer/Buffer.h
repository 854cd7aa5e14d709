#pragma once
/// One frame buffer through its GenTL life.

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/UnCopyable.h"

namespace GenApi_3_0_ORVANE {
class CChunkAdapter;
class CChunkAdapterGeneric;
}  // namespace GenApi_3_0_ORVANE

namespace OVTLClass {

/// Owns its memory; the producer only borrows it between announce and revoke.
/// The object's address is the private pointer that the producer returns
/// with each frame.
class CBuffer : public CUnCopyable {
public:
    CBuffer(const CGenTLLib& lib, void* streamHandle) : m_lib(lib), m_stream(streamHandle) {}

    /// Memory of `size` bytes at an address that is a multiple of `alignment`, kept
    /// when it is such already.
    void AllocateBuffer(size_t size, size_t alignment = 1);
    void FreeBuffer();
    void AnnounceBuffer();
    /// Gives the buffer to the producer to be filled.
    void QueueBuffer();
    /// Ends the queueing of this buffer. Other threads may give frames back while
    /// a stream stops, and a buffer that they queue after the producer's last
    /// flush couldn't be revoked.
    void Withdraw();
    /// Takes the buffer back from the producer; a failure is logged. A producer that
    /// refuses still has the memory, which must stay, and the buffer stays announced.
    void RevokeBuffer();
    bool IsAnnounced() const { return m_handle != nullptr; }
    uint8_t* GetMemory() const { return m_place; }
    size_t GetSize() const { return m_size; }
    /// All that the producer says of the frame in it, asked anew.
    BUFFER_INFO GetBufferInfo() const;
    /// Fills in what can't change while the buffer is announced: its place and size, the
    /// technology of the transport, and this object as user pointer. The producer is asked with
    /// the first frame, and with each further one for what it has refused so far.
    void GetAnnouncedInfo(BUFFER_INFO& info);
    /// Asks for those facts of the frame which the record doesn't have yet. Only what the
    /// records of an application have is asked for: each fact costs a call per frame.
    void CompleteFrameInfo(BUFFER_INFO& info) const;
    /// Where the metadata lies that came with the frame. CNotImplementedError for a producer that
    /// never says.
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> GetChunkData() const;
    /// Whether a chunk reaches beyond the buffer's memory, as a producer's word
    /// may have it.
    bool IsMemoryOverFlow(const std::vector<GenTL::S_SINGLE_CHUNK_DATA>& chunks) const;
    /// Makes features read these chunks of this buffer's memory. The chunks lie
    /// within it; who attaches has asked IsMemoryOverFlow.
    void AttachBuffer(GenApi_3_0_ORVANE::CChunkAdapterGeneric& adapter,
                      const std::vector<GenTL::S_SINGLE_CHUNK_DATA>& chunks);
    /// Makes features read the chunks that are attached from this buffer, where
    /// they lie at the same places.
    void UpdateBuffer(GenApi_3_0_ORVANE::CChunkAdapter& adapter);

private:
    const CGenTLLib& m_lib;
    void* m_stream;
    /// Null while not announced. A stop takes it away while another thread may
    /// still fetch a frame.
    std::atomic<void*> m_handle{nullptr};
    CLock m_queueMutex{LockRank::BufferQueue};
    bool m_isWithdrawn = false;
    BUFFER_INFO m_announced;
    std::unique_ptr<uint8_t[]> m_memory;
    /// In the memory, which is larger by what the alignment may cost.
    uint8_t* m_place = nullptr;
    size_t m_size = 0;
};

class CNativeChunkDataCompare {
public:
    using Chunks = std::vector<GenTL::S_SINGLE_CHUNK_DATA>;

    /// Whether both lists have the same chunks at the same places.
    static bool AreEqual(const Chunks& a, const Chunks& b);
};

}  // namespace OVTLClass
