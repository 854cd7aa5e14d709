#pragma once
/// How an image function's failure ends a command.

#include <string>

#include "QyImageProc.h"

/// Raises for a status that isn't QY_OK.
/// @param what  what was tried, as in "sharpen"
void CheckImage(QY_STATUS status, const std::string& what);
