#pragma once
/// Changes descriptions by a style sheet, with the command-line tool for that.

#include <string>

#include "Base/GCString.h"

namespace GenApi_3_0_ORVANE {

/// LogicalErrorException unless the style sheet can be read.
void CheckStyleSheet(const GenICam_3_0_ORVANE::gcstring& fileName);
/// What the style sheet makes of an XML text. RuntimeException when the tool is
/// missing or fails.
std::string Transform(const std::string& description, const std::string& styleSheet);

/// The whole of a file. RuntimeException when it cannot be read.
std::string ReadTextFile(const std::string& fileName);

}  // namespace GenApi_3_0_ORVANE
