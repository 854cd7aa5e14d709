#pragma once
/// How the tool fails: with the library's own text and a word on what to try.

#include <stdexcept>
#include <string>

#include "OvIAPI.h"
#include "QyImageProc.h"

/// Ends a command; main prints it and exits with 1.
class ToolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Raises the library's last error for a status that isn't success.
/// @param what  what was tried, as in "open the camera"
void Check(OV_STATUS status, const std::string& what);

/// The same for a status of an image function that isn't QY_OK.
/// @param what  as in "sharpen"
void CheckImage(QY_STATUS status, const std::string& what);
