#pragma once
/// The last failure of each thread, and the one place that turns an exception into a
/// status.

#include <string>
#include <string_view>

#include "OvIDef.h"

/// Each thread has its own. It is constructed at the thread's first call and destroyed
/// when the thread ends.
class COVIError {
public:
    COVIError() = default;
    virtual ~COVIError() = default;
    COVIError(const COVIError&) = delete;
    COVIError& operator=(const COVIError&) = delete;

    /// The record of the calling thread. Allocates nothing: it is needed when there is no
    /// memory.
    static COVIError& GetInstance() noexcept;

    /// Stores the status with the text "{status}text". Does nothing for a null text.
    void Set(OV_STATUS status, const char* text);
    /// Back to "no error".
    void Reset() noexcept;

    /// Zero-terminated.
    std::string_view GetText() const noexcept;
    OV_STATUS GetStatus() const { return m_status; }

private:
    /// Empty for "no error".
    std::string m_text;
    OV_STATUS m_status = OV_STATUS_SUCCESS;
};

/// To be called in a catch (...) of an exported function: stores the exception that is
/// being handled in the thread's record and returns its status. Never throws.
OV_STATUS CaughtStatus() noexcept;
