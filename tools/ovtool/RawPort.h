#pragma once
/// Registers of a camera, past its features.

#include <cstdint>
#include <string>

#include "Session.h"

/// As many bytes as the camera gives, 16 a line with the address before them.
void ReadRegisters(const CameraChoice& choice, uint64_t address, size_t size, bool json);

/// ToolError when the camera takes fewer bytes.
/// @param bytes  in hexadecimal
void WriteRegisters(const CameraChoice& choice, uint64_t address, const std::string& bytes);
