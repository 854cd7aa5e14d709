#pragma once
/// How the tool fails: with a text for people, a word on what to try, and an exit code that
/// scripts can tell apart.

#include <optional>
#include <stdexcept>
#include <string>

#include "OvIAPI.h"
#include "QyImageProc.h"

/// What the tool exits with.
enum class ExitCode {
    Done = 0,
    Failed = 1,
    Usage = 2,
    NoCamera = 3,
    AccessDenied = 4,
    TimedOut = 5,
    Incomplete = 6,
    Lost = 7,
    Interrupted = 130
};

/// The codes with their meanings, for the help.
const char* ExitCodesText();

/// Ends a command; main prints it and exits with its code.
class ToolError : public std::runtime_error {
public:
    explicit ToolError(const std::string& text, ExitCode code = ExitCode::Failed,
                       std::string detail = "")
        : std::runtime_error(text), m_code(code), m_detail(std::move(detail)) {}

    ExitCode Code() const { return m_code; }
    /// The library's own text, with its places; empty when it isn't the library's failure.
    const std::string& Detail() const { return m_detail; }

private:
    ExitCode m_code;
    std::string m_detail;
};

/// What ended `run`, for a command that has something to do before it fails.
template <class Do>
std::optional<ToolError> FailureOf(const Do& run) {
    try {
        run();
    } catch (const ToolError& error) {
        return error;
    }
    return std::nullopt;
}

/// What a user said wrongly, found before anything was done.
ToolError UsageError(const std::string& text);
/// The end of what can be done with a camera.
ToolError LossOfCamera();
/// The end of a command that a signal cut short.
ToolError Interruption();

/// The exit code of a status that isn't success.
ExitCode CodeOf(OV_STATUS status);

/// Raises the library's last error for a status that isn't success.
/// @param what  what was tried, as in "open the camera"
void Check(OV_STATUS status, const std::string& what);

/// As above; the hint takes the place of the general one.
void Check(OV_STATUS status, const std::string& what, const std::string& hint);

/// The same for a status of an image function that isn't QY_OK.
/// @param what  as in "sharpen"
void CheckImage(QY_STATUS status, const std::string& what);
