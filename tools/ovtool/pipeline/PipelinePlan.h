#pragma once
/// Which way through the image functions frames of a format take.

#include "pipeline/PipelineOptions.h"
#include "pipeline/PixelFormat.h"

/// How frames of a format go through the pipeline.
struct PipelinePlan {
    /// The layout, the format's own or the one asked for.
    QyColorFilter filter = QY_FILTER_NONE;
    /// Whether samples become colours: of a mosaic, or of equal grey channels.
    bool interpolates = false;
    /// Bits that are kept of a sample: eight, or all.
    bool keepsWords = false;
    QyValidBit validBit = QY_BIT_0_7;
};

/// Raises for what can't be done to such frames.
PipelinePlan PlanPipeline(const PipelineOptions& options, const PixelFormat& format);
