// All settings of a camera, to a file and back.

#include <fstream>
#include <numeric>
#include <sstream>

#include "DeviceManager.h"
#include "OVIError.h"
#include "OvIAPI.h"
#include "TLClassFeature/FeaturePersistance.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/DataStream.h"

using namespace OVTLClass;

namespace {

void CheckStopped(const COvDeviceInfo& info, const char* message) {
    if (info.GetStream()->DoIsDataStreamAcquisiton()) {
        OV_RAISE(CInvalidCallError, message);
    }
}

void CheckPath(const char* path) {
    if (*path == '\0') {
        OV_RAISE(CUnexpectedError, "Failed to resolve file name");
    }
}

void CheckOpened(bool isOpen) {
    if (!isOpen) {
        OV_RAISE(CUnexpectedError, "Can't open config file");
    }
}

/// What was there is lost from here on; so the text has to be whole before.
void WriteFile(const char* path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    CheckOpened(file.is_open());
    file << text;
    file.close();
    if (!file) {
        OV_RAISE(CUnexpectedError, "Can't write config file");
    }
}

}  // namespace

OV_STATUS OVExportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath) try {
    EnterApi();
    const COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFilePath);
    CheckStopped(info, "Can't export config file after start capture");
    CheckPath(pszFilePath);
    info.GetPolling().PollBeforeCall(OV_FEATURE_LEVEL_REMOTE_DEVICE);
    std::ostringstream text;
    CAllFeaturePersistance::ExportAllFeaturesToStream(info.GetDevice(), text);
    WriteFile(pszFilePath, text.str());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVImportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath, bool bVerify) try {
    EnterApi();
    const COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFilePath);
    CheckStopped(info, "Can't import config file after start capture");
    CheckPath(pszFilePath);
    std::ifstream file(pszFilePath, std::ios::binary);
    CheckOpened(file.is_open());
    info.GetPolling().PollBeforeCall(OV_FEATURE_LEVEL_REMOTE_DEVICE);
    const std::vector<std::string> errors =
        CAllFeaturePersistance::ImportAllFeaturesFromStream(info.GetDevice(), file, bVerify);
    if (!errors.empty()) {
        OV_RAISE_STATUS(OV_STATUS_ERROR,
                        std::accumulate(errors.begin(), errors.end(), std::string()));
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
