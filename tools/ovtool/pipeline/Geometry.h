#pragma once
/// Pictures mirrored and turned.

#include "pipeline/Picture.h"
#include "pipeline/PipelineOptions.h"

/// The functions know planes of bytes: each byte of a pixel is one of its own.
Picture Mirror(const Picture& picture, QyImageMirrorMode mode);
Picture Rotate(const Picture& picture, Turn turn);

/// Each pixel `factor` times in both directions.
Picture Zoom(const Picture& picture, uint32_t factor);
