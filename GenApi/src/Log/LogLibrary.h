#pragma once
/// The logging library of the system, if there is one, and its configuration.

#include "Base/GCString.h"
#include "Base/Log.h"

namespace GenICam_3_0_ORVANE {

/// Looks for the library, first in the folder of the running executable and then by the system's
/// loader. Returns null if there is none.
const CLogBackend* FindLogLibrary();

/// The log that `OV_LOG` switches on, in the place of a library; null when it is off.
const CLogBackend* FindUserLog();

/// Feeds the library the configuration that the user set, else the default
/// file, else nothing.
void ConfigureLogLibrary(const CLogBackend& backend);

/// Feeds a file line by line; false when it can't be opened.
bool ConfigureLogLibraryFromFile(const CLogBackend& backend, const gcstring& fileName);

}  // namespace GenICam_3_0_ORVANE
