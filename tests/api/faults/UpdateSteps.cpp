#include "UpdateSteps.h"

Steps InterfaceListSteps(bool isGev) {
    const char* const untold = "the interface is left out until the producer tells a change";
    const auto lost = Fate::SwallowedListUntold;
    Steps steps{
        {"TLUpdateInterfaceList", 1, Fate::SwallowedListLater, "an update may fail"},
        {"TLGetNumInterfaces", 1, lost, "an update may fail"},
        {"TLGetInterfaceID", 2, lost, "nothing opens by a blank ID"},
        {"TLGetInterfaceInfo", 4, Fate::Swallowed, "a fact may be missing"},
        {"TLGetInterfaceInfo", 2, isGev ? lost : Fate::Swallowed,
         "without its type it is no GigE Vision interface"},
    };
    if (isGev) {
        steps = steps + Steps{
                            {"GCReadPort", 2, lost, "the records don't match"},
                            {"GCWritePort", 1, lost, "the records don't match"},
                            {"GCReadPort", 12, Fate::Swallowed, "an address may be missing"},
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

Steps DeviceListSteps(bool isGev, unsigned count) {
    const auto lost = Fate::SwallowedListUntold;
    const char* const mismatch = "the records don't match";
    Steps steps{{"IFUpdateDeviceList", 1, Fate::SwallowedListLater, "an update may fail"},
                {"IFGetNumDevices", 1, lost, "an update may fail"}};
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"IFGetDeviceID", 2, Fate::Swallowed, "the camera's ID may be blank"},
                              {"IFGetDeviceInfo", 11, Fate::Swallowed, "a fact may be missing"}};
    }
    steps.push_back({"GCReadPort", 1, lost, mismatch});
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"GCReadPort", 1, lost, mismatch},
                              {"GCWritePort", 1, lost, mismatch},
                              {"GCReadPort", 9, Fate::Swallowed, "a text may be missing"}};
    }
    if (!isGev) {
        return steps;
    }
    steps.push_back({"GCReadPort", 1, lost, mismatch});
    for (unsigned i = 0; i < count; ++i) {
        steps = steps + Steps{{"GCReadPort", 1, lost, mismatch},
                              {"GCWritePort", 1, lost, mismatch},
                              {"GCReadPort", 12, Fate::Swallowed, "an address may be missing"}};
    }
    return steps;
}
