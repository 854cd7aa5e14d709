#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"

#include <vector>

#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int32_t kEntryPointMissing = -1;
constexpr const char* kLibraryIncomplete = "The TL library is not complete";
constexpr const char* kNoDescription = "Failed to get last error description";

}  // namespace

std::string CGenTLError::GetLastErrorDescription(const CGenTLLib& lib) {
    GenTL::GC_ERROR code = 0;
    size_t size = 0;
    if (lib.GCGetLastError(&code, nullptr, &size) != 0) {
        return kNoDescription;
    }
    // One byte more than the producer asked for, so that a text without an end
    // still has one.
    std::vector<char> text(size + 1, '\0');
    if (lib.GCGetLastError(&code, text.data(), &size) != 0) {
        return kNoDescription;
    }
    return text.data();
}

void ThrowExceptionIfFailed(int32_t status, const CGenTLLib& lib, const char* file, int line,
                            const char* function) {
    switch (status) {
        case 0:
            return;
        case kEntryPointMissing:
            throw CUnexpectedError(kLibraryIncomplete, file, line, function, status);
        case GenTL::GC_ERR_ACCESS_DENIED:
            OV_RAISE(CInvalidAccessError,
                     "Access denied:" + CGenTLError::GetLastErrorDescription(lib));
        case GenTL::GC_ERR_CUSTOM_ID:
            OV_RAISE(CDeviceOfflineError, CGenTLError::GetLastErrorDescription(lib));
        case GenTL::GC_ERR_TIMEOUT:
            throw CTimeoutError(CGenTLError::GetLastErrorDescription(lib), file, line, function);
        case GenTL::GC_ERR_INVALID_PARAMETER:
            OV_RAISE(CInvalidParameterError, CGenTLError::GetLastErrorDescription(lib));
        case GenTL::GC_ERR_NOT_IMPLEMENTED:
            OV_RAISE(CNotImplementedError, CGenTLError::GetLastErrorDescription(lib));
        default:
            throw CUnexpectedError(CGenTLError::GetLastErrorDescription(lib), file, line, function,
                                   status);
    }
}

void LogIfFailed(int32_t status, const CGenTLLib& lib, const char* file, int line,
                 const char* function) {
    if (status == 0) {
        return;
    }
    LogAt(file, line, function,
          status == kEntryPointMissing ? kLibraryIncomplete
                                       : CGenTLError::GetLastErrorDescription(lib));
}

}  // namespace OVTLClass
