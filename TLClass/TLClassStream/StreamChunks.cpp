#include "TLClassStream/StreamChunks.h"

#include <algorithm>

#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/ChunkAdapterU3V.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassEvent/NativeNewBufferEvent.h"
#include "TLClassSupport/OvException.h"

using namespace GenApi_3_0_ORVANE;

namespace OVTLClass {

namespace {

/// Null for a transport whose layout of chunks the library doesn't know.
std::unique_ptr<CChunkAdapter> MakeAdapterFor(const std::string& transport) {
    if (transport == GenTL::TLTYPE_GEV) {
        return std::make_unique<CChunkAdapterGEV>();
    }
    if (transport == GenTL::TLTYPE_U3V) {
        return std::make_unique<CChunkAdapterU3V>();
    }
    return nullptr;
}

}  // namespace

CStreamChunks::CStreamChunks() : m_byList(std::make_unique<CChunkAdapterGeneric>()) {}

CStreamChunks::~CStreamChunks() = default;

CChunkAdapter& CStreamChunks::__GetCurrent() const {
    return m_byLayout != nullptr ? *m_byLayout : *m_byList;
}

void CStreamChunks::AttachNodeMap(INodeMap* map) {
    m_byList->AttachNodeMap(map);
    m_map = map;
}

void CStreamChunks::DetachNodeMap() {
    m_map = nullptr;
    const std::unique_ptr<CChunkAdapter> byLayout = std::move(m_byLayout);
    if (byLayout != nullptr) {
        byLayout->DetachNodeMap();
    }
    m_byList->DetachNodeMap();
}

void CStreamChunks::AttachFrame(CNativeNewBufferEvent& event, CBuffer& buffer) {
    if (m_byLayout != nullptr || !__AttachByList(event, buffer)) {
        __AttachByLayout(buffer);
    }
}

/// Returns false if the producer doesn't list chunks at all.
bool CStreamChunks::__AttachByList(CNativeNewBufferEvent& event, CBuffer& buffer) const {
    try {
        event.__UpdateChunkData(buffer);
        return true;
    } catch (const CNotImplementedError&) {
        return false;
    }
}

void CStreamChunks::__AttachByLayout(CBuffer& buffer) {
    BUFFER_INFO info;
    buffer.GetAnnouncedInfo(info);
    buffer.CompleteFrameInfo(info);
    if (!info.sizeFilled.valid || !info.incomplete.valid || info.incomplete.value) {
        // A trailer where something is missing may be that of an earlier frame.
        OV_RAISE(CUnexpectedError, "The chunks of an incomplete frame can't be found");
    }
    if (m_byLayout == nullptr) {
        __UseLayoutOf(info.tlType.value);
    }
    const size_t size = std::min<size_t>(info.sizeFilled.value, buffer.GetSize());
    m_byLayout->AttachBuffer(buffer.GetMemory(), static_cast<int64_t>(size));
}

void CStreamChunks::__UseLayoutOf(const std::string& transport) {
    auto byLayout = MakeAdapterFor(transport);
    if (byLayout == nullptr) {
        OV_RAISE(CNotImplementedError, "The producer doesn't list the chunks of its frames");
    }
    // Each port has one adapter.
    m_byList->DetachNodeMap();
    try {
        byLayout->AttachNodeMap(m_map);
    } catch (...) {
        byLayout.reset();
        m_byList->AttachNodeMap(m_map);
        throw;
    }
    m_byLayout = std::move(byLayout);
}

void CStreamChunks::DetachFrame(CNativeNewBufferEvent& event) {
    event.__ForgetChunks();
    // Their copies first: a feature with one would stay readable.
    __GetCurrent().ClearCaches();
    __GetCurrent().DetachBuffer();
}

void CStreamChunks::DetachBuffer() {
    __GetCurrent().DetachBuffer();
}

}  // namespace OVTLClass
