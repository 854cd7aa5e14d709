#pragma once
/// Failures of calls: an exception with the GenTL code, which the exported function
/// returns, and the last failure of each thread, for `GCGetLastError`.

#include <stdexcept>
#include <string>
#include <string_view>

#include "GenTL/GenTL.h"

namespace OvBase {
class CUserLog;
}

namespace OvProducer {

/// The failure of a call. `GCGetLastError` returns the text.
class Failure : public std::runtime_error {
public:
    Failure(GenTL::GC_ERROR code, const std::string& text)
        : std::runtime_error(text), m_code(code) {}

    GenTL::GC_ERROR Code() const noexcept { return m_code; }

private:
    GenTL::GC_ERROR m_code;
};

/// Throws -1009 with "`what` must not be null" for a null pointer.
void RequirePointer(const void* pointer, std::string_view what);

/// The log that a user can switch on. It ends when the producer is unloaded.
OvBase::CUserLog& ProducerLog();
/// Writes a line there of what no call returns.
void LogWarning(std::string_view line);

/// The calling thread's last failure.
struct LastError {
    GenTL::GC_ERROR code;
    const char* text;
};

/// Stores the calling thread's last failure. Long texts are cut.
void StoreLastError(GenTL::GC_ERROR code, std::string_view text) noexcept;

/// Returns code 0 and "No Error" if the thread has had no failure.
LastError ReadLastError() noexcept;

}  // namespace OvProducer
