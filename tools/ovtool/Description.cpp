#include "Description.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "Error.h"
#include "GenTLProducer.h"

namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

CameraDescription ReadFrom(const GenTLProducer& producer, GenTL::PORT_HANDLE port) {
    const auto ask = [&](GenTL::URL_INFO_CMD command) {
        return [&producer, port, command](auto* type, void* buffer, size_t* size) {
            return producer.GCGetPortURLInfo(port, 0, command, type, buffer, size);
        };
    };
    const Json name = producer.Text(ask(GenTL::URL_INFO_FILENAME));
    const Json address = producer.Number(ask(GenTL::URL_INFO_FILE_REGISTER_ADDRESS));
    const Json length = producer.Number(ask(GenTL::URL_INFO_FILE_SIZE));
    if (name.is_null() || address.is_null() || length.is_null()) {
        throw ToolError("the camera keeps its description elsewhere");
    }
    CameraDescription description;
    description.zipped = EndsWith(name.get<std::string>(), ".zip");
    description.bytes.resize(length.get<size_t>());
    size_t size = description.bytes.size();
    producer.Require(
        producer.GCReadPort(port, address.get<uint64_t>(), description.bytes.data(), &size),
        "GCReadPort");
    return description;
}

}  // namespace

CameraDescription FetchDescription(const std::string& deviceId, uint32_t timeout) {
    std::optional<CameraDescription> description;
    VisitCamera(deviceId, timeout,
                [&](const GenTLProducer& producer, GenTL::IF_HANDLE iface, const std::string& id) {
                    producer.WithDevice(iface, id, [&](GenTL::PORT_HANDLE port) {
                        description = ReadFrom(producer, port);
                    });
                });
    if (!description) {
        throw ToolError("the camera vanished while it was looked at");
    }
    return *std::move(description);
}
