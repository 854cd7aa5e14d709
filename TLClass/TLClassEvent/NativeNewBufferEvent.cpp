#include "TLClassEvent/NativeNewBufferEvent.h"

#include <utility>

#include "Base/EachFrame.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassEvent/RegisterEventAgency.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

void CNativeNewBufferEvent::RegisterNewBufferEvent(
    void* streamHandle, const IBufferInitInfo& info,
    GenApi_3_0_ORVANE::CChunkAdapterGeneric* adapter) {
    if (m_registered) {
        return;
    }
    m_stream = streamHandle;
    {
        const CAutoLock lock(m_initInfoLock);
        m_initInfo = CBufferInitInfo(info);
    }
    // The values are stored first: a frame may come as soon as the event is registered.
    CGCRegisterEventAgency registered(m_lib, streamHandle, GenTL::EVENT_NEW_BUFFER);
    m_event = registered.GetEventHandle();
    registered.Commit();
    m_chunkAdapter = adapter;
    m_chunks.clear();
    m_registered = true;
}

void CNativeNewBufferEvent::UnregisterNewBufferEvent() {
    if (!m_registered) {
        return;
    }
    // Taken away first: no frame may attach chunks of memory that is about to go.
    m_chunkAdapter = nullptr;
    OV_LOG_IF_FAILED(m_lib.GCUnregisterEvent(m_stream, GenTL::EVENT_NEW_BUFFER), m_lib);
    m_event = nullptr;
    m_stream = nullptr;
    m_registered = false;
    const CAutoLock lock(m_initInfoLock);
    m_initInfo = CBufferInitInfo();
}

bool CNativeNewBufferEvent::EventKill() {
    const int32_t status = m_lib.EventKill(m_event);
    OV_LOG_IF_FAILED(status, m_lib);
    return status == 0;
}

void CNativeNewBufferEvent::AbortWait() {
    if (m_registered && !EventKill()) {
        UnregisterNewBufferEvent();
    }
}

OV_EACH_FRAME int32_t CNativeNewBufferEvent::__GetData(uint64_t timeout, CBuffer*& buffer) {
    GenTL::EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof(data);
    const int32_t status = m_lib.EventGetData(m_event, &data, &size, timeout);
    buffer = static_cast<CBuffer*>(data.pUserPointer);
    return status;
}

OV_EACH_FRAME void CNativeNewBufferEvent::GetBuffer(BUFFER_INFO& info, unsigned timeout) {
    CBuffer* buffer = nullptr;
    OV_VERIFY(__GetData(timeout, buffer), m_lib);
    if (buffer == nullptr) {
        OV_RAISE(CUnexpectedError, "pUserPointer should not be NULL");
    }
    buffer->GetAnnouncedInfo(info);
    // First: the producer isn't asked for what the camera's word overrules.
    __TakeFromCamera(info);
    buffer->CompleteFrameInfo(info);
}

CBuffer* CNativeNewBufferEvent::TakeWaiting() {
    CBuffer* buffer = nullptr;
    const int32_t status = __GetData(0, buffer);
    // A stop that ends the wait takes the frames, too.
    if (status == GenTL::GC_ERR_TIMEOUT || status == GenTL::GC_ERR_ABORT) {
        return nullptr;
    }
    OV_VERIFY(status, m_lib);
    return buffer;
}

OV_EACH_FRAME void CNativeNewBufferEvent::__TakeFromCamera(BUFFER_INFO& info) {
    const CAutoLock lock(m_initInfoLock);
    info.expectedPayloadSize = {static_cast<uint64_t>(m_initInfo.GetPayloadSize()), true};
    const bool isChunk = info.tlType.value == GenTL::TLTYPE_GEV && m_initInfo.GetChunkMode();
    if (!isChunk && info.tlType.value != GenTL::TLTYPE_CUSTOM) {
        return;
    }
    // A chunk payload has no image leader that the producer could report.
    info.width = {static_cast<uint64_t>(m_initInfo.GetWidth()), true};
    info.height = {static_cast<uint64_t>(m_initInfo.GetHeight()), true};
    info.xOffset = {static_cast<uint64_t>(m_initInfo.GetOffsetX()), true};
    info.yOffset = {static_cast<uint64_t>(m_initInfo.GetOffsetY()), true};
    info.pixelFormat = {static_cast<uint64_t>(m_initInfo.GetPixelFormat()), true};
}

void CNativeNewBufferEvent::__UpdateChunkData(CBuffer& buffer) {
    GenApi_3_0_ORVANE::CChunkAdapterGeneric* const adapter = m_chunkAdapter;
    if (adapter == nullptr) {
        OV_RAISE(CUnexpectedError, "Invalid Chunk Adapter");
    }
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks = buffer.GetChunkData();
    // Cameras send the same layout frame after frame; then only the base address changes.
    if (CNativeChunkDataCompare::AreEqual(chunks, m_chunks)) {
        buffer.UpdateBuffer(*adapter);
        return;
    }
    if (buffer.IsMemoryOverFlow(chunks)) {
        OV_RAISE(CUnexpectedError, "Invalid chunk data information");
    }
    buffer.AttachBuffer(*adapter, chunks);
    m_chunks = std::move(chunks);
}

}  // namespace OVTLClass
