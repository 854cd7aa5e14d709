#pragma once
/// From a producer's status to an exception, or on shutdown paths to a log line.

#include <cstdint>
#include <string>

#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class CGenTLError {
public:
    /// The producer's text of the calling thread's last failure, or "Failed to
    /// get last error description".
    static std::string GetLastErrorDescription(const CGenTLLib& lib);
};

/// Returns for 0. Otherwise throws the exception that belongs to the status,
/// with the producer's text.
void ThrowExceptionIfFailed(int32_t status, const CGenTLLib& lib, const char* file, int line,
                            const char* function);

/// Returns for 0. Otherwise logs the producer's text with the place: shutdown
/// goes on, whatever fails.
void LogIfFailed(int32_t status, const CGenTLLib& lib, const char* file, int line,
                 const char* function) noexcept;

}  // namespace OVTLClass

#define OV_VERIFY(status, lib) \
    ::OVTLClass::ThrowExceptionIfFailed((status), (lib), __FILE__, __LINE__, __func__)

#define OV_LOG_IF_FAILED(status, lib) \
    ::OVTLClass::LogIfFailed((status), (lib), __FILE__, __LINE__, __func__)

/// For the undo of a guard class, which logs as that class's destructor.
#define OV_LOG_UNDO_IF_FAILED(guard, status, lib) \
    ::OVTLClass::LogIfFailed((status), (lib), __FILE__, __LINE__, "~" #guard)
