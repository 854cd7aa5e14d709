#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"

#include "Base/EachFrame.h"
#include "Base/GCException.h"
#include "TLClassLoadTL/GenTLText.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int32_t kEntryPointMissing = -1;
constexpr const char* kLibraryIncomplete = "The TL library is not complete";
constexpr const char* kNoDescription = "Failed to get last error description";

}  // namespace

std::string CGenTLError::GetLastErrorDescription(const CGenTLLib& lib) {
    // A producer keeps the text for each thread, until the thread's next failure.
    const auto lastError = [&lib](char* text, size_t* size) {
        GenTL::GC_ERROR code = 0;
        return lib.GCGetLastError(&code, text, size);
    };
    // A failure on the way to a text must not take the place of the failure
    // that the text is for.
    try {
        std::string description;
        return ReadGenTLText(lastError, description) == 0 ? description : kNoDescription;
    } catch (const std::exception&) {
        return kNoDescription;
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        return kNoDescription;
    }
}

OV_EACH_FRAME void ThrowExceptionIfFailed(int32_t status, const CGenTLLib& lib, const char* file,
                                          int line, const char* function) {
    switch (status) {
        case 0:
            return;
        case kEntryPointMissing:
            throw CUnexpectedError(kLibraryIncomplete, file, line, function, status);
        case GenTL::GC_ERR_ACCESS_DENIED:
            OV_RAISE(CInvalidAccessError,
                     "Access denied:" + CGenTLError::GetLastErrorDescription(lib));
        // Producers of this system report a lost camera by their first private code.
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
                 const char* function) noexcept {
    if (status == 0) {
        return;
    }
    if (status == kEntryPointMissing) {
        LogAt(file, line, function, kLibraryIncomplete);
        return;
    }
    try {
        LogAt(file, line, function, CGenTLError::GetLastErrorDescription(lib));
    } catch (const std::exception&) {
        LogAt(file, line, function, kNoDescription);
    }
}

}  // namespace OVTLClass
