// Where a node is documented: a text of the description with macros for the reader's program,
// system and camera, and for the values of other nodes. So a maker's web page can show what fits
// exactly this camera.

#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <string>
#include <string_view>

#include "Base/Environment.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/IValue.h"
#include "GenApi/Version.h"
#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The value of a macro may hold a macro that leads back to it. This ends such a text.
constexpr int kMaxReplacements = 1000;

std::string Joined(const Version_t& version) {
    return std::to_string(version.Major) + "." + std::to_string(version.Minor) + "." +
           std::to_string(version.SubMinor);
}

std::string GenApiVersion(IDeviceInfo& info) {
    Version_t version;
    uint16_t build = 0;
    info.GetGenApiVersion(version, build);
    return Joined(version);
}

std::string SchemaVersion(IDeviceInfo& info) {
    Version_t version;
    info.GetSchemaVersion(version);
    return Joined(version);
}

std::string DeviceVersion(IDeviceInfo& info) {
    Version_t version;
    info.GetDeviceVersion(version);
    return Joined(version);
}

/// The file name of the running program; empty if the system doesn't say.
std::string Application() {
    std::array<char, PATH_MAX> path;
    const std::string link = "/proc/" + std::to_string(getpid()) + "/exe";
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    const std::string target(path.data(), length < 0 ? 0 : static_cast<size_t>(length));
    return target.substr(target.rfind('/') + 1);
}

std::string OperatingSystem() {
    utsname system{};
    if (uname(&system) != 0) {
        return {};
    }
    return std::string(system.sysname) + "_" + system.nodename + "_" + system.release + "_" +
           system.version + "_" + system.machine;
}

std::string Language() {
    gcstring language;
    GenICam_3_0_ORVANE::GetValueOfEnvironmentVariable("LANG", language);
    return language.c_str();
}

/// A macro that the map or the system replaces.
struct SystemMacro {
    std::string_view name;
    std::string (*replacement)(IDeviceInfo& info);
};

constexpr SystemMacro kSystemMacros[] = {
    {"Sys::VendorName",
     [](IDeviceInfo& info) -> std::string { return info.GetVendorName().c_str(); }},
    {"Sys::ModelName",
     [](IDeviceInfo& info) -> std::string { return info.GetModelName().c_str(); }},
    {"Sys::StandardNamespace",
     [](IDeviceInfo& info) -> std::string { return info.GetStandardNameSpace().c_str(); }},
    {"Sys::GenApiVersion", &GenApiVersion},
    {"Sys::SchemaVersion", &SchemaVersion},
    {"Sys::DeviceVersion", &DeviceVersion},
    {"Sys::Application", [](IDeviceInfo&) { return Application(); }},
    {"Sys::OperatingSystem", [](IDeviceInfo&) { return OperatingSystem(); }},
    {"Sys::Language", [](IDeviceInfo&) { return Language(); }},
};

/// The value of another node as text. A node that is missing or can't be read must not keep the
/// reader from the rest of the page's address.
std::string ValueOf(INode* node) {
    auto* const value = dynamic_cast<IValue*>(node);
    if (value == nullptr || !IsReadable(value->GetAccessMode())) {
        return "Unknown";
    }
    return value->ToString().c_str();
}

std::string Replacement(std::string_view name, INodePrivate& node, INodeMap& map) {
    if (name == "Sys::NodeName") {
        return node.InternalGetName().c_str();
    }
    for (const SystemMacro& macro : kSystemMacros) {
        if (macro.name == name) {
            return macro.replacement(dynamic_cast<IDeviceInfo&>(map));
        }
    }
    return ValueOf(map.GetNode(gcstring(name.data(), name.size())));
}

}  // namespace

/// A replacement is searched for macros again, as its text may come from a node whose value holds
/// some.
gcstring CNodeImpl::InternalGetDocuURL() {
    std::string text(m_DocuURL);
    for (int i = 0; i < kMaxReplacements; ++i) {
        const size_t begin = text.find("$(");
        const size_t end = text.find(')', begin);
        if (begin == std::string::npos || end == std::string::npos) {
            break;
        }
        const std::string name = text.substr(begin + 2, end - begin - 2);
        text.replace(begin, end - begin + 1, Replacement(name, *this, GetMap()));
    }
    return text.c_str();
}

}  // namespace GenApi_3_0_ORVANE
