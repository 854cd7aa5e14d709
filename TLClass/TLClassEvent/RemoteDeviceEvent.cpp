#include "TLClassEvent/RemoteDeviceEvent.h"

#include "TLClassEvent/EndWait.h"
#include "TLClassEvent/RegisterEventAgency.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int kEventPriority = 95;
constexpr uint64_t kEventTimeout = 1000;

/// Asks the producer for one number about an event.
template <class T>
T ReadEventNumber(const CGenTLLib& lib, void* event, GenTL::EVENT_INFO_CMD command,
                  GenTL::INFO_DATATYPE type) {
    T value = 0;
    size_t size = sizeof value;
    OV_VERIFY(lib.EventGetInfo(event, command, &type, &value, &size), lib);
    return value;
}

/// Whether what a producer says to have written can be true.
bool IsWithin(size_t size, size_t room) {
    if (size > room) {
        OV_LOG("The producer reports an event that is larger than its buffer");
    }
    return size <= room;
}

}  // namespace

/// Attaches the node map to the event adapter; detaches it again unless committed.
class CRemoteDeviceEvent::CAttachNodeMapAgency : public CAgency {
public:
    CAttachNodeMapAgency(GenApi_3_0_ORVANE::CEventAdapter& adapter,
                         GenApi_3_0_ORVANE::INodeMap* nodeMap) {
        Arm([&adapter] { adapter.DetachNodeMap(); });
        adapter.AttachNodeMap(nodeMap);
    }
};

void CRemoteDeviceEvent::StartGetRemoteDeviceEventThread(void* deviceHandle,
                                                         GenApi_3_0_ORVANE::CNodeMapRef& nodeMap) {
    if (m_event == nullptr) {
        __Start(deviceHandle, nodeMap);
    }
}

void CRemoteDeviceEvent::__Start(void* deviceHandle, GenApi_3_0_ORVANE::CNodeMapRef& nodeMap) {
    CAttachNodeMapAgency attached(m_adapter, nodeMap.GetMap());
    const auto registered =
        OV_REGISTER_OFFERED_EVENT(m_lib, deviceHandle, GenTL::EVENT_REMOTE_DEVICE);
    if (!registered) {
        return;
    }
    __MakeBuffers(registered->GetEventHandle());
    m_stopEvent.ResetEvent();
    // Set before the thread starts, since the thread and its callbacks use it.
    m_event = registered->GetEventHandle();
    if (!m_thread.Run(this, &__OnThreadGetRemoteDeviceEvent, kEventPriority)) {
        m_event = nullptr;
        OV_RAISE(CUnexpectedError, "Failed to start __OnThreadGetRemoteDeviceEvent");
    }
    m_device = deviceHandle;
    registered->Commit();
    attached.Commit();
}

void CRemoteDeviceEvent::__MakeBuffers(void* event) {
    const auto sizeOf = [&](GenTL::EVENT_INFO_CMD command) {
        return ReadEventNumber<size_t>(m_lib, event, command, GenTL::INFO_DATATYPE_SIZET);
    };
    const size_t rawSize = sizeOf(GenTL::EVENT_SIZE_MAX);
    const size_t valueSize = sizeOf(GenTL::EVENT_INFO_DATA_SIZE_MAX);
    // Made once: an event is delivered without memory being taken.
    m_rawEvent.resize(rawSize);
    m_value.resize(valueSize);
}

void CRemoteDeviceEvent::StopGetRemoteDeviceEventThread() {
    if (m_event == nullptr) {
        return;
    }
    OV_RUN_LOGGED([this] { m_stopEvent.SetEvent(); });
    EndWaitingThread(m_thread, [this] {
        const int32_t status = m_lib.EventKill(m_event);
        OV_LOG_IF_FAILED(status, m_lib);
        return status == 0;
    });
    m_event = nullptr;
    OV_LOG_IF_FAILED(m_lib.GCUnregisterEvent(m_device, GenTL::EVENT_REMOTE_DEVICE), m_lib);
    OV_RUN_LOGGED([this] { m_adapter.DetachNodeMap(); });
    m_rawEvent = {};
    m_value = {};
}

void* CRemoteDeviceEvent::__GetEventHandle() const {
    void* const event = m_event;
    if (event == nullptr) {
        OV_RAISE(CInvalidCallError, "The thread of the remote device's events is not started");
    }
    return event;
}

uint32_t CRemoteDeviceEvent::GetEventNumInQueue() const {
    return static_cast<uint32_t>(ReadEventNumber<uint64_t>(
        m_lib, __GetEventHandle(), GenTL::EVENT_NUM_IN_QUEUE, GenTL::INFO_DATATYPE_UINT32));
}

void CRemoteDeviceEvent::FlushRemoteDeviceEvent() const {
    OV_VERIFY(m_lib.EventFlush(__GetEventHandle()), m_lib);
}

void* CRemoteDeviceEvent::__OnThreadGetRemoteDeviceEvent(void* self) {
    static_cast<CRemoteDeviceEvent*>(self)->__RunThread();
    return nullptr;
}

void CRemoteDeviceEvent::__RunThread() {
    // After an event, the stop is tested without waiting. After a time-out or a failure the
    // test takes about a millisecond (`Wait(0)`), so that a producer that fails at once doesn't
    // make this loop spin.
    bool came = true;
    while (came ? !m_stopEvent.TryWait() : !m_stopEvent.Wait(0)) {
        Event event;
        came = __GetEvent(event);
        if (!came) {
            continue;
        }
        // Events that came while the stop was asked for find a map that is about to be detached.
        if (m_stopEvent.TryWait()) {
            return;
        }
        OV_RUN_LOGGED([&] {
            m_adapter.DeliverMessage(m_value.data(), static_cast<int64_t>(event.length), event.id);
        });
    }
}

bool CRemoteDeviceEvent::__GetEvent(Event& event) {
    size_t size = 0;
    if (!__GetRawEvent(size)) {
        return false;
    }
    // The event is a record of the transport, which only its producer can read.
    size_t idSize = sizeof event.id;
    event.length = m_value.size();
    return __GetPart(size, GenTL::EVENT_DATA_NUMID, GenTL::INFO_DATATYPE_UINT64, &event.id,
                     idSize) &&
           __GetPart(size, GenTL::EVENT_DATA_VALUE, GenTL::INFO_DATATYPE_BUFFER, m_value.data(),
                     event.length);
}

bool CRemoteDeviceEvent::__GetRawEvent(size_t& size) {
    size = m_rawEvent.size();
    const int32_t status = m_lib.EventGetData(m_event, m_rawEvent.data(), &size, kEventTimeout);
    if (status != GenTL::GC_ERR_TIMEOUT && status != GenTL::GC_ERR_ABORT) {
        OV_LOG_IF_FAILED(status, m_lib);
    }
    return status == 0 && IsWithin(size, m_rawEvent.size());
}

bool CRemoteDeviceEvent::__GetPart(size_t eventSize, GenTL::EVENT_DATA_INFO_CMD command,
                                   GenTL::INFO_DATATYPE type, void* part, size_t& size) const {
    const size_t room = size;
    const int32_t status =
        m_lib.EventGetDataInfo(m_event, m_rawEvent.data(), eventSize, command, &type, part, &size);
    OV_LOG_IF_FAILED(status, m_lib);
    return status == 0 && IsWithin(size, room);
}

}  // namespace OVTLClass
