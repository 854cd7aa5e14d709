#include "Origin.h"

#include "GenTLProducer.h"

namespace {

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

}  // namespace

std::optional<Origin> FindOrigin(const std::string& deviceId, uint32_t timeout) {
    std::optional<Origin> origin;
    VisitCamera(deviceId, timeout,
                [&](const GenTLProducer& producer, GenTL::IF_HANDLE iface, const std::string& id) {
                    origin = Origin{CameraFacts(producer, iface, id),
                                    InterfaceFacts(producer, iface), ProducerFacts(producer)};
                });
    return origin;
}
