#include "TLClassXML/Port.h"

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {

/// A value of which bytes are missing is no value, though the producer calls it
/// a success.
void CheckMoved(size_t moved, int64_t length) {
    if (moved < static_cast<size_t>(length)) {
        OV_RAISE(CUnexpectedError,
                 COvString::MsgComposer("Port returned %d of %d bytes", static_cast<int>(moved),
                                        static_cast<int>(length)));
    }
}

}  // namespace

GenApi_3_0_ORVANE::EAccessMode CPort::GetAccessMode() {
    // The mode may change with the state of the device, and the engine would keep it.
    return GenApi_3_0_ORVANE::RW;
}

void CPort::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    OV_VERIFY(m_lib.GCReadPort(m_handle, static_cast<uint64_t>(address), buffer, &size), m_lib);
    CheckMoved(size, length);
}

void CPort::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    OV_VERIFY(m_lib.GCWritePort(m_handle, static_cast<uint64_t>(address), buffer, &size), m_lib);
    CheckMoved(size, length);
}

}  // namespace OVTLClass
