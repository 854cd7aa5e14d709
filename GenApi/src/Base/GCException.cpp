// The exceptions of the engine and their texts. A text is put together when the exception is
// made: later the node that it names may be gone.

#include "Base/GCException.h"

#include <cstdio>
#include <new>
#include <string>
#include <string_view>

#include "Base/PlainLocale.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// The folders of a build machine mean nothing to a user.
std::string_view FileNameOf(std::string_view path) {
    const size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

/// Longer than all words of a message together.
constexpr size_t kWords = 128;

}  // namespace

GenericException::GenericException(const char* description, const char* sourceFileName,
                                   unsigned sourceLine)
    : GenericException(description, sourceFileName, sourceLine, "", "", "") {}

GenericException::GenericException(const char* description, const char* sourceFileName,
                                   unsigned sourceLine, const char* exceptionType)
    : GenericException(description, sourceFileName, sourceLine, "", "", exceptionType) {}

GenericException::GenericException(const char* description, const char* sourceFileName,
                                   unsigned sourceLine, const char* entryPoint,
                                   const char* nodeName, const char* exceptionType)
    : m_ExceptionType(exceptionType),
      m_SourceLine(sourceLine),
      m_SourceFileName(sourceFileName),
      m_Description(description),
      m_EntryPoint(entryPoint),
      m_NodeName(nodeName) {
    AssembleMessage();
}

GenericException::~GenericException() = default;

const char* GenericException::GetDescription() const noexcept {
    return m_Description.c_str();
}

const char* GenericException::GetSourceFileName() const noexcept {
    return m_SourceFileName.c_str();
}

unsigned GenericException::GetSourceLine() const noexcept {
    return m_SourceLine;
}

const char* GenericException::what() const noexcept {
    return m_What.c_str();
}

/// Parts that are empty leave out their words, too.
void GenericException::AssembleMessage() {
    std::string message;
    message.reserve(kWords + m_Description.size() + m_NodeName.size() + m_EntryPoint.size() +
                    m_ExceptionType.size() + m_SourceFileName.size());
    message.append(m_Description.c_str());
    if (!m_ExceptionType.empty()) {
        message.append(" : ").append(m_ExceptionType.c_str()).append(" thrown");
    }
    if (!m_NodeName.empty()) {
        message.append(" in node '").append(m_NodeName.c_str()).append("'");
    }
    if (!m_EntryPoint.empty()) {
        message.append(" while calling '").append(m_EntryPoint.c_str()).append("'");
    }
    message.append(" (file '").append(FileNameOf(m_SourceFileName.c_str())).append("', line ");
    message.append(std::to_string(m_SourceLine)).append(")");
    m_What.assign(message.c_str(), message.size());
}

/// An exception takes memory itself. Without memory, making its texts would call this function
/// again, without end; the mark of the thread turns that into a plain std::bad_alloc.
void ThrowBadAlloc(const char* file, unsigned line) {
    static thread_local bool isThrowing = false;
    if (isThrowing) {
        throw std::bad_alloc();
    }
    isThrowing = true;
    try {
        throw BadAllocException("", file, line, "BadAllocException");
    } catch (...) {
        isThrowing = false;
        throw;
    }
}

/// Numbers in descriptions of failures are the same for every user, whatever the locale.
void FormatDescription(DescriptionBuffer& buffer, const char* format, va_list arguments) {
    buffer.front() = '\0';
    const CPlainLocale plain;
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
}

}  // namespace GenICam_3_0_ORVANE
