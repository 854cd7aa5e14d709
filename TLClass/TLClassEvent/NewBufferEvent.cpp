#include "TLClassEvent/NewBufferEvent.h"

#include "Base/EachFrame.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassEvent/EndWait.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

constexpr int kAcquisitionPriority = 99;
constexpr unsigned kFrameTimeout = 1000;

}  // namespace

void CNewBufferEvent::StartGetNewBuffer(void* streamHandle, const IBufferInitInfo& info,
                                        GenApi_3_0_ORVANE::CChunkAdapterGeneric* adapter) {
    if (m_started) {
        return;
    }
    m_native.RegisterNewBufferEvent(streamHandle, info, adapter);
    m_stopEvent.ResetEvent();
    // Without a callback the application pulls, and a thread would take its frames.
    if (m_hasCallback && !m_thread.Run(this, &__OnThreadGetImage, kAcquisitionPriority)) {
        m_native.UnregisterNewBufferEvent();
        OV_RAISE(CUnexpectedError, "Failed to start __OnThreadGetImage");
    }
    m_started = true;
}

void CNewBufferEvent::StopGetNewBuffer() {
    if (!m_started) {
        return;
    }
    OV_RUN_LOGGED([this] { m_stopEvent.SetEvent(); });
    // The thread may wait for up to a second. The kill ends that.
    EndWaitingThread(m_thread, [this] { return m_native.EventKill(); });
    OV_RUN_LOGGED([this] { m_native.UnregisterNewBufferEvent(); });
    m_started = false;
}

void CNewBufferEvent::RegisterCaptureCallback(const INewBufferCallback& callback) {
    __SetCallback(std::unique_ptr<INewBufferCallback>(callback.Clone()));
}

void CNewBufferEvent::UnregisterCaptureCallback() {
    __SetCallback(nullptr);
}

void CNewBufferEvent::__SetCallback(std::unique_ptr<INewBufferCallback> callback) {
    const CAutoLock lock(m_callbackLock);
    m_callback = std::move(callback);
    m_hasCallback = m_callback != nullptr;
}

OV_EACH_FRAME void* CNewBufferEvent::__OnThreadGetImage(void* self) {
    auto* const event = static_cast<CNewBufferEvent*>(self);
    // The stop is an event of its own, because a producer may forget a kill.
    // Between two frames the stop is only looked at; after a failure the look
    // takes a millisecond, so that a producer that fails at once can't spin.
    bool delivered = true;
    while (delivered ? !event->m_stopEvent.TryWait() : !event->m_stopEvent.Wait(0)) {
        delivered = event->__DeliverOneFrame();
    }
    return nullptr;
}

OV_EACH_FRAME bool CNewBufferEvent::__DeliverOneFrame() {
    BUFFER_INFO info;
    OV_RUN_LOGGED([&] {
        try {
            m_native.GetBuffer(info, kFrameTimeout);
        } catch (const CTimeoutError&) {
            // No frame within the time is the normal life of a triggered camera.
        } catch (const CUnexpectedError& error) {
            if (error.GetStatus() != GenTL::GC_ERR_ABORT) {
                throw;
            }
        }
    });
    // Set by a frame only.
    if (info.userPointer.value == nullptr) {
        return false;
    }
    __DoOnBufferCallback(info);
    OV_RUN_LOGGED([&info] { static_cast<CBuffer*>(info.userPointer.value)->QueueBuffer(); });
    return true;
}

OV_EACH_FRAME void CNewBufferEvent::__DoOnBufferCallback(const BUFFER_INFO& info) {
    const CAutoLock lock(m_callbackLock);
    if (m_callback) {
        OV_RUN_LOGGED([&] { (*m_callback)(info); });
    }
}

}  // namespace OVTLClass
