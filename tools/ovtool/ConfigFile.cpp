#include "ConfigFile.h"

#include "Error.h"

void SaveSettings(const CameraChoice& choice, const std::string& file) {
    const Camera camera(choice);
    Check(OVExportConfigFile(camera.Handle(), file.c_str()), "save settings to " + file);
}

void LoadSettings(const CameraChoice& choice, const std::string& file, bool verify) {
    const Camera camera(choice);
    Check(OVImportConfigFile(camera.Handle(), file.c_str(), verify), "load settings from " + file);
}
