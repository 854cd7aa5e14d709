/// @file
/// Messages of a camera, taken from its remote device event.
#ifndef OV_TESTS_REMOTE_MESSAGE_H
#define OV_TESTS_REMOTE_MESSAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GenTLApi.h"

struct RemoteMessage {
    std::uint64_t id = 0;
    std::vector<std::byte> item;

    /// A number whose high byte comes first.
    std::uint64_t Field(std::size_t offset, std::size_t length) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < length; ++i) {
            value = value << 8 | std::to_integer<std::uint64_t>(item.at(offset + i));
        }
        return value;
    }
    std::uint64_t Time() const { return Field(8, 8); }
    std::uint64_t Frame() const { return Field(16, 8); }
};

/// The remote device event of an open camera.
class RemoteEvent {
public:
    explicit RemoteEvent(const OpenCamera& camera) : m_api(camera.api) {
        OpenCamera::Check(
            m_api.GCRegisterEvent(camera.device, GenTL::EVENT_REMOTE_DEVICE, &m_event),
            "GCRegisterEvent");
    }

    /// How many messages came so far.
    std::uint64_t Fired() const { return Info<std::uint64_t>(GenTL::EVENT_NUM_FIRED); }

    /// The next message; throws when none comes.
    RemoteMessage Next() const {
        std::vector<std::byte> entry(Info<std::size_t>(GenTL::EVENT_SIZE_MAX));
        std::size_t size = entry.size();
        OpenCamera::Check(m_api.EventGetData(m_event, entry.data(), &size, 10000), "EventGetData");
        RemoteMessage message;
        message.id = GenTLApi::Number<std::uint64_t>([&](auto* type, void* out, auto* length) {
            return m_api.EventGetDataInfo(m_event, entry.data(), size, GenTL::EVENT_DATA_NUMID,
                                          type, out, length);
        });
        message.item.resize(Info<std::size_t>(GenTL::EVENT_INFO_DATA_SIZE_MAX));
        std::size_t length = message.item.size();
        GenTL::INFO_DATATYPE type = 0;
        OpenCamera::Check(
            m_api.EventGetDataInfo(m_event, entry.data(), size, GenTL::EVENT_DATA_VALUE, &type,
                                   message.item.data(), &length),
            "EventGetDataInfo");
        message.item.resize(length);
        return message;
    }

private:
    template <typename T>
    T Info(GenTL::EVENT_INFO_CMD command) const {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return m_api.EventGetInfo(m_event, command, type, out, size);
        });
    }

    const GenTLApi& m_api;
    GenTL::EVENT_HANDLE m_event = nullptr;
};

#endif
