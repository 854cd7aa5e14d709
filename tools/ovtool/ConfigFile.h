#pragma once
/// All settings of a camera in a file.

#include <string>

#include "Session.h"

/// Replaces a file that is there.
void SaveSettings(const CameraChoice& choice, const std::string& file);

/// What the camera refuses is told at the end; the rest stays set.
/// @param verify  also compare what the camera made of each
void LoadSettings(const CameraChoice& choice, const std::string& file, bool verify);
