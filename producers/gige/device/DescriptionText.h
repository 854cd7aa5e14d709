#pragma once
/// A camera's description as a text.

#include <string>

#include "framework/Port.h"

namespace OvGige {

/// Reads the file of the port's first URL, and unpacks it if it is a zip archive.
/// @throws OvProducer::Failure GC_ERR_NOT_AVAILABLE if there is no such file
std::string ReadDescription(const OvProducer::Port& port);

}  // namespace OvGige
