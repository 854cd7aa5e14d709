// The barrier: no exception leaves the library. What it was becomes a status and the text
// of the thread's last failure.

#include "errors/OVIError.h"

#include <new>

#include "TLClassSupport/OvException.h"

COVIError& COVIError::GetInstance() noexcept {
    static thread_local COVIError error;
    return error;
}

void COVIError::Set(OV_STATUS status, const char* text) {
    // The last failure stays.
    if (text == nullptr) {
        return;
    }
    m_text = "{" + std::to_string(status) + "}" + text;
    m_status = status;
}

void COVIError::Reset() noexcept {
    m_text.clear();
    m_status = OV_STATUS_SUCCESS;
}

std::string_view COVIError::GetText() const noexcept {
    return m_text.empty() ? "{0}{No error occurred}" : std::string_view(m_text);
}

namespace {

// Without memory for the text, the status alone reports the failure.
OV_STATUS Store(OV_STATUS status, const char* text) {
    try {
        COVIError::GetInstance().Set(status, text);
    } catch (const std::bad_alloc&) {
        return status;
    }
    return status;
}

}  // namespace

#define OV_CATCH(type, status)                \
    catch (const OVTLClass::type& error) {    \
        return Store((status), error.what()); \
    }

OV_STATUS CaughtStatus() noexcept {
    try {
        throw;
    }
    // The only class with a status of its own: a producer's code passes through it.
    OV_CATCH(CUnexpectedError, error.GetStatus())
    OV_CATCH(CNotFoundTLError, OV_STATUS_NOT_FOUND_TL)
    OV_CATCH(CNotFoundDeviceError, OV_STATUS_NOT_FOUND_DEVICE)
    OV_CATCH(CDeviceOfflineError, OV_STATUS_OFFLINE)
    OV_CATCH(CInvalidParameterError, OV_STATUS_INVALID_PARAMETER)
    OV_CATCH(CNeedMoreBufferError, OV_STATUS_NEED_MORE_BUFFER)
    OV_CATCH(CInvalidHandleError, OV_STATUS_INVALID_HANDLE)
    OV_CATCH(CErrorTypeError, OV_STATUS_ERROR_TYPE)
    OV_CATCH(COutOfRangeError, OV_STATUS_OUT_OF_RANGE)
    OV_CATCH(CInvalidAccessError, OV_STATUS_INVALID_ACCESS)
    OV_CATCH(CNotImplementedError, OV_STATUS_NOT_IMPLEMENTED)
    OV_CATCH(CInvalidCallError, OV_STATUS_INVALID_CALL)
    OV_CATCH(CNotInitApiError, OV_STATUS_NOT_INIT_API)
    OV_CATCH(CTimeoutError, OV_STATUS_TIMEOUT)
    catch (const std::exception& error) {
        return Store(OV_STATUS_ERROR, error.what());
    }
    // The engine's exceptions aren't standard ones. One that nothing has translated ends
    // here.
    catch (...) {
        return Store(OV_STATUS_ERROR, "{UnKnown Exception}");
    }
}
