#pragma once
/// How a producer reports that a call failed: an exception that carries the
/// GenTL code up to the exported function, and the record of the last failure
/// that each thread keeps for `GCGetLastError`.

#include <stdexcept>
#include <string>
#include <string_view>

#include "GenTL/GenTL.h"

namespace OvBase {
class CUserLog;
}

namespace OvProducer {

/// A call can't be served. The text is for people; `GCGetLastError` shows it.
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

/// The log that a user switches on, which goes when the producer is unloaded.
OvBase::CUserLog& ProducerLog();

/// The calling thread's last failure.
struct LastError {
    GenTL::GC_ERROR code;
    const char* text;
};

/// Stores a failure of the calling thread. Long texts are cut.
void StoreLastError(GenTL::GC_ERROR code, std::string_view text) noexcept;

/// Code 0 and "No Error" when the thread had no failure yet.
LastError ReadLastError() noexcept;

}  // namespace OvProducer
