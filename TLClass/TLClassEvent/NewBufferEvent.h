#pragma once
/// From a filled buffer to the application: by thread and callback, or by pull.

#include <atomic>
#include <memory>
#include <vector>

#include "TLClassEvent/EventCallback.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassLoadTL/OvLock.h"
#include "TLClassLoadTL/VxEvent.h"
#include "TLClassLoadTL/VxThread.h"
#include "TLClassMain/Agency.h"
#include "TLClassMain/BufferInitInfo.h"

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
    /// Waits for a frame and tells all of it.
    /// @param timeout  in milliseconds; CTimeoutError when nothing came
    void GetBuffer(BUFFER_INFO& info, unsigned timeout);
    /// A frame that waits by now, without a look at it; null for none.
    CBuffer* TakeWaiting();

private:
    friend class ChunkStreamTest;

    int32_t __GetData(uint64_t timeout, CBuffer*& buffer);
    void __TakeFromCamera(BUFFER_INFO& info);
    /// Makes the chunk features read from this frame. No frame's way through
    /// here pays for it: it is for a caller that drives it, from one thread at a
    /// time and while the frame is held. CUnexpectedError when no event is
    /// registered and for chunks beyond the buffer; nothing changes then.
    void __UpdateChunkData(CBuffer& buffer);

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

/// Adds the thread that delivers to a capture callback. Without a callback no
/// thread runs, and the application pulls.
class CNewBufferEvent : public CUnCopyable {
public:
    explicit CNewBufferEvent(const CGenTLLib& lib) : m_native(lib) {}
    ~CNewBufferEvent() { StopGetNewBuffer(); }

    /// Starts the thread only when a callback is registered by now.
    void StartGetNewBuffer(void* streamHandle, const IBufferInitInfo& info,
                           GenApi_3_0_ORVANE::CChunkAdapterGeneric* adapter);
    /// Ends the thread and the event. What goes wrong is logged.
    void StopGetNewBuffer();
    void GetBuffer(BUFFER_INFO& info, unsigned timeout) { m_native.GetBuffer(info, timeout); }

    /// Keeps a clone in place of an earlier one.
    void RegisterCaptureCallback(const INewBufferCallback& callback);
    /// Waits for a running callback.
    void UnregisterCaptureCallback();
    bool DoIsRegisterCaptureCallback() const { return m_hasCallback; }

    CNativeNewBufferEvent& GetNativeNewBufferEvent() { return m_native; }
    /// 0 unless the thread runs: the system gives the identity of an ended
    /// thread to the next one, which may well be the application's.
    pthread_t GetAcquisitionThreadID() const {
        return m_thread.IsRunning() ? m_thread.GetCurrentObjThreadID() : 0;
    }

private:
    static void* __OnThreadGetImage(void* self);
    /// Whether a frame came.
    bool __DeliverOneFrame();
    void __DoOnBufferCallback(const BUFFER_INFO& info);
    void __SetCallback(std::unique_ptr<INewBufferCallback> callback);

    std::unique_ptr<INewBufferCallback> m_callback;
    std::atomic<bool> m_hasCallback{false};
    CLock m_callbackLock{LockRank::CaptureCallback};
    CVxEvent m_stopEvent;
    bool m_started = false;
    CNativeNewBufferEvent m_native;
    CVxThread m_thread;
};

}  // namespace OVTLClass
