#pragma once
/// The last failure of a thread, and the one ladder from exception to status.

#include <string>
#include <string_view>

#include "OvIDef.h"

/// One per thread: built at the thread's first use, gone with it.
class COVIError {
public:
    COVIError() = default;
    virtual ~COVIError() = default;
    COVIError(const COVIError&) = delete;
    COVIError& operator=(const COVIError&) = delete;

    /// The record of the calling thread. Takes no memory: it is asked for where
    /// there is none.
    static COVIError& GetInstance() noexcept;

    /// Stores the status with the text "{status}text". Nothing for a null text.
    void Set(OV_STATUS status, const char* text);
    /// Back to "no error".
    void Reset() noexcept;

    /// Ends with a zero.
    std::string_view GetText() const noexcept;
    OV_STATUS GetStatus() const { return m_status; }

private:
    /// Empty for "no error".
    std::string m_text;
    OV_STATUS m_status = OV_STATUS_SUCCESS;
};

/// To be called in a catch (...) at the boundary: stores the exception that is
/// being handled in the thread's record and gives its status. Nothing leaves it.
OV_STATUS CaughtStatus() noexcept;
