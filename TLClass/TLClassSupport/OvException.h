#pragma once
/// The failures of the transport model.
///
/// One class per status of the flat interface: the class alone decides which
/// status an application sees. Throw them with OV_RAISE and OV_RAISE_STATUS,
/// which capture the place.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace OVTLClass {

/// Root of the family. Carries the message and the place that raised it.
class COvException : public std::runtime_error {
public:
    COvException(std::string description, const char* file, int line, const char* function);

    /// The text for the application, composed anew on each call by
    /// m_emLogInfoFormat: "{function:line[n]}{message}" for 2, "{message}" for every
    /// other value. The pointer stays valid until the next call.
    const char* what() const noexcept override;

    const std::string& GetDescription() const noexcept { return m_description; }
    const std::string& GetFile() const noexcept { return m_file; }
    const std::string& GetFunction() const noexcept { return m_function; }
    int GetLine() const noexcept { return m_line; }

    /// Form of what(), for the whole process. Nothing in the library writes it.
    static int32_t m_emLogInfoFormat;

private:
    std::string m_description;
    std::string m_file;
    int m_line;
    std::string m_function;
    mutable std::string m_text;
};

/// A failure with no class of its own. Carries the status that the application
/// gets: -1, or the code of the producer.
class CUnexpectedError : public COvException {
public:
    CUnexpectedError(std::string description, const char* file, int line, const char* function,
                     int32_t status = -1)
        : COvException(std::move(description), file, line, function), m_status(status) {}

    int32_t GetStatus() const noexcept { return m_status; }

private:
    int32_t m_status;
};

#define OV_EXCEPTION_CLASS(name)          \
    class name : public COvException {    \
    public:                               \
        using COvException::COvException; \
    }

OV_EXCEPTION_CLASS(CErrorTypeError);
OV_EXCEPTION_CLASS(CInvalidAccessError);
OV_EXCEPTION_CLASS(CInvalidCallError);
OV_EXCEPTION_CLASS(CInvalidHandleError);
OV_EXCEPTION_CLASS(CInvalidParameterError);
OV_EXCEPTION_CLASS(CNeedMoreBufferError);
OV_EXCEPTION_CLASS(CNotImplementedError);
OV_EXCEPTION_CLASS(CNotInitApiError);
OV_EXCEPTION_CLASS(CTimeoutError);
OV_EXCEPTION_CLASS(COutOfRangeError);
OV_EXCEPTION_CLASS(CDeviceOfflineError);
OV_EXCEPTION_CLASS(CNotFoundDeviceError);
OV_EXCEPTION_CLASS(CNotFoundTLError);

#undef OV_EXCEPTION_CLASS

}  // namespace OVTLClass

/// Throws the named class with the message and the place of this line.
#define OV_RAISE(type, message) throw ::OVTLClass::type((message), __FILE__, __LINE__, __func__)

/// Throws a CUnexpectedError that carries a status of its own.
#define OV_RAISE_STATUS(status, message) \
    throw ::OVTLClass::CUnexpectedError((message), __FILE__, __LINE__, __func__, (status))
