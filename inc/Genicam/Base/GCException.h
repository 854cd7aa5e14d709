#pragma once
/// The exceptions of the node engine.
///
/// Code throws them with the macros at the end of this file, which add the place in the source;
/// code of a node uses those of core/NodeExceptions.h, which add the node and the call that led
/// to it.

#include <array>
#include <cstdarg>

#include "Base/Export.h"
#include "Base/GCString.h"

namespace GenICam_3_0_ORVANE {

/// Base of the family. It isn't derived from a standard exception.
class OV_ENGINE_API GenericException {
public:
    /// Makes an exception whose text has the cause and the place in the source.
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine);
    /// The same with the type of the exception, by its name.
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                     const char* exceptionType);
    /// The same with the node and the client's call that led to it. Empty texts are left out.
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                     const char* entryPoint, const char* nodeName, const char* exceptionType);

    /// Returns the cause alone. The texts live as long as the exception.
    virtual const char* GetDescription() const noexcept;
    /// Returns the source file, with its folders.
    virtual const char* GetSourceFileName() const noexcept;
    /// Returns the line in the source file.
    virtual unsigned GetSourceLine() const noexcept;
    /// Returns the cause with exception type, node, call and place in the source.
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

/// Throws BadAllocException with an empty description, or std::bad_alloc if there is no memory
/// even for that.
[[noreturn]] OV_ENGINE_API void ThrowBadAlloc(const char* file, unsigned line);

/// Room for a description. What doesn't fit is cut off.
using DescriptionBuffer = std::array<char, 256>;
/// Formats a description as printf does, with a decimal point in every locale.
OV_ENGINE_API void FormatDescription(DescriptionBuffer& buffer, const char* format,
                                     va_list arguments);

/// Makes an exception of type T with a formatted description and the place in the source.
template <class T>
class ExceptionReporter {
public:
    /// @param exceptionType  the name of T
    ExceptionReporter(const char* sourceFileName, unsigned sourceLine, const char* exceptionType)
        : m_SourceFileName(sourceFileName),
          m_SourceLine(sourceLine),
          m_ExceptionType(exceptionType) {}

    /// Returns the exception, for the caller to throw.
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
