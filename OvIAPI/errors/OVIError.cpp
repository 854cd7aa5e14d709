// The barrier: no exception leaves the library. What it was becomes a status and the text
// of the thread's last failure.

#include "errors/OVIError.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <typeinfo>

#include "TLClassSupport/OvException.h"

using namespace OVTLClass;

COVIError& COVIError::GetInstance() noexcept {
    static thread_local COVIError error;
    return error;
}

void COVIError::Set(OV_STATUS status, const char* text) {
    // The last failure stays.
    if (text == nullptr) {
        return;
    }
    const std::string number = std::to_string(status);
    const std::string_view rest(text);
    // Nothing below takes memory, so that a failure to get it leaves the last failure.
    m_text.reserve(number.size() + 2 + rest.size());
    m_text.assign("{").append(number).append("}").append(rest);
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

struct StatusOfClass {
    const std::type_info* type;
    OV_STATUS status;
};

const StatusOfClass kStatuses[] = {
    {&typeid(CNotFoundTLError), OV_STATUS_NOT_FOUND_TL},
    {&typeid(CNotFoundDeviceError), OV_STATUS_NOT_FOUND_DEVICE},
    {&typeid(CDeviceOfflineError), OV_STATUS_OFFLINE},
    {&typeid(CInvalidParameterError), OV_STATUS_INVALID_PARAMETER},
    {&typeid(CNeedMoreBufferError), OV_STATUS_NEED_MORE_BUFFER},
    {&typeid(CInvalidHandleError), OV_STATUS_INVALID_HANDLE},
    {&typeid(CErrorTypeError), OV_STATUS_ERROR_TYPE},
    {&typeid(COutOfRangeError), OV_STATUS_OUT_OF_RANGE},
    {&typeid(CInvalidAccessError), OV_STATUS_INVALID_ACCESS},
    {&typeid(CNotImplementedError), OV_STATUS_NOT_IMPLEMENTED},
    {&typeid(CInvalidCallError), OV_STATUS_INVALID_CALL},
    {&typeid(CNotInitApiError), OV_STATUS_NOT_INIT_API},
    {&typeid(CTimeoutError), OV_STATUS_TIMEOUT},
};

/// Null for another class.
const StatusOfClass* FindStatus(const std::type_info& type) {
    const auto* const found =
        std::find_if(std::begin(kStatuses), std::end(kStatuses),
                     [&type](const StatusOfClass& row) { return row.type == &type; });
    return found == std::end(kStatuses) ? nullptr : found;
}

/// The exception of the library's own that is handled at present; null for any other. Its class is
/// looked up: to throw it again, and to compare it with a clause for each class, would take
/// longer than the rest of the failure.
const COvException* OwnOf(const std::exception_ptr& handled) {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    if (type == nullptr || (*type != typeid(CUnexpectedError) && FindStatus(*type) == nullptr)) {
        return nullptr;
    }
    // The compiler's interface has the address of the exception here, and nothing else; a class
    // of this family begins with its base.
    // NOLINTBEGIN(bugprone-sizeof-expression,bugprone-undefined-memory-manipulation): only looked
    // at
    static_assert(sizeof handled == sizeof(const COvException*));
    const COvException* own = nullptr;
    std::memcpy(&own, &handled, sizeof own);
    // NOLINTEND(bugprone-sizeof-expression,bugprone-undefined-memory-manipulation)
    return own;
}

OV_STATUS StatusOf(const COvException& error) {
    const StatusOfClass* const row = FindStatus(typeid(error));
    // The only class with a status of its own: a producer's code passes through it.
    return row != nullptr ? row->status : static_cast<const CUnexpectedError&>(error).GetStatus();
}

}  // namespace

OV_STATUS CaughtStatus() noexcept {
    const std::exception_ptr handled = std::current_exception();
    if (const COvException* const own = OwnOf(handled)) {
        return Store(StatusOf(*own), own->what());
    }
    try {
        throw;
    } catch (const std::exception& error) {
        return Store(OV_STATUS_ERROR, error.what());
    }
    // The engine's exceptions aren't standard ones. One that nothing has translated ends
    // here.
    catch (...) {
        return Store(OV_STATUS_ERROR, "{UnKnown Exception}");
    }
}

OV_STATUS StatusOfRefusal(const CRefusal& refusal) noexcept {
    return Store(StatusOf(refusal.Get()), refusal.Get().what());
}
