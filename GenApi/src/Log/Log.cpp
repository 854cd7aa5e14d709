// The engine's way to a logging library. The library is looked for once, at the first question;
// without one all loggers are null, and a line costs a test for that.

#include "Base/Log.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "Base/PlainLocale.h"
#include "LogLibrary.h"

namespace GenICam_3_0_ORVANE {

namespace {

constexpr const char* kIndent = "  ";

/// Set by tests and programs at any time, hence atomic.
std::atomic<const CLogBackend*> s_Backend{nullptr};
std::once_flag s_Searched;

/// The backend in use. The first call looks for the system's library, then for a log that
/// the user has switched on. A backend that was set before takes the place of both.
const CLogBackend* Backend() {
    std::call_once(s_Searched, [] {
        if (s_Backend.load() == nullptr) {
            s_Backend = FindLogLibrary();
        }
        if (const CLogBackend* const backend = s_Backend.load()) {
            ConfigureLogLibrary(*backend);
        } else {
            s_Backend = FindUserLog();
        }
    });
    return s_Backend.load();
}

}  // namespace

/// A library that is set before the first question is configured like one that was found.
void CLog::SetBackend(const CLogBackend* backend) {
    s_Backend = backend;
}

bool CLog::Exist(const char* name) {
    const CLogBackend* const backend = Backend();
    return backend != nullptr && backend->Exist(name);
}

void* CLog::GetLogger(const char* name) {
    const CLogBackend* const backend = Backend();
    return backend == nullptr ? nullptr : backend->GetLogger(name);
}

bool CLog::ConfigureFromFile(const char* fileName) {
    const CLogBackend* const backend = Backend();
    return backend != nullptr && ConfigureLogLibraryFromFile(*backend, fileName);
}

void CLog::ConfigureFromString(const char* text) {
    if (const CLogBackend* const backend = Backend()) {
        backend->Configure(text);
    }
}

/// Without the search: whoever has a logger has been through it.
bool CLog::IsEnabledInBackend(void* logger, int level) {
    const CLogBackend* const backend = s_Backend.load();
    return backend != nullptr && backend->IsEnabled(logger, level);
}

/// Measured first, then formatted: values of registers may make a line of any length.
void CLog::WriteFormatted(void* logger, int level, const char* format, va_list arguments) {
    const CLogBackend* const backend = s_Backend.load();
    if (backend == nullptr || !IsEnabled(logger, level)) {
        return;
    }
    // Numbers have a point in a log, whatever locale the application has.
    const CPlainLocale plain;
    va_list again;
    // The first pass measures and uses up the list; the second writes.
    va_copy(again, arguments);
    // The analyzer doesn't see that the callers' va_start sets the list.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::vector<char> line(static_cast<size_t>(length < 0 ? 0 : length) + 1, '\0');
    std::vsnprintf(line.data(), line.size(), format, again);
    va_end(again);
    backend->Write(logger, level, line.data());
}

void CLog::Log(void* logger, int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(logger, level, format, arguments);
    va_end(arguments);
}

/// The line itself isn't indented.
void CLog::LogPush(void* logger, int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(logger, level, format, arguments);
    va_end(arguments);
    if (const CLogBackend* const backend = s_Backend.load()) {
        backend->PushContext(kIndent);
    }
}

void CLog::LogPop(void* logger, int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(logger, level, format, arguments);
    va_end(arguments);
    PopIndent();
}

void CLog::PopIndent() {
    if (const CLogBackend* const backend = s_Backend.load()) {
        backend->PopContext();
    }
}

}  // namespace GenICam_3_0_ORVANE
