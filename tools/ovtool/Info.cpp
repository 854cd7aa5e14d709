#include "Info.h"

#include <nlohmann/json.hpp>

#include "Addresses.h"
#include "Error.h"
#include "Features.h"
#include "FieldText.h"
#include "Json.h"
#include "List.h"
#include "Origin.h"

namespace {

/// What a camera tells of itself once it is open.
struct Detail {
    const char* key;
    OV_FEATURE_ID feature;
};

constexpr Detail kDetails[] = {
    {"firmwareVersion", OV_FEATURE_DeviceFirmwareVersion},
    {"phyVersion", OV_FEATURE_DevicePHYVersion},
    {"sensorWidth", OV_FEATURE_SensorWidth},
    {"sensorHeight", OV_FEATURE_SensorHeight},
    {"shutterMode", OV_FEATURE_SensorShutterMode},
    {"colorFilter", OV_FEATURE_PixelColorFilter},
    {"temperature", OV_FEATURE_DeviceTemperature},
};

/// Null for each when another program holds the camera.
Json Details(const std::string& key) {
    Json details = Json::object();
    for (const Detail& detail : kDetails) {
        details[detail.key] = nullptr;
    }
    if (const auto camera = OpenCamera::UnlessHeld({key, true})) {
        for (const Detail& detail : kDetails) {
            if (const auto value = TryReadFeature(camera->Handle(), detail.feature)) {
                details[detail.key] = ToJson(*value);
            }
        }
    }
    return details;
}

/// What the library knows. Addresses are those of GigE Vision, else empty.
struct Knowledge {
    std::string deviceId;
    Json camera;
    Json cameraAddresses = Json::object();
    Json adapterAddresses = Json::object();
};

Knowledge AskLibrary(const CameraChoice& choice) {
    const Library library;
    const auto cameras = Library::FindCameras(kSearchTimeout);
    const size_t index = IndexOf(choice, cameras);
    const OV_DEVICE_BASE_INFO& listed = cameras[index - 1];
    Knowledge known{FieldText(listed.szDeviceID), ToJson(index, listed)};
    if (listed.deviceClass == OV_DEVICE_CLASS_GEV) {
        OV_DEVICE_IP_INFO info{};
        Check(OVGetDeviceIPInfo(static_cast<uint32_t>(index), &info),
              "read the camera's addresses");
        known.cameraAddresses = CameraAddresses(info);
        known.adapterAddresses = AdapterAddresses(info);
    }
    known.camera.update(Details(choice.key));
    return known;
}

}  // namespace

void ShowInfo(const CameraChoice& choice, bool json) {
    Knowledge known = AskLibrary(choice);
    // Producers can be asked only while the library doesn't use them.
    auto origin = FindOrigin(known.deviceId, kSearchTimeout);
    if (!origin) {
        throw ToolError("camera " + choice.key + " vanished while it was looked at");
    }
    known.camera.update(origin->camera);
    known.camera.update(known.cameraAddresses);
    origin->interface.update(known.adapterAddresses);
    const Json document = {
        {"camera", known.camera}, {"interface", origin->interface}, {"producer", origin->producer}};
    if (json) {
        PrintJson(document);
    } else {
        PrintSections(document);
    }
}
