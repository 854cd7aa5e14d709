/// @file
/// The flat functions of a loaded producer, and the steps that most tests share.
#ifndef OV_TESTS_GENTL_API_H
#define OV_TESTS_GENTL_API_H

#include <dlfcn.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"

/// Pointers to all functions of the standard, under their own names.
class GenTLApi {
public:
    /// Cameras keep no state beyond a test unless the test says where.
    explicit GenTLApi(const std::string& path)
        : m_library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr) {
            throw std::runtime_error(dlerror());
        }
        setenv("OV_VIRTUAL_STATE", "off", 0);
#define OV_GENTL_RESOLVE(name, parameters) \
    name = reinterpret_cast<GenTL::P##name>(dlsym(m_library, #name));
        OV_GENTL_FUNCTIONS(OV_GENTL_RESOLVE)
        OV_GENTL_OPTIONAL_FUNCTIONS(OV_GENTL_RESOLVE)
#undef OV_GENTL_RESOLVE
    }
    GenTLApi(const GenTLApi&) = delete;
    GenTLApi& operator=(const GenTLApi&) = delete;
    ~GenTLApi() {
        dlclose(m_library);
    }

#define OV_GENTL_MEMBER(name, parameters) GenTL::P##name name = nullptr;
    OV_GENTL_FUNCTIONS(OV_GENTL_MEMBER)
    OV_GENTL_OPTIONAL_FUNCTIONS(OV_GENTL_MEMBER)
#undef OV_GENTL_MEMBER

    /// The text of an information call, by `ask(type, buffer, size)`; "" when
    /// it fails.
    template <typename Ask>
    static std::string Text(Ask ask) {
        std::size_t size = 0;
        GenTL::INFO_DATATYPE type = 0;
        if (ask(&type, nullptr, &size) != GenTL::GC_ERR_SUCCESS) {
            return {};
        }
        std::string text(size, '\0');
        if (ask(&type, text.data(), &size) != GenTL::GC_ERR_SUCCESS) {
            return {};
        }
        text.resize(std::min(text.find('\0'), text.size()));
        return text;
    }

    /// A number of an information call; throws the code when it fails.
    template <typename T, typename Ask>
    static T Number(Ask ask) {
        T value{};
        std::size_t size = sizeof value;
        GenTL::INFO_DATATYPE type = 0;
        const GenTL::GC_ERROR code = ask(&type, static_cast<void*>(&value), &size);
        if (code != GenTL::GC_ERR_SUCCESS) {
            throw code;
        }
        return value;
    }

private:
    void* m_library;
};

/// The way down to an open stream, opened step by step.
struct OpenCamera {
    explicit OpenCamera(const GenTLApi& a) : api(a) {}
    OpenCamera(const OpenCamera&) = delete;
    OpenCamera& operator=(const OpenCamera&) = delete;
    ~OpenCamera() {
        if (library) {
            api.GCCloseLib();
        }
    }

    void OpenSystem() {
        Check(api.GCInitLib(), "GCInitLib");
        library = true;
        Check(api.TLOpen(&system), "TLOpen");
    }

    void OpenInterface() {
        OpenSystem();
        Check(api.TLUpdateInterfaceList(system, nullptr, 100), "TLUpdateInterfaceList");
        interfaceId = Id([&](char* text, std::size_t* size) {
            return api.TLGetInterfaceID(system, 0, text, size);
        });
        Check(api.TLOpenInterface(system, interfaceId.c_str(), &iface), "TLOpenInterface");
        Check(api.IFUpdateDeviceList(iface, nullptr, 100), "IFUpdateDeviceList");
    }

    void OpenDevice(std::uint32_t index = 0) {
        OpenInterface();
        deviceId = Id([&](char* text, std::size_t* size) {
            return api.IFGetDeviceID(iface, index, text, size);
        });
        Check(api.IFOpenDevice(iface, deviceId.c_str(), GenTL::DEVICE_ACCESS_EXCLUSIVE, &device),
              "IFOpenDevice");
        Check(api.DevGetPort(device, &port), "DevGetPort");
    }

    void OpenStream(std::uint32_t index = 0) {
        OpenDevice(index);
        streamId = Id([&](char* text, std::size_t* size) {
            return api.DevGetDataStreamID(device, 0, text, size);
        });
        Check(api.DevOpenDataStream(device, streamId.c_str(), &stream), "DevOpenDataStream");
    }

    /// Announces that many buffers; their user pointer is their place.
    void Announce(std::size_t count, std::size_t bytes) {
        for (std::size_t i = 0; i < count; ++i) {
            memory.emplace_back(bytes);
            buffers.push_back(nullptr);
            Check(api.DSAnnounceBuffer(stream, memory.back().data(), bytes,
                                       reinterpret_cast<void*>(memory.size() - 1), &buffers.back()),
                  "DSAnnounceBuffer");
        }
    }

    void RegisterNewBuffer() {
        Check(api.GCRegisterEvent(stream, GenTL::EVENT_NEW_BUFFER, &event), "GCRegisterEvent");
    }

    /// Event, buffers in the input pool, engine running.
    void Start(std::size_t count, std::size_t bytes) {
        RegisterNewBuffer();
        Announce(count, bytes);
        Check(api.DSFlushQueue(stream, GenTL::ACQ_QUEUE_ALL_TO_INPUT), "DSFlushQueue");
        Check(api.DSStartAcquisition(stream, 0, GenTL::GENTL_INFINITE), "DSStartAcquisition");
    }

    GenTL::GC_ERROR GetFrame(GenTL::S_EVENT_NEW_BUFFER& data, std::uint64_t timeout = 10000) const {
        std::size_t size = sizeof data;
        return api.EventGetData(event, &data, &size, timeout);
    }

    /// The next frame's buffer; throws when none comes.
    GenTL::BUFFER_HANDLE NextFrame() const {
        GenTL::S_EVENT_NEW_BUFFER data{};
        Check(GetFrame(data), "EventGetData");
        return data.BufferHandle;
    }

    template <typename T>
    T BufferInfo(GenTL::BUFFER_HANDLE buffer, GenTL::BUFFER_INFO_CMD command) const {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return api.DSGetBufferInfo(stream, buffer, command, type, out, size);
        });
    }

    template <typename T>
    T StreamInfo(GenTL::STREAM_INFO_CMD command) const {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return api.DSGetInfo(stream, command, type, out, size);
        });
    }

    template <typename T>
    void WriteRegister(std::uint64_t address, T value) const {
        std::size_t size = sizeof value;
        Check(api.GCWritePort(port, address, &value, &size), "GCWritePort");
    }

    template <typename T>
    T ReadRegister(std::uint64_t address) const {
        T value{};
        std::size_t size = sizeof value;
        Check(api.GCReadPort(port, address, &value, &size), "GCReadPort");
        return value;
    }

    static void Check(GenTL::GC_ERROR code, const char* step) {
        if (code != GenTL::GC_ERR_SUCCESS) {
            throw std::runtime_error(std::string(step) + " failed with " + std::to_string(code));
        }
    }

    template <typename Ask>
    static std::string Id(Ask ask) {
        return GenTLApi::Text([&](auto*, void* buffer, std::size_t* size) {
            return ask(static_cast<char*>(buffer), size);
        });
    }

    const GenTLApi& api;
    bool library = false;
    GenTL::TL_HANDLE system = nullptr;
    GenTL::IF_HANDLE iface = nullptr;
    GenTL::DEV_HANDLE device = nullptr;
    GenTL::PORT_HANDLE port = nullptr;
    GenTL::DS_HANDLE stream = nullptr;
    GenTL::EVENT_HANDLE event = nullptr;
    std::string interfaceId;
    std::string deviceId;
    std::string streamId;
    std::vector<std::vector<std::byte>> memory;
    std::vector<GenTL::BUFFER_HANDLE> buffers;
};

#endif
