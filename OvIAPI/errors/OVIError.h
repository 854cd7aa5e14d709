#pragma once
/// The last failure of each thread, and the one place that turns an exception into a
/// status.

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "OvIDef.h"
#include "TLClassFeature/Reading.h"

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

/// The same for a failure that nobody has thrown.
OV_STATUS StatusOfRefusal(const OVTLClass::CRefusal& refusal) noexcept;

/// The same after a read that may have been refused.
inline OV_STATUS StatusOfRead(const std::optional<OVTLClass::CRefusal>& refusal) noexcept {
    return refusal ? StatusOfRefusal(*refusal) : OV_STATUS_SUCCESS;
}

/// Hands over what was read, or stores why it can't be.
template <class T>
OV_STATUS TakeReading(OVTLClass::CReading<T>&& reading, T* pValue) {
    if (const OVTLClass::CRefusal* const refusal = reading.GetRefusal()) {
        return StatusOfRefusal(*refusal);
    }
    *pValue = std::move(reading.Value());
    return OV_STATUS_SUCCESS;
}
