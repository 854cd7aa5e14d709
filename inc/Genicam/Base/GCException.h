#pragma once
/// The failures of the node engine.
///
/// Code raises them with the macros at the end of this file, which capture the
/// place; code of a node uses those of the node layer, which add the node and
/// the call that led to it.

#include <array>
#include <cstdarg>

#include "Base/Export.h"
#include "Base/GCString.h"

namespace GenICam_3_0_ORVANE {

/// Root of the family. Not derived from any standard exception.
class OV_ENGINE_API GenericException {
public:
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine);
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                     const char* exceptionType);
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                     const char* entryPoint, const char* nodeName, const char* exceptionType);

    /// The cause alone.
    virtual const char* GetDescription() const noexcept;
    virtual const char* GetSourceFileName() const noexcept;
    virtual unsigned GetSourceLine() const noexcept;
    /// The cause with exception type, node, call and place.
    virtual const char* what() const noexcept;
    virtual ~GenericException();

    GenericException(const GenericException&) = default;
    GenericException& operator=(const GenericException&) = default;

private:
    void AssembleMessage();

    gcstring m_What;
    gcstring m_ExceptionType;
    unsigned m_SourceLine;
    gcstring m_SourceFileName;
    gcstring m_Description;
    gcstring m_EntryPoint;
    gcstring m_NodeName;
};

#define OV_ENGINE_EXCEPTION_CLASS(name)                  \
    class OV_ENGINE_API name : public GenericException { \
    public:                                              \
        using GenericException::GenericException;        \
    }

OV_ENGINE_EXCEPTION_CLASS(BadAllocException);
OV_ENGINE_EXCEPTION_CLASS(InvalidArgumentException);
OV_ENGINE_EXCEPTION_CLASS(OutOfRangeException);
OV_ENGINE_EXCEPTION_CLASS(PropertyException);
OV_ENGINE_EXCEPTION_CLASS(RuntimeException);
OV_ENGINE_EXCEPTION_CLASS(LogicalErrorException);
OV_ENGINE_EXCEPTION_CLASS(AccessException);
OV_ENGINE_EXCEPTION_CLASS(TimeoutException);
OV_ENGINE_EXCEPTION_CLASS(DynamicCastException);

#undef OV_ENGINE_EXCEPTION_CLASS

/// Raises BadAllocException with an empty description.
[[noreturn]] OV_ENGINE_API void ThrowBadAlloc(const char* file, unsigned line);

/// The buffer in which descriptions are formatted; what doesn't fit is cut.
using DescriptionBuffer = std::array<char, 256>;
OV_ENGINE_API void FormatDescription(DescriptionBuffer& buffer, const char* format,
                                     va_list arguments);

/// Makes an exception of type T from a format, with the place of the failure.
template <class T>
class ExceptionReporter {
public:
    ExceptionReporter(const char* sourceFileName, unsigned sourceLine, const char* exceptionType)
        : m_SourceFileName(sourceFileName),
          m_SourceLine(sourceLine),
          m_ExceptionType(exceptionType) {}

    [[gnu::format(printf, 2, 3)]] T Report(const char* format, ...) const {
        DescriptionBuffer description;
        va_list arguments;
        va_start(arguments, format);
        FormatDescription(description, format, arguments);
        va_end(arguments);
        return T(description.data(), m_SourceFileName, m_SourceLine, m_ExceptionType);
    }

private:
    const char* m_SourceFileName;
    unsigned m_SourceLine;
    const char* m_ExceptionType;
};

}  // namespace GenICam_3_0_ORVANE

// Used like a function: RUNTIME_EXCEPTION("Found a duplicate node'%s'.", name);
#define OV_THROW_ENGINE(type)                                                                     \
    throw ::GenICam_3_0_ORVANE::ExceptionReporter<::GenICam_3_0_ORVANE::type>(__FILE__, __LINE__, \
                                                                              #type)              \
        .Report
#define INVALID_ARGUMENT_EXCEPTION OV_THROW_ENGINE(InvalidArgumentException)
#define OUT_OF_RANGE_EXCEPTION OV_THROW_ENGINE(OutOfRangeException)
#define PROPERTY_EXCEPTION OV_THROW_ENGINE(PropertyException)
#define RUNTIME_EXCEPTION OV_THROW_ENGINE(RuntimeException)
#define LOGICAL_ERROR_EXCEPTION OV_THROW_ENGINE(LogicalErrorException)
#define ACCESS_EXCEPTION OV_THROW_ENGINE(AccessException)
#define TIMEOUT_EXCEPTION OV_THROW_ENGINE(TimeoutException)
#define DYNAMICCAST_EXCEPTION OV_THROW_ENGINE(DynamicCastException)
