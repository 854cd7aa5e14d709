#pragma once
/// How well frames come.

#include "Session.h"

/// Takes frames for some seconds and tells how many came a second, and how many
/// were lost or incomplete, as the stream itself counts them.
void MeasureStream(const CameraChoice& choice, double seconds, bool json);
