#pragma once
/// From a filled buffer to the application: by thread and callback, or by pull.

#include <atomic>
#include <memory>

#include "TLClassEvent/NativeNewBufferEvent.h"
#include "TLClassSupport/EventCallback.h"
#include "TLClassSupport/VxEvent.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {

/// Adds the thread that delivers to a capture callback. Without a callback no
/// thread runs, and the application pulls.
class CNewBufferEvent : public CUnCopyable {
public:
    explicit CNewBufferEvent(const CGenTLLib& lib) : m_native(lib) {}
    ~CNewBufferEvent() { StopGetNewBuffer(); }

    /// Starts the thread only when a callback is registered already.
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
