#pragma once
/// Which of the two places that a camera names for its description is served.

#include <string>
#include <vector>

#include "framework/Port.h"
#include "gige/control/CameraMemory.h"

namespace OvGige {

/// Where the files of this machine are served that a camera's URL names: beyond the camera's
/// own addresses, which have 32 bits.
constexpr uint64_t kHostFileAddress = uint64_t{1} << 32;

/// Puts into the port the URL of the first description that can be had: of the camera's first
/// place if it can be read, otherwise of its second. A file in the camera's memory keeps its
/// address; a file of this machine is served from addresses of the port's own, so that whoever
/// reads the port needs no file of this machine.
///
/// Only the beginning of a description is read: whether all of it is there is seen when it is
/// read.
/// @throws OvProducer::Failure GC_ERR_NOT_AVAILABLE if neither can be had; the text says why
void AddCameraDescription(CameraMemory& camera, OvProducer::Port& port);

}  // namespace OvGige
