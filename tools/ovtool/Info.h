#pragma once
/// All that is known of a camera, its interface and its producer.

#include "Session.h"

void ShowInfo(const CameraChoice& choice, bool json);
