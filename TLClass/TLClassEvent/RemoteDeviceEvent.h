#pragma once
/// The way of a camera's own messages into its features.

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/NodeMapRef.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/UnCopyable.h"
#include "TLClassSupport/VxEvent.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {

/// Waits for messages on a thread of its own and hands each to the features that
/// declare it; their callbacks run on that thread, inside the engine's lock.
class CRemoteDeviceEvent : public CUnCopyable {
public:
    explicit CRemoteDeviceEvent(const CGenTLLib& lib) : m_lib(lib) {}
    ~CRemoteDeviceEvent() { StopGetRemoteDeviceEventThread(); }

    /// No effect while it is started. A producer without that event is no failure:
    /// it is logged, and the channel stays stopped.
    /// @param nodeMap  must exist until StopGetRemoteDeviceEventThread() returns
    void StartGetRemoteDeviceEventThread(void* deviceHandle,
                                         GenApi_3_0_ORVANE::CNodeMapRef& nodeMap);
    /// Ends the thread and the event. What goes wrong is logged.
    void StopGetRemoteDeviceEventThread();

    // Both throw CInvalidCallError while the channel is stopped.
    uint32_t GetEventNumInQueue() const;
    void FlushRemoteDeviceEvent() const;

    /// 0 unless the thread runs: the system may reuse the identity of an ended thread.
    pthread_t GetEventThreadID() const {
        return m_thread.IsRunning() ? m_thread.GetCurrentObjThreadID() : 0;
    }

private:
    class CAttachNodeMapAgency;
    /// The identifier of an event, and the bytes of its value.
    struct Event {
        uint64_t id = 0;
        size_t length = 0;
    };

    static void* __OnThreadGetRemoteDeviceEvent(void* self);
    void __Start(void* deviceHandle, GenApi_3_0_ORVANE::CNodeMapRef& nodeMap);
    void __MakeBuffers(void* event);
    void* __GetEventHandle() const;
    void __RunThread();
    // These return whether it came; a failure is logged.
    bool __GetEvent(Event& event);
    bool __GetRawEvent(size_t& size);
    bool __GetPart(size_t eventSize, GenTL::EVENT_DATA_INFO_CMD command, GenTL::INFO_DATATYPE type,
                   void* part, size_t& size) const;

    const CGenTLLib& m_lib;
    void* m_device = nullptr;
    GenApi_3_0_ORVANE::CEventAdapterGeneric m_adapter;
    CVxEvent m_stopEvent;
    /// Null while the channel is stopped. Callbacks on the thread may ask for the
    /// queue while it is being stopped, so no lock guards it.
    std::atomic<void*> m_event{nullptr};
    /// As it came from the producer, and what a feature sees of it.
    std::vector<uint8_t> m_rawEvent;
    std::vector<uint8_t> m_value;
    CVxThread m_thread;
};

}  // namespace OVTLClass
