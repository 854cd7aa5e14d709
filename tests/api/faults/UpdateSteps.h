#pragma once
/// The steps of an update, which never fails: each failure in it leaves out what
/// it was about.

#include "Steps.h"

/// The system module's part, with the opening of a new interface.
Steps InterfaceListSteps(bool isGev);

/// How wide GigE Vision interfaces shall search.
Steps SearchModeSteps(bool isGev);

/// The interface's part, when its list changed to `count` cameras.
Steps DeviceListSteps(bool isGev, unsigned count);

/// The system module's part when its list stays.
Steps QuietInterfaceListSteps(bool isGev);

/// A whole update of lists that stay, with one interface and `count` cameras.
Steps QuietUpdateSteps(bool isGev, unsigned count);
