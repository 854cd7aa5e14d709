#pragma once
/// From a raw frame to a picture, by the image functions.

#include "pipeline/Picture.h"
#include "pipeline/PipelineOptions.h"
#include "pipeline/PixelFormat.h"

/// Works on a frame in this order: unpacking, defects, eight bits; interpolation
/// and noise; balance, matrix and 12-bit tables; brightness, contrast, saturation;
/// sharpening; mirror, turn, zoom. Samples of more than 8 bits are kept as long as
/// nothing is asked for that works on bytes. Raises for what can't be done.
Picture ProcessFrame(const RawFrame& frame, const PixelFormat& format,
                     const PipelineOptions& options);
