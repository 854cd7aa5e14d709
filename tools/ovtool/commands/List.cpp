#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/ListedCamera.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

void Print(size_t index, const OV_DEVICE_BASE_INFO& camera) {
    std::printf("%zu  %s %s  serial %s  user ID \"%s\"  %s  %s\n", index, camera.szVendorName,
                camera.szModelName, camera.szSN, camera.szUserID, ClassName(camera.deviceClass),
                camera.szDisplayName);
}

}  // namespace

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
