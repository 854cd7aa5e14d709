#include "UpdateSteps.h"

Steps InterfaceListSteps(bool isGev) {
    const char* const untold = "the interface is left out until the producer tells a change";
    const auto lost = Fate::SwallowedListUntold;
    const auto later = Fate::SwallowedListLater;
    Steps steps{
        {"TLUpdateInterfaceList", 1, Fate::SwallowedListLater, "an update may fail"},
        {"TLGetNumInterfaces", 1, later, "an update may fail"},
        {"TLGetInterfaceID", 2, lost, "nothing opens by a blank ID"},
        {"TLGetInterfaceInfo", 6, Fate::Swallowed, "a fact may be missing"},
    };
    if (isGev) {
        steps = steps + Steps{
                            {"GCReadPort", 1, later, "the records don't match"},
                            {"GCWritePort", 1, later, "the records don't match"},
                            {"GCReadPort", 13, Fate::Swallowed, "an address may be missing"},
                        };
    }
    steps = steps + Steps{{"TLOpenInterface", 1, lost, untold}} + DescriptionSteps(lost, untold) +
            Steps{{"GCReadPort", 1, Fate::Swallowed, "the description may be missing"}};
    if (isGev) {
        steps.push_back({"GCReadPort", 5, Fate::Swallowed, "an address may be missing"});
    }
    return steps;
}

Steps SearchModeSteps(bool isGev) {
    return isGev ? Steps{{"GCWritePort", 1, Fate::Swallowed, "the mode is a wish"}} : Steps{};
}

namespace {

/// @param isStale  the module's own type is read anew with the first address
Steps DeviceRecordSteps(bool isGev, unsigned count, bool isStale) {
    const auto later = Fate::SwallowedListLater;
    const char* const mismatch = "the records don't match";
    Steps steps{{"IFUpdateDeviceList", 1, Fate::SwallowedListLater, "an update may fail"},
                {"IFGetNumDevices", 1, later, "an update may fail"}};
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"IFGetDeviceID", 2, Fate::Swallowed, "the camera's ID may be blank"},
                              {"IFGetDeviceInfo", 11, Fate::Swallowed, "a fact may be missing"}};
    }
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"GCReadPort", 1, later, mismatch},
                              {"GCWritePort", 1, later, mismatch},
                              {"GCReadPort", 9, Fate::Swallowed, "a text may be missing"}};
    }
    if (!isGev) {
        return steps;
    }
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"GCReadPort", 1, later, mismatch},
                              {"GCWritePort", 1, later, mismatch},
                              {"GCReadPort", isStale && i == 0 ? 13U : 12U, Fate::Swallowed,
                               "an address may be missing"}};
    }
    return steps;
}

Steps Swallowed(Steps steps) {
    for (Step& step : steps) {
        step.fate = Fate::Swallowed;
        step.why = "what is known stays";
    }
    return steps;
}

}  // namespace

Steps DeviceListSteps(bool isGev, unsigned count) {
    return DeviceRecordSteps(isGev, count, true);
}

Steps QuietInterfaceListSteps(bool isGev) {
    Steps steps{{"TLUpdateInterfaceList", 1, {}, {}}};
    if (isGev) {
        steps = steps + Steps{{"TLGetNumInterfaces", 1, {}, {}}, {"TLGetInterfaceID", 2, {}, {}},
                              {"TLGetInterfaceInfo", 6, {}, {}}, {"GCReadPort", 1, {}, {}},
                              {"GCWritePort", 1, {}, {}},        {"GCReadPort", 12, {}, {}}};
    }
    return Swallowed(steps);
}

Steps QuietUpdateSteps(bool isGev, unsigned count) {
    return QuietInterfaceListSteps(isGev) + SearchModeSteps(isGev) +
           Swallowed(DeviceRecordSteps(isGev, count, false));
}
