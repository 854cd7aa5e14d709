/// @file
/// Frames of whatever a description says.
#include "FileCameraTest.h"

namespace {

constexpr uint32_t kFrameTimeOut = 10000;

class FileCameraAcquisition : public FileCameraTest {
protected:
    /// What a start reads and writes.
    std::string WhatIsMissing() const {
        for (const char* const name : {"Width", "Height", "PixelFormat", "OffsetX", "OffsetY",
                                       "PayloadSize", "AcquisitionStart"}) {
            const Feature feature = FeatureNamed(name);
            const Answer<bool> is =
                feature.IsCommand() ? feature.IsWritable() : feature.IsReadable();
            if (!is.value) {
                return name;
            }
        }
        int64_t size = 0;
        OVGetInt(camera, OV_FEATURE_PayloadSize, &size);
        return size == kPayloadSize ? "" : "PayloadSize";
    }

    /// A stop unlocks the parameters, which not every description has, and tells
    /// when it couldn't.
    void ExpectStop() const {
        const ReferenceMap reference(camera, Description());
        const bool hasLock = reference.Map().GetNode("TLParamsLocked") != nullptr;
        const OV_STATUS status = OVStreamOff(camera);
        if (hasLock) {
            EXPECT_EQ(status, OV_STATUS_SUCCESS) << LastError::Get().text;
            return;
        }
        EXPECT_EQ(status, OV_STATUS_ERROR);
        EXPECT_NE(LastError::Get().text.find("{The feature \"TLParamsLocked\" is not implemented}"),
                  std::string::npos)
            << LastError::Get().text;
        Tell("stops with a failure: there is no TLParamsLocked");
    }
};

TEST_P(FileCameraAcquisition, StartsDeliversAndStops) {
    const std::string missing = WhatIsMissing();
    if (!missing.empty()) {
        std::printf("%-44s has no %s and takes no frames\n", GetParam().c_str(), missing.c_str());
        return;
    }
    ASSERT_OV_OK(OVStreamOn(camera));
    std::vector<uint8_t> pixels(kPayloadSize);
    OV_FRAME_DATA frame{};
    frame.pImgBuf = pixels.data();
    for (uint64_t id = 0; id < 3; ++id) {
        ASSERT_OV_OK(OVGetImage(camera, &frame, kFrameTimeOut));
        EXPECT_EQ(frame.nFrameID, id);
        EXPECT_EQ(frame.nImgSize, 64);
    }
    ExpectStop();
    std::printf("%-44s takes frames\n", GetParam().c_str());
}

OV_FOR_EACH_FILE_CAMERA(FileCameraAcquisition);

}  // namespace
