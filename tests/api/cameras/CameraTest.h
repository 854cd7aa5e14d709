#pragma once
/// A test of cameras as applications have them. It is the same for virtual cameras and for those
/// on the network.

#include <cstring>
#include <string>
#include <vector>

#include "CameraSupply.h"
#include "support/LastError.h"

/// Begins with the library initialised, its cameras found and the first one open.
class CameraTest : public testing::Test {
protected:
    static constexpr uint32_t kCameras = CameraSupply::kCameras;
    /// Registers of a camera that has them at other addresses, too.
    static constexpr uint64_t kDropOff = 0xA20, kDropOffTime = 0xA24, kDropOffFrames = 0xA28;
    static constexpr int64_t kWidth = 64, kHeight = 32;
    static constexpr uint32_t kFrameTimeOut = 60000;

    static void TearDownTestSuite() { s_supply.reset(); }

    void SetUp() override;
    /// Ends what calls back before the test's own members go.
    void TearDown() override;

    static CameraSupply& Supply();
    /// Has other cameras in the next test, since this one leaves its own unusable.
    static void SpoilCameras() { s_isSpoilt = true; }

    static uint32_t Update();
    /// Searches until that many cameras are listed.
    static void AwaitCameras(uint32_t count);
    static std::vector<OV_DEVICE_BASE_INFO> Records();

    static OV_STATUS OpenBy(const std::string& key, OV_OPEN_MODE mode, OV_ACCESS_MODE access,
                            OV_DEV_HANDLE* handle);
    /// Opens a camera as it is when it is switched on, but for a small window and a quick
    /// exposure.
    static OV_DEV_HANDLE OpenQuick(uint32_t index = 1);

    /// Writes one of the registers above.
    static void Write(OV_DEV_HANDLE handle, uint64_t address, uint32_t value);
    static void SetEntry(OV_DEV_HANDLE handle, OV_FEATURE_ID feature, const char* name);
    static int64_t GetInt(OV_DEV_HANDLE handle, OV_FEATURE_ID feature);
    static void Notify(OV_DEV_HANDLE handle, const char* event) {
        SetEntry(handle, OV_FEATURE_EventSelector, event);
        SetEntry(handle, OV_FEATURE_EventNotification, "On");
    }
    /// Has the camera take frames by command and by nothing else.
    static void WaitForTriggers(OV_DEV_HANDLE handle);

    OV_DEV_HANDLE camera = nullptr;

private:
    static inline std::unique_ptr<CameraSupply> s_supply;
    static inline bool s_isSpoilt = false;
};
