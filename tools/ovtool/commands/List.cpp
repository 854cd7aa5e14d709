#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/ListedCamera.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

void Print(size_t index, const OV_DEVICE_BASE_INFO& camera) {
    const auto show = [](const auto& field) { return Visible(FieldText(field)); };
    std::printf("%zu  %s %s  serial %s  user ID \"%s\"  %s  %s\n", index,
                show(camera.szVendorName).c_str(), show(camera.szModelName).c_str(),
                show(camera.szSN).c_str(), show(camera.szUserID).c_str(),
                ClassName(camera.deviceClass), show(camera.szDisplayName).c_str());
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
    if (cameras.empty()) {
        throw ToolError("no camera was found", ExitCode::NoCamera);
    }
}
