#include "camera/GenTLProducer.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

#include "support/Error.h"

namespace {

/// A text by `get(buffer, size)`, which tells the size for a null buffer.
template <class Get>
bool FetchText(const Get& get, std::string& text) {
    size_t size = 0;
    if (get(nullptr, &size) != GenTL::GC_ERR_SUCCESS) {
        return false;
    }
    text.assign(size, '\0');
    if (get(text.data(), &size) != GenTL::GC_ERR_SUCCESS) {
        return false;
    }
    text.resize(strnlen(text.data(), text.size()));
    return true;
}

constexpr size_t kListedIdLength = 64;

bool IsListedAs(const std::string& id, const std::string& listed) {
    return id.substr(0, kListedIdLength) == listed;
}

}  // namespace

std::string LibraryFolder() {
    Dl_info info{};
    std::array<char, PATH_MAX> path{};
    // The function's address in this program may be that of a stub.
    const void* const inside = dlsym(RTLD_DEFAULT, "OVInitLib");
    if (inside == nullptr || dladdr(inside, &info) == 0 ||
        realpath(info.dli_fname, path.data()) == nullptr) {
        throw ToolError("can't tell where liboviapi.so stands");
    }
    const std::string file = path.data();
    return file.substr(0, file.rfind('/'));
}

GenTLProducer::GenTLProducer(const std::string& path)
    : m_path(path), m_library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL), &dlclose) {
    if (m_library == nullptr) {
        const char* const reason = dlerror();
        throw ToolError("can't load " + m_path + ": " +
                        (reason == nullptr ? "the reason isn't known" : reason));
    }
    ResolveAll();
    Require(GCInitLib(), "GCInitLib");
    const GenTL::GC_ERROR status = TLOpen(&m_system);
    if (status != GenTL::GC_ERR_SUCCESS) {
        GCCloseLib();
    }
    Require(status, "TLOpen");
}

GenTLProducer::~GenTLProducer() {
    TLClose(m_system);
    GCCloseLib();
}

template <class Pointer>
void GenTLProducer::Resolve(Pointer& pointer, const char* name) {
    pointer = reinterpret_cast<Pointer>(dlsym(m_library.get(), name));
    if (pointer == nullptr) {
        throw ToolError(m_path + " lacks " + name);
    }
}

void GenTLProducer::ResolveAll() {
    Resolve(GCGetInfo, "GCGetInfo");
    Resolve(IFGetInfo, "IFGetInfo");
    Resolve(IFGetDeviceInfo, "IFGetDeviceInfo");
    Resolve(GCInitLib, "GCInitLib");
    Resolve(GCCloseLib, "GCCloseLib");
    Resolve(TLOpen, "TLOpen");
    Resolve(TLClose, "TLClose");
    Resolve(TLUpdateInterfaceList, "TLUpdateInterfaceList");
    Resolve(TLGetNumInterfaces, "TLGetNumInterfaces");
    Resolve(TLGetInterfaceID, "TLGetInterfaceID");
    Resolve(TLOpenInterface, "TLOpenInterface");
    Resolve(IFClose, "IFClose");
    Resolve(IFUpdateDeviceList, "IFUpdateDeviceList");
    Resolve(IFGetNumDevices, "IFGetNumDevices");
    Resolve(IFGetDeviceID, "IFGetDeviceID");
    Resolve(IFOpenDevice, "IFOpenDevice");
    Resolve(DevClose, "DevClose");
    Resolve(DevGetPort, "DevGetPort");
    Resolve(GCGetPortURLInfo, "GCGetPortURLInfo");
    Resolve(GCGetPortInfo, "GCGetPortInfo");
    Resolve(GCReadPort, "GCReadPort");
    Resolve(GCWritePort, "GCWritePort");
}

void GenTLProducer::Require(GenTL::GC_ERROR status, const char* function) const {
    if (status == GenTL::GC_ERR_SUCCESS) {
        return;
    }
    const bool isHeld =
        status == GenTL::GC_ERR_ACCESS_DENIED || status == GenTL::GC_ERR_RESOURCE_IN_USE;
    throw ToolError(
        "can't ask " + m_path + ": " + function + " fails with " + std::to_string(status),
        isHeld ? ExitCode::AccessDenied : ExitCode::Failed);
}

void GenTLProducer::ForEachInterface(uint32_t timeout,
                                     const std::function<void(GenTL::IF_HANDLE)>& visit) const {
    uint32_t count = 0;
    Require(TLUpdateInterfaceList(m_system, nullptr, timeout), "TLUpdateInterfaceList");
    Require(TLGetNumInterfaces(m_system, &count), "TLGetNumInterfaces");
    for (uint32_t index = 0; index < count; ++index) {
        std::string id;
        GenTL::IF_HANDLE handle = nullptr;
        const auto get = [&](char* text, size_t* size) {
            return TLGetInterfaceID(m_system, index, text, size);
        };
        // An interface that can't be opened shows no cameras.
        if (FetchText(get, id) &&
            TLOpenInterface(m_system, id.c_str(), &handle) == GenTL::GC_ERR_SUCCESS) {
            const std::unique_ptr<void, GenTL::PIFClose> close(handle, IFClose);
            visit(handle);
        }
    }
}

std::vector<std::string> GenTLProducer::DeviceIds(GenTL::IF_HANDLE iface, uint32_t timeout) const {
    uint32_t count = 0;
    Require(IFUpdateDeviceList(iface, nullptr, timeout), "IFUpdateDeviceList");
    Require(IFGetNumDevices(iface, &count), "IFGetNumDevices");
    std::vector<std::string> ids;
    for (uint32_t index = 0; index < count; ++index) {
        std::string id;
        if (FetchText(
                [&](char* text, size_t* size) { return IFGetDeviceID(iface, index, text, size); },
                id)) {
            ids.push_back(std::move(id));
        }
    }
    return ids;
}

void GenTLProducer::WithDevice(GenTL::IF_HANDLE iface, const std::string& id,
                               const std::function<void(GenTL::PORT_HANDLE)>& visit) const {
    GenTL::DEV_HANDLE device = nullptr;
    Require(IFOpenDevice(iface, id.c_str(), GenTL::DEVICE_ACCESS_READONLY, &device),
            "IFOpenDevice");
    const std::unique_ptr<void, GenTL::PDevClose> close(device, DevClose);
    GenTL::PORT_HANDLE port = nullptr;
    Require(DevGetPort(device, &port), "DevGetPort");
    visit(port);
}

Json GenTLProducer::Text(const Query& query) const {
    std::string text;
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    const auto get = [&](void* buffer, size_t* size) { return query(&type, buffer, size); };
    return FetchText(get, text) ? Json(text) : Json();
}

Json GenTLProducer::Number(const Query& query) const {
    uint64_t value = 0;
    size_t size = sizeof value;
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    return query(&type, &value, &size) == GenTL::GC_ERR_SUCCESS ? Json(value) : Json();
}

void VisitCamera(const std::string& deviceId, uint32_t timeout,
                 const std::function<void(const GenTLProducer&, GenTL::IF_HANDLE,
                                          const std::string& id)>& visit) {
    bool found = false;
    for (const char* const name : kProducerFiles) {
        const std::string path = LibraryFolder() + "/" + name;
        if (found || access(path.c_str(), F_OK) != 0) {
            continue;
        }
        const GenTLProducer producer(path);
        producer.ForEachInterface(timeout, [&](GenTL::IF_HANDLE iface) {
            for (const std::string& id : producer.DeviceIds(iface, timeout)) {
                if (!found && IsListedAs(id, deviceId)) {
                    found = true;
                    visit(producer, iface, id);
                }
            }
        });
    }
}
