// Saves all settings of a camera to a file, and restores them.

#include <fstream>
#include <numeric>
#include <sstream>

#include "OvIAPI.h"
#include "TLClassModule/AllFeaturePersistance.h"
#include "TLClassSupport/OvException.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "frames/Acquisition.h"

using namespace OVTLClass;

namespace {

void CheckPath(const char* path, const OvPlace& place) {
    if (*path == '\0') {
        OV_RAISE_AT(CUnexpectedError, place, "Failed to resolve file name");
    }
}

void CheckOpened(bool isOpen, const OvPlace& place) {
    if (!isOpen) {
        OV_RAISE_AT(CUnexpectedError, place, "Can't open config file");
    }
}

/// From here on, what was in the file is lost, so the text must be complete before.
void WriteFile(const char* path, const std::string& text, const OvPlace& place) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    CheckOpened(file.is_open(), place);
    file << text;
    // A full disk may show only now.
    file.close();
    if (!file) {
        OV_RAISE_AT(CUnexpectedError, place, "Can't write config file");
    }
}

}  // namespace

OV_STATUS OVExportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFilePath);
    CheckStopped(*info.GetStream(), "Can't export config file after start capture", OV_HERE);
    CheckPath(pszFilePath, OV_HERE);
    // Features that change by themselves go into the file with their present values.
    info.GetPolling().PollBeforeCall(OV_FEATURE_LEVEL_REMOTE_DEVICE);
    std::ostringstream text;
    CAllFeaturePersistance::ExportAllFeaturesToStream(info.GetDevice(), text);
    WriteFile(pszFilePath, text.str(), OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVImportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath, bool bVerify) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFilePath);
    CheckStopped(*info.GetStream(), "Can't import config file after start capture", OV_HERE);
    CheckPath(pszFilePath, OV_HERE);
    std::ifstream file(pszFilePath, std::ios::binary);
    CheckOpened(file.is_open(), OV_HERE);
    info.GetPolling().PollBeforeCall(OV_FEATURE_LEVEL_REMOTE_DEVICE);
    const std::vector<std::string> errors =
        CAllFeaturePersistance::ImportAllFeaturesFromStream(info.GetDevice(), file, bVerify);
    if (!errors.empty()) {
        // All that went wrong in one text: the rest of the file has been written to the
        // camera.
        OV_RAISE_STATUS(OV_STATUS_ERROR,
                        std::accumulate(errors.begin(), errors.end(), std::string()));
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
