/// @file
/// The port functions.
#include "framework/exports/Serve.h"

using namespace OvProducer;

namespace {

/// Does the entries in order until one fails, and fails with it; `*count` is then the
/// number of entries that were done.
template <typename Access>
void RunStack(GenTL::PORT_REGISTER_STACK_ENTRY* entries, size_t* count, Access access) {
    RequirePointer(entries, "The entries");
    RequirePointer(count, "The entry count");
    const size_t wanted = *count;
    *count = 0;
    for (size_t i = 0; i < wanted; ++i) {
        RequirePointer(entries[i].pBuffer, "The buffer of an entry");
        access(entries[i]);
        *count = i + 1;
    }
}

}  // namespace

OV_PRODUCER_EXPORT GCReadPort(GenTL::PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                              size_t* piSize) {
    return ServeOn<PortObject>(Function::GCReadPort, hPort, [&](const PortObject& object) {
        RequirePointer(pBuffer, "The buffer");
        RequirePointer(piSize, "The size");
        object.GetPort().Read(iAddress, {static_cast<std::byte*>(pBuffer), *piSize});
        *piSize = Observer().ReportedSize(Function::GCReadPort, *piSize);
    });
}

OV_PRODUCER_EXPORT GCWritePort(GenTL::PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                               size_t* piSize) {
    return ServeOn<PortObject>(Function::GCWritePort, hPort, [&](const PortObject& object) {
        RequirePointer(pBuffer, "The buffer");
        RequirePointer(piSize, "The size");
        object.GetPort().Write(iAddress, {static_cast<const std::byte*>(pBuffer), *piSize});
        *piSize = Observer().ReportedSize(Function::GCWritePort, *piSize);
    });
}

OV_PRODUCER_EXPORT GCReadPortStacked(GenTL::PORT_HANDLE hPort,
                                     GenTL::PORT_REGISTER_STACK_ENTRY* pEntries,
                                     size_t* piNumEntries) {
    return ServeOn<PortObject>(Function::GCReadPortStacked, hPort, [&](const PortObject& object) {
        RunStack(pEntries, piNumEntries, [&](const GenTL::PORT_REGISTER_STACK_ENTRY& entry) {
            object.GetPort().Read(entry.Address,
                                  {static_cast<std::byte*>(entry.pBuffer), entry.Size});
        });
    });
}

OV_PRODUCER_EXPORT GCWritePortStacked(GenTL::PORT_HANDLE hPort,
                                      GenTL::PORT_REGISTER_STACK_ENTRY* pEntries,
                                      size_t* piNumEntries) {
    return ServeOn<PortObject>(Function::GCWritePortStacked, hPort, [&](const PortObject& object) {
        RunStack(pEntries, piNumEntries, [&](const GenTL::PORT_REGISTER_STACK_ENTRY& entry) {
            object.GetPort().Write(entry.Address,
                                   {static_cast<const std::byte*>(entry.pBuffer), entry.Size});
        });
    });
}

OV_PRODUCER_EXPORT GCGetPortURL(GenTL::PORT_HANDLE hPort, char* sURL, size_t* piSize) {
    return ServeOn<PortObject>(Function::GCGetPortURL, hPort, [&](const PortObject& object) {
        std::vector<std::string> urls;
        for (const DescriptionUrl& url : object.GetPort().Urls()) {
            urls.push_back(url.url);
        }
        Answer(Function::GCGetPortURL, InfoValue::TextList(urls), {nullptr, sURL, piSize});
    });
}

OV_PRODUCER_EXPORT GCGetNumPortURLs(GenTL::PORT_HANDLE hPort, uint32_t* piNumURLs) {
    return ServeOn<PortObject>(Function::GCGetNumPortURLs, hPort, [&](const PortObject& object) {
        Put(piNumURLs, object.GetPort().Urls().size());
    });
}

OV_PRODUCER_EXPORT GCGetPortURLInfo(GenTL::PORT_HANDLE hPort, uint32_t iURLIndex,
                                    GenTL::URL_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL) {
    return ServeInfo<PortObject>(
        Function::GCGetPortURLInfo, hPort, iInfoCmd, {piType, pBuffer, piSize},
        [&](const PortObject& object) { return object.GetPort().UrlInfo(iURLIndex, iInfoCmd); });
}

OV_PRODUCER_EXPORT GCGetPortInfo(GenTL::PORT_HANDLE hPort, GenTL::PORT_INFO_CMD iInfoCmd,
                                 OV_GENTL_INFO_TAIL) {
    return ServeInfo<PortObject>(
        Function::GCGetPortInfo, hPort, iInfoCmd, {piType, pBuffer, piSize},
        [&](const PortObject& object) { return object.GetPort().Info(iInfoCmd); });
}
