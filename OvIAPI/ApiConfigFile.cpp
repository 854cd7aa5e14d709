// All settings of a camera, to a file and back.

#include <clocale>
#include <cstdlib>
#include <cstring>
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

/// Of a path to be written, its end included.
constexpr size_t kPathSize = 1024;

void CheckStopped(const COvDeviceInfo& info, const char* message) {
    if (info.GetStream()->DoIsDataStreamAcquisiton()) {
        OV_RAISE(CInvalidCallError, message);
    }
}

/// Paths are taken in the character set of the makers' country; the process
/// keeps its own where that isn't installed. What can't be read in it ends the
/// text early.
std::wstring Widen(const char* path) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    std::setlocale(LC_ALL, "zh_CN.utf8");
    std::wstring wide(std::strlen(path), L'\0');
    if (std::mbstowcs(wide.data(), path, wide.size()) == 0) {
        OV_RAISE(CUnexpectedError, "Failed to resolve file name");
    }
    return wide;
}

std::string Narrow(const std::wstring& wide) {
    std::string path(2 * wide.size() + 1, '\0');
    std::wcstombs(path.data(), wide.c_str(), path.size() - 1);
    path.resize(path.find('\0'));
    return path;
}

void CheckOpened(bool isOpen) {
    if (!isOpen) {
        OV_RAISE(CUnexpectedError, "Can't open config file");
    }
}

/// What was there is lost from here on; so the text has to be whole before.
void WriteFile(const char* path, const std::string& text) {
    std::ofstream file;
    if (std::strlen(path) < kPathSize) {
        file.open(path, std::ios::binary | std::ios::trunc);
    }
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
    Widen(pszFilePath);
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
    std::ifstream file(Narrow(Widen(pszFilePath)), std::ios::binary);
    CheckOpened(file.is_open());
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
