#include "TLClassMain/Buffer.h"

#include <new>

#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassLoadTL/OvException.h"

namespace OVTLClass {

void CBuffer::AllocateBuffer(size_t size) {
    if (size == 0) {
        OV_RAISE(CUnexpectedError, "Can not allocate zero bytes memory");
    }
    if (size == m_size) {
        return;
    }
    try {
        m_memory = std::make_unique<uint8_t[]>(size);
    } catch (const std::bad_alloc& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
    m_size = size;
}

void CBuffer::FreeBuffer() {
    m_memory.reset();
    m_size = 0;
}

void CBuffer::AnnounceBuffer() {
    if (m_handle != nullptr) {
        return;
    }
    if (m_size == 0) {
        OV_RAISE(CUnexpectedError, "Can not announce a buffer before allocating it");
    }
    void* handle = nullptr;
    OV_VERIFY(m_lib.DSAnnounceBuffer(m_stream, m_memory.get(), m_size, this, &handle), m_lib);
    m_handle = handle;
}

void CBuffer::QueueBuffer() {
    if (m_handle == nullptr) {
        OV_RAISE(CUnexpectedError, "Can not queue a buffer before announcing it");
    }
    OV_VERIFY(m_lib.DSQueueBuffer(m_stream, m_handle), m_lib);
}

void CBuffer::RevokeBuffer() {
    if (m_handle == nullptr) {
        return;
    }
    OV_LOG_IF_FAILED(m_lib.DSRevokeBuffer(m_stream, m_handle, nullptr, nullptr), m_lib);
    m_handle = nullptr;
}

BUFFER_INFO CBuffer::GetBufferInfo() const {
    return COvInformationAgency::GetBufferInformationFromHandle(m_lib, m_stream, m_handle);
}

}  // namespace OVTLClass
