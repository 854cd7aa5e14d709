#pragma once
/// One GenTL event of a new buffer, turned into one record of its frame.

#include <atomic>
#include <vector>

#include "TLClassBuffer/BufferInitInfo.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/UnCopyable.h"

namespace GenApi_3_0_ORVANE {
class CChunkAdapterGeneric;
}

namespace OVTLClass {

class CBuffer;

/// The GenTL event of a stream's new buffers.
class CNativeNewBufferEvent : public CUnCopyable {
public:
    explicit CNativeNewBufferEvent(const CGenTLLib& lib) : m_lib(lib) {}

    /// @param adapter  of the stream's chunks; it must outlive the registration
    void RegisterNewBufferEvent(void* streamHandle, const IBufferInitInfo& info,
                                GenApi_3_0_ORVANE::CChunkAdapterGeneric* adapter);
    void UnregisterNewBufferEvent();
    /// Wakes a thread that waits in GetBuffer. False, and a line in the log, when the
    /// producer refuses.
    bool EventKill();
    /// Wakes a thread that waits in GetBuffer, whatever the producer says to a kill:
    /// one that refuses has its event taken away, which ends all waits.
    void AbortWait();
    /// Waits for a frame and reads what the records of an application have of it. Who
    /// needs more asks the buffer, which is the user pointer.
    /// @param info     a fresh record: what it has already isn't asked for
    /// @param timeout  in milliseconds; CTimeoutError when nothing came
    void GetBuffer(BUFFER_INFO& info, unsigned timeout);
    /// A frame that waits already, without its facts; null for none.
    CBuffer* TakeWaiting();

private:
    friend class ChunkStreamTest;
    friend class CStreamChunks;

    int32_t __GetData(uint64_t timeout, CBuffer*& buffer);
    void __TakeFromCamera(BUFFER_INFO& info);
    /// Makes the chunk features read from this frame. No frame's way through
    /// here pays for it: it is for a caller that drives it, from one thread at a
    /// time and while the frame is held. CUnexpectedError when no event is
    /// registered and for chunks beyond the buffer; nothing changes then.
    void __UpdateChunkData(CBuffer& buffer);
    /// After the features were detached: a list that is as before is bound anew.
    void __ForgetChunks() { m_chunks.clear(); }

    const CGenTLLib& m_lib;
    std::atomic<void*> m_stream{nullptr};
    std::atomic<void*> m_event{nullptr};
    std::atomic<bool> m_registered{false};
    CLock m_initInfoLock{LockRank::Information};
    CBufferInitInfo m_initInfo;
    std::atomic<GenApi_3_0_ORVANE::CChunkAdapterGeneric*> m_chunkAdapter{nullptr};
    /// Where the attached chunks lie.
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> m_chunks;
};

}  // namespace OVTLClass
