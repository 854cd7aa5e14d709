#include <utility>

#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClassEvent/NewBufferEvent.h"
#include "TLClassEvent/RegisterEventAgency.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/Buffer.h"

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
    m_chunkAdapter = nullptr;
    OV_LOG_IF_FAILED(m_lib.GCUnregisterEvent(m_stream, GenTL::EVENT_NEW_BUFFER), m_lib);
    m_event = nullptr;
    m_stream = nullptr;
    m_registered = false;
    const CAutoLock lock(m_initInfoLock);
    m_initInfo = CBufferInitInfo();
}

void CNativeNewBufferEvent::EventKill() {
    OV_LOG_IF_FAILED(m_lib.EventKill(m_event), m_lib);
}

void CNativeNewBufferEvent::GetBuffer(BUFFER_INFO& info, unsigned timeout) {
    GenTL::EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof(data);
    OV_VERIFY(m_lib.EventGetData(m_event, &data, &size, timeout), m_lib);
    if (data.pUserPointer == nullptr) {
        OV_RAISE(CUnexpectedError, "pUserPointer should not be NULL");
    }
    info = static_cast<CBuffer*>(data.pUserPointer)->GetBufferInfo();
    info.userPointer = {data.pUserPointer, true};
    __TakeFromCamera(info);
}

void CNativeNewBufferEvent::__TakeFromCamera(BUFFER_INFO& info) {
    const CAutoLock lock(m_initInfoLock);
    info.expectedPayloadSize = {static_cast<uint64_t>(m_initInfo.GetPayloadSize()), true};
    const bool isChunk = info.tlType.value == "GEV" && m_initInfo.GetChunkMode();
    if (!isChunk && info.tlType.value != "Custom") {
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
