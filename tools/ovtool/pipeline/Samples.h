#pragma once
/// A raw frame's samples before they become a picture.

#include <cstdint>
#include <vector>

#include "pipeline/Picture.h"
#include "pipeline/PipelinePlan.h"
#include "pipeline/PixelFormat.h"

/// Unpacks the frame, repairs defects if `repair`, and reduces samples to 8 bits unless the plan
/// keeps words. Returns bytes, or words with as many significant bits as the format has. Raises
/// for a frame that is too short, and for packed pairs of an odd number of samples.
std::vector<uint8_t> MakeSamples(const RawFrame& frame, const PixelFormat& format,
                                 const PipelinePlan& plan, bool repair);

/// Shifts each word left, so that its `bits` significant bits are the highest of the 16.
void StretchTo16Bits(std::vector<uint8_t>& words, int bits);
