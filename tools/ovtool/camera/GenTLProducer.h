#pragma once
/// One producer, open for the life of the object, as the standard's functions
/// show it.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"
#include "support/Json.h"

/// The producers that the library looks for, in its order.
constexpr const char* kProducerFiles[] = {"OvGVTL.cti", "OvU3VTL.cti", "KwTL.cti"};

/// The folder of liboviapi.so, where producers are.
std::string LibraryFolder();

class GenTLProducer {
public:
    /// Loads, initialises and opens it. Raises when it doesn't.
    explicit GenTLProducer(const std::string& path);
    ~GenTLProducer();
    GenTLProducer(const GenTLProducer&) = delete;
    GenTLProducer& operator=(const GenTLProducer&) = delete;

    const std::string& Path() const { return m_path; }

    /// Opens the interfaces, one after the other.
    /// @param timeout  for the search for them, in milliseconds
    void ForEachInterface(uint32_t timeout,
                          const std::function<void(GenTL::IF_HANDLE)>& visit) const;
    std::vector<std::string> DeviceIds(GenTL::IF_HANDLE iface, uint32_t timeout) const;

    /// Opens a camera for reading and visits its own port. Raises when it can't.
    void WithDevice(GenTL::IF_HANDLE iface, const std::string& id,
                    const std::function<void(GenTL::PORT_HANDLE)>& visit) const;
    /// Raises what `function` answered unless it went well.
    void Require(GenTL::GC_ERROR status, const char* function) const;

    using Query =
        std::function<GenTL::GC_ERROR(GenTL::INFO_DATATYPE* type, void* buffer, size_t* size)>;
    /// The answer to an information call; null when the producer refuses it.
    Json Text(const Query& query) const;
    Json Number(const Query& query) const;

    GenTL::PGCGetInfo GCGetInfo = nullptr;
    GenTL::PIFGetInfo IFGetInfo = nullptr;
    GenTL::PIFGetDeviceInfo IFGetDeviceInfo = nullptr;
    GenTL::PGCGetPortURLInfo GCGetPortURLInfo = nullptr;
    GenTL::PGCGetPortInfo GCGetPortInfo = nullptr;
    GenTL::PGCReadPort GCReadPort = nullptr;
    GenTL::PGCWritePort GCWritePort = nullptr;

private:
    template <class Pointer>
    void Resolve(Pointer& pointer, const char* name);
    void ResolveAll();

    std::string m_path;
    std::unique_ptr<void, int (*)(void*)> m_library;
    GenTL::TL_HANDLE m_system = nullptr;

    GenTL::PGCInitLib GCInitLib = nullptr;
    GenTL::PGCCloseLib GCCloseLib = nullptr;
    GenTL::PTLOpen TLOpen = nullptr;
    GenTL::PTLClose TLClose = nullptr;
    GenTL::PTLUpdateInterfaceList TLUpdateInterfaceList = nullptr;
    GenTL::PTLGetNumInterfaces TLGetNumInterfaces = nullptr;
    GenTL::PTLGetInterfaceID TLGetInterfaceID = nullptr;
    GenTL::PTLOpenInterface TLOpenInterface = nullptr;
    GenTL::PIFClose IFClose = nullptr;
    GenTL::PIFUpdateDeviceList IFUpdateDeviceList = nullptr;
    GenTL::PIFGetNumDevices IFGetNumDevices = nullptr;
    GenTL::PIFGetDeviceID IFGetDeviceID = nullptr;
    GenTL::PIFOpenDevice IFOpenDevice = nullptr;
    GenTL::PDevClose DevClose = nullptr;
    GenTL::PDevGetPort DevGetPort = nullptr;
};

/// Asks each producer beside the library for a camera, in the library's order,
/// and visits it at the first that has it.
/// @param deviceId  as in the device list, maybe cut
/// @param timeout   for each search, in milliseconds
void VisitCamera(const std::string& deviceId, uint32_t timeout,
                 const std::function<void(const GenTLProducer&, GenTL::IF_HANDLE,
                                          const std::string& id)>& visit);
