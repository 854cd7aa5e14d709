#include "List.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "FieldText.h"
#include "Json.h"
#include "Names.h"
#include "Session.h"

namespace {

void Print(size_t index, const OV_DEVICE_BASE_INFO& camera) {
    std::printf("%zu  %s %s  serial %s  user ID \"%s\"  %s  %s\n", index, camera.szVendorName,
                camera.szModelName, camera.szSN, camera.szUserID, ClassName(camera.deviceClass),
                camera.szDisplayName);
}

}  // namespace

Json ToJson(size_t index, const OV_DEVICE_BASE_INFO& camera) {
    return {{"index", index},
            {"vendor", FieldText(camera.szVendorName)},
            {"model", FieldText(camera.szModelName)},
            {"serialNumber", FieldText(camera.szSN)},
            {"userId", FieldText(camera.szUserID)},
            {"displayName", FieldText(camera.szDisplayName)},
            {"deviceId", FieldText(camera.szDeviceID)},
            {"class", ClassName(camera.deviceClass)},
            {"access", AccessName(camera.accessStatus)}};
}

void List(uint32_t timeout, bool json) {
    const Library library;
    const auto cameras = Library::FindCameras(timeout);
    Json documents = Json::array();
    for (size_t i = 0; i < cameras.size(); ++i) {
        if (json) {
            documents.push_back(ToJson(i + 1, cameras[i]));
        } else {
            Print(i + 1, cameras[i]);
        }
    }
    if (json) {
        PrintJson({{"cameras", documents}});
    } else {
        std::printf("%zu camera%s\n", cameras.size(), cameras.size() == 1 ? "" : "s");
    }
}
