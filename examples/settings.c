// Changes a setting within its limits, and brings the camera back to what it was.
#include "example.h"

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    OV_FLOAT_RANGE limits;
    double exposure = 0;
    Check(OVExportConfigFile(camera, "settings.txt"), "OVExportConfigFile");

    Check(OVGetFloatRange(camera, OV_FEATURE_ExposureTime, &limits), "limits of ExposureTime");
    exposure = limits.dMax < 20000 ? limits.dMax : 20000;
    Check(OVSetFloat(camera, OV_FEATURE_ExposureTime, exposure), "ExposureTime");
    // The camera may round: what it has made of the value is read back.
    Check(OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure), "ExposureTime");
    printf("changed to %g us\n", exposure);

    Check(OVImportConfigFile(camera, "settings.txt", true), "OVImportConfigFile");
    Check(OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure), "ExposureTime");
    printf("restored to %g us\n", exposure);
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
