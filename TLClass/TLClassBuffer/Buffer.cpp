#include "TLClassBuffer/Buffer.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "Base/EachFrame.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClassInfo/BufferRows.h"
#include "TLClassInfo/FrameFacts.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

/// Bytes from an address to the next multiple of the alignment.
size_t PaddingAt(const uint8_t* address, size_t alignment) {
    const size_t excess = reinterpret_cast<uintptr_t>(address) % alignment;
    return excess == 0 ? 0 : alignment - excess;
}

std::unique_ptr<uint8_t[]> MakeMemory(size_t size, size_t more) {
    if (more > SIZE_MAX - size) {
        throw std::bad_alloc();
    }
    return std::make_unique<uint8_t[]>(size + more);
}

constexpr bool IsOfAnnouncement(const InfoRow<BUFFER_INFO>& row) {
    return row.use == InfoUse::Announcement;
}
static_assert(std::count_if(std::begin(kBufferRows), std::end(kBufferRows), IsOfAnnouncement) == 3,
              "CopyAnnouncement copies each of them");

/// Copies what can't change while a buffer is announced, and leaves the rest.
void CopyAnnouncement(const BUFFER_INFO& from, BUFFER_INFO& to) {
    to.size = from.size;
    to.base = from.base;
    to.userPointer = from.userPointer;
    to.tlType = from.tlType;
}

}  // namespace

void CBuffer::AllocateBuffer(size_t size, size_t alignment) {
    if (size == 0) {
        OV_RAISE(CUnexpectedError, "Can not allocate zero bytes memory");
    }
    // A stream that starts again with the same frames keeps its memory, unless the producer
    // wants another alignment than before.
    if (size == m_size && PaddingAt(m_place, alignment) == 0) {
        return;
    }
    try {
        m_memory = MakeMemory(size, alignment - 1);
    } catch (const std::bad_alloc& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
    m_place = m_memory.get() + PaddingAt(m_memory.get(), alignment);
    m_size = size;
}

void CBuffer::FreeBuffer() {
    m_memory.reset();
    m_place = nullptr;
    m_size = 0;
}

void CBuffer::AnnounceBuffer() {
    if (m_handle == nullptr) {
        if (m_size == 0) {
            OV_RAISE(CUnexpectedError, "Can not announce a buffer before allocating it");
        }
        void* handle = nullptr;
        OV_VERIFY(m_lib.DSAnnounceBuffer(m_stream, m_place, m_size, this, &handle), m_lib);
        // Stored after the success: a refused buffer isn't announced.
        m_handle = handle;
    }
    const std::scoped_lock lock(m_queueMutex);
    m_isWithdrawn = false;
    m_announced = {};
}

OV_EACH_FRAME void CBuffer::QueueBuffer() {
    const std::scoped_lock lock(m_queueMutex);
    // Held over the call, so that a stop can't flush between the look and the queueing.
    void* const handle = m_handle;
    if (handle == nullptr || m_isWithdrawn) {
        OV_RAISE(CUnexpectedError, "Can not queue a buffer before announcing it");
    }
    OV_VERIFY(m_lib.DSQueueBuffer(m_stream, handle), m_lib);
}

void CBuffer::Withdraw() {
    const std::scoped_lock lock(m_queueMutex);
    m_isWithdrawn = true;
}

void CBuffer::RevokeBuffer() {
    if (m_handle == nullptr) {
        return;
    }
    const int32_t status = m_lib.DSRevokeBuffer(m_stream, m_handle, nullptr, nullptr);
    OV_LOG_IF_FAILED(status, m_lib);
    // The producer may have worked before it failed; it doesn't know the buffer then.
    if (status == 0 || status == GenTL::GC_ERR_INVALID_HANDLE ||
        status == GenTL::GC_ERR_INVALID_BUFFER) {
        m_handle = nullptr;
    }
}

BUFFER_INFO CBuffer::GetBufferInfo() const {
    return COvInformationAgency::GetBufferInformationFromHandle(m_lib, m_stream, m_handle);
}

OV_EACH_FRAME void CBuffer::GetAnnouncedInfo(BUFFER_INFO& info) {
    {
        const std::scoped_lock lock(m_queueMutex);
        CopyAnnouncement(m_announced, info);
    }
    if (!info.base.valid || !info.size.valid || !info.tlType.valid) {
        // Without the lock: a stop takes it, and a producer may take its time.
        COvInformationAgency::CompleteBufferInformation(m_lib, m_stream, m_handle,
                                                        InfoUse::Announcement, info);
        info.userPointer = {this, true};
        const std::scoped_lock lock(m_queueMutex);
        CopyAnnouncement(info, m_announced);
    }
}

OV_EACH_FRAME void CBuffer::CompleteFrameInfo(BUFFER_INFO& info) const {
    CompleteFrameFacts(m_lib, m_stream, m_handle, info);
}

std::vector<GenTL::S_SINGLE_CHUNK_DATA> CBuffer::GetChunkData() const {
    void* const handle = m_handle;
    size_t count = 0;
    if (m_lib.DSGetBufferChunkData.GetAddress() == nullptr) {
        OV_RAISE(CNotImplementedError, "The producer doesn't list chunks");
    }
    OV_VERIFY(m_lib.DSGetBufferChunkData(m_stream, handle, nullptr, &count), m_lib);
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks(count);
    if (count != 0) {
        OV_VERIFY(m_lib.DSGetBufferChunkData(m_stream, handle, chunks.data(), &count), m_lib);
        // The list may have become shorter between the two calls.
        chunks.resize(std::min(count, chunks.size()));
    }
    return chunks;
}

bool CBuffer::IsMemoryOverFlow(const std::vector<GenTL::S_SINGLE_CHUNK_DATA>& chunks) const {
    return std::any_of(chunks.begin(), chunks.end(), [this](const auto& chunk) {
        const auto offset = static_cast<size_t>(chunk.ChunkOffset);
        // A sum of both could overflow.
        return offset > m_size || chunk.ChunkLength > m_size - offset;
    });
}

void CBuffer::AttachBuffer(GenApi_3_0_ORVANE::CChunkAdapterGeneric& adapter,
                           const std::vector<GenTL::S_SINGLE_CHUNK_DATA>& chunks) {
    std::vector<GenApi_3_0_ORVANE::SingleChunkData_t> places;
    // One entry at least: the adapter asks for a list, even for one of none.
    places.reserve(chunks.size() + 1);
    for (const GenTL::S_SINGLE_CHUNK_DATA& chunk : chunks) {
        places.push_back(
            {chunk.ChunkID, chunk.ChunkOffset, static_cast<int64_t>(chunk.ChunkLength)});
    }
    adapter.AttachBuffer(m_place, places.data(), static_cast<int64_t>(places.size()));
}

void CBuffer::UpdateBuffer(GenApi_3_0_ORVANE::CChunkAdapter& adapter) {
    adapter.UpdateBuffer(m_place);
}

bool CNativeChunkDataCompare::AreEqual(const Chunks& a, const Chunks& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

}  // namespace OVTLClass
