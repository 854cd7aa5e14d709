/// @file
/// Frames of whatever a description says.
#include "FileCameraTest.h"

namespace {

constexpr uint32_t kFrameTimeOut = 10000;

/// What a start reads and writes and this description doesn't have.
std::string WhatIsMissing(GenApi::INodeMap& map) {
    for (const char* const name : {"Width", "Height", "PixelFormat", "OffsetX", "OffsetY",
                                   "PayloadSize", "AcquisitionStart"}) {
        if (map.GetNode(name) == nullptr) {
            return name;
        }
    }
    return "";
}

TEST_P(FileCamera, StartsDeliversAndStops) {
    const ReferenceMap reference = Reference();
    const std::string missing = WhatIsMissing(reference.Map());
    if (!missing.empty()) {
        ExpectFailure(OVStreamOn(camera), OV_STATUS_NOT_IMPLEMENTED,
                      "The feature \"" + missing + "\" is not implemented");
        std::printf("%-30s has no %s and takes no frames\n", GetParam().c_str(), missing.c_str());
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
    EXPECT_OV_OK(OVStreamOff(camera));
    std::printf("%-30s takes frames\n", GetParam().c_str());
}

}  // namespace
