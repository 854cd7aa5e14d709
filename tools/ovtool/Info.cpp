#include "Info.h"

#include <nlohmann/json.hpp>

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

/// Of a GigE Vision camera and of the adapter that sees it.
struct Addresses {
    Json camera = Json::object();
    Json adapter = Json::object();
};

Addresses ReadAddresses(size_t index) {
    OV_DEVICE_IP_INFO info{};
    Check(OVGetDeviceIPInfo(static_cast<uint32_t>(index), &info), "read the camera's addresses");
    return {{{"mac", FieldText(info.szMAC)},
             {"ip", FieldText(info.szIP)},
             {"subnetMask", FieldText(info.szSubnetMask)},
             {"gateway", FieldText(info.szGateway)}},
            {{"mac", FieldText(info.szNICMAC)},
             {"ip", FieldText(info.szNICIP)},
             {"subnetMask", FieldText(info.szNICSubnetMask)},
             {"gateway", FieldText(info.szNICGateway)},
             {"description", FieldText(info.szNICDescription)}}};
}

}  // namespace

void ShowInfo(const CameraChoice& choice, bool json) {
    Json camera;
    Addresses addresses;
    std::string deviceId;
    {
        const Library library;
        const auto cameras = Library::FindCameras(kSearchTimeout);
        const size_t index = IndexOf(choice, cameras);
        const OV_DEVICE_BASE_INFO& listed = cameras[index - 1];
        camera = ToJson(index, listed);
        deviceId = FieldText(listed.szDeviceID);
        if (listed.deviceClass == OV_DEVICE_CLASS_GEV) {
            addresses = ReadAddresses(index);
        }
        camera.update(Details(choice.key));
    }
    auto origin = FindOrigin(deviceId, kSearchTimeout);
    if (!origin) {
        throw ToolError("camera " + choice.key + " vanished while it was looked at");
    }
    camera.update(origin->camera);
    camera.update(addresses.camera);
    origin->interface.update(addresses.adapter);
    const Json document = {
        {"camera", camera}, {"interface", origin->interface}, {"producer", origin->producer}};
    json ? PrintJson(document) : PrintSections(document);
}
