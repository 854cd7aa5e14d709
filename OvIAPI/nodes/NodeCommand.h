#pragma once
/// Commands, some of which are more than a write to the camera.

#include "camera/CameraNodes.h"
#include "errors/Place.h"

/// Executes a command. The camera's start and stop of the acquisition include the host's side.
void ExecuteCommand(const CNodeRecord& record, const OvPlace& place);
