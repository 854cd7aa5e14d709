#include <nlohmann/json.hpp>
#include <optional>

#include "camera/Features.h"
#include "camera/GenTLProducer.h"
#include "camera/ListedCamera.h"
#include "camera/Node.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Text.h"

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

/// What tells of the clock that a camera shares with others, the newer name first.
constexpr const char* kClockStates[] = {"PtpStatus", "GevIEEE1588Status"};

void AddClock(OV_DEV_HANDLE camera, Json& details) {
    for (const char* const name : kClockStates) {
        const auto state = Node::Find(camera, OV_NODE_MODULE_CAMERA, name);
        if (state && state->IsReadable()) {
            details["sharedClock"] = state->Symbolic();
            return;
        }
    }
}

/// Null for each when another program holds the camera.
Json Details(const CameraChoice& choice, size_t found) {
    Json details = Json::object();
    for (const Detail& detail : kDetails) {
        details[detail.key] = nullptr;
    }
    if (const auto camera = OpenCamera::UnlessHeld(choice, found)) {
        for (const Detail& detail : kDetails) {
            if (const auto value = TryReadFeature(camera->Handle(), RowOf(detail.feature))) {
                details[detail.key] = ToJson(*value);
            }
        }
        AddClock(camera->Handle(), details);
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
    known.camera.update(Details(choice, cameras.size()));
    return known;
}

// Where a camera comes from. The library keeps it to itself, so that the producers are
// asked directly, while the library is closed.

/// Facts by name; those that a producer doesn't give are null.
struct Origin {
    Json camera;
    Json interface;
    Json producer;
};

/// The version of the standard that the producer follows.
Json StandardVersion(const GenTLProducer& producer) {
    const auto ask = [&](GenTL::TL_INFO_CMD command) {
        return producer.Number([&](auto* type, void* buffer, size_t* size) {
            return producer.GCGetInfo(command, type, buffer, size);
        });
    };
    const Json major = ask(GenTL::TL_INFO_GENTL_VER_MAJOR);
    const Json minor = ask(GenTL::TL_INFO_GENTL_VER_MINOR);
    return major.is_null() || minor.is_null() ? Json() : Json(major.dump() + "." + minor.dump());
}

Json ProducerFacts(const GenTLProducer& producer) {
    const auto ask = [&](GenTL::TL_INFO_CMD command) {
        return producer.Text([&](auto* type, void* buffer, size_t* size) {
            return producer.GCGetInfo(command, type, buffer, size);
        });
    };
    return {{"id", ask(GenTL::TL_INFO_ID)},
            {"displayName", ask(GenTL::TL_INFO_DISPLAYNAME)},
            {"vendor", ask(GenTL::TL_INFO_VENDOR)},
            {"model", ask(GenTL::TL_INFO_MODEL)},
            {"version", ask(GenTL::TL_INFO_VERSION)},
            {"type", ask(GenTL::TL_INFO_TLTYPE)},
            {"gentlVersion", StandardVersion(producer)},
            {"file", producer.Path()}};
}

Json InterfaceFacts(const GenTLProducer& producer, GenTL::IF_HANDLE iface) {
    const auto ask = [&](GenTL::INTERFACE_INFO_CMD command) {
        return producer.Text([&](auto* type, void* buffer, size_t* size) {
            return producer.IFGetInfo(iface, command, type, buffer, size);
        });
    };
    return {{"id", ask(GenTL::INTERFACE_INFO_ID)},
            {"displayName", ask(GenTL::INTERFACE_INFO_DISPLAYNAME)},
            {"type", ask(GenTL::INTERFACE_INFO_TLTYPE)}};
}

Json CameraFacts(const GenTLProducer& producer, GenTL::IF_HANDLE iface, const std::string& id) {
    const auto ask = [&](GenTL::DEVICE_INFO_CMD command) {
        return [&producer, iface, &id, command](auto* type, void* buffer, size_t* size) {
            return producer.IFGetDeviceInfo(iface, id.c_str(), command, type, buffer, size);
        };
    };
    return {{"version", producer.Text(ask(GenTL::DEVICE_INFO_VERSION))},
            {"type", producer.Text(ask(GenTL::DEVICE_INFO_TLTYPE))},
            {"timestampFrequency", producer.Number(ask(GenTL::DEVICE_INFO_TIMESTAMP_FREQUENCY))}};
}

/// Asks each producer beside the library for a camera, in the library's order.
/// Nothing when none has it.
/// @param deviceId  as in the device list, maybe cut
/// @param timeout   for each search, in milliseconds
std::optional<Origin> FindOrigin(const std::string& deviceId, uint32_t timeout) {
    std::optional<Origin> origin;
    VisitCamera(deviceId, timeout,
                [&](const GenTLProducer& producer, GenTL::IF_HANDLE iface, const std::string& id) {
                    origin = Origin{CameraFacts(producer, iface, id),
                                    InterfaceFacts(producer, iface), ProducerFacts(producer)};
                });
    return origin;
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
