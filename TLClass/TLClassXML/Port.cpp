#include "TLClassXML/Port.h"

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"

namespace OVTLClass {

GenApi_3_0_ORVANE::EAccessMode CPort::GetAccessMode() {
    return GenApi_3_0_ORVANE::RW;
}

void CPort::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    OV_VERIFY(m_lib.GCReadPort(m_handle, static_cast<uint64_t>(address), buffer, &size), m_lib);
}

void CPort::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    OV_VERIFY(m_lib.GCWritePort(m_handle, static_cast<uint64_t>(address), buffer, &size), m_lib);
}

}  // namespace OVTLClass
