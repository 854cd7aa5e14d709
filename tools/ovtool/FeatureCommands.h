#pragma once
/// Features of a camera, read and written by name.

#include <string>
#include <vector>

#include "Session.h"

/// All that the camera has, with type, value and range.
void ListFeatures(const CameraChoice& choice, bool json);
/// Values, one a line.
void Get(const CameraChoice& choice, const std::vector<std::string>& names, bool json);
/// Sets a value, or runs a command.
void Set(const CameraChoice& choice, const std::string& name, const std::string& value);
