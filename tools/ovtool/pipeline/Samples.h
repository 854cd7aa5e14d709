#pragma once
/// A raw frame's samples before they become a picture.

#include <cstdint>
#include <vector>

#include "pipeline/Picture.h"
#include "pipeline/PipelinePlan.h"
#include "pipeline/PixelFormat.h"

/// Unpacks, repairs defects if it is asked for, and keeps eight bits where the
/// plan says so: bytes, or words of the format's bits. Raises for a frame that is
/// too short.
std::vector<uint8_t> MakeSamples(const RawFrame& frame, const PixelFormat& format,
                                 const PipelinePlan& plan, bool repair);

/// Spreads the significant bits of each word over all 16.
void StretchTo16Bits(std::vector<uint8_t>& words, int bits);
