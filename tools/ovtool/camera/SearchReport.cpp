#include "camera/SearchReport.h"

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "camera/GenTLProducer.h"
#include "support/Error.h"

namespace {

std::string Interfaces(const GenTLProducer& producer) {
    constexpr uint32_t kTimeout = 1000;
    std::string names;
    producer.ForEachInterface(kTimeout, [&](GenTL::IF_HANDLE iface) {
        const Json name = producer.Text([&](auto* type, void* buffer, size_t* size) {
            return producer.IFGetInfo(iface, GenTL::INTERFACE_INFO_DISPLAYNAME, type, buffer, size);
        });
        names += names.empty() ? "" : ", ";
        names += name.is_null() ? "an interface without a name" : name.get<std::string>();
    });
    return names.empty() ? "has no interface to search" : "searches " + names;
}

std::string StateOf(const std::string& path) {
    if (access(path.c_str(), F_OK) != 0) {
        return "not there";
    }
    try {
        return "loaded, " + Interfaces(GenTLProducer(path));
    } catch (const ToolError& error) {
        return error.what();
    }
}

}  // namespace

std::string SearchReport() {
    const std::string folder = LibraryFolder();
    std::string text = "Producers are looked for in " + folder + ":";
    for (const char* const name : kProducerFiles) {
        text.append("\n  ").append(name).append(": ").append(
            StateOf(std::string(folder).append("/").append(name)));
    }
    return text.append(
        "\nCheck the camera's cable and power and that its producer is there, then: ovtool list");
}
