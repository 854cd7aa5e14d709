#include "TLClassLoadTL/CtiRetrival.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>

#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

constexpr const char* kPathUnknown = "Failed to get the liboviapi.so library path";

bool Exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace

std::vector<std::string> CCtiRetrival::GetCtiListFromGenTLEnv(
    const std::vector<std::string>& names) {
    return __GetFilePath(names, __GetTLDirectoryPath());
}

std::vector<std::string> CCtiRetrival::__GetTLDirectoryPath() {
    // A text that an earlier call left would be taken for a failure of this one.
    dlerror();
    Dl_info info{};
    const int found = dladdr(reinterpret_cast<const void*>(&__GetTLDirectoryPath), &info);
    if (found == 0 || info.dli_fname == nullptr || dlerror() != nullptr) {
        OV_RAISE(CUnexpectedError, kPathUnknown);
    }
    std::array<char, PATH_MAX> resolved{};
    // Producers lie beside the file, and applications load the library through a link.
    if (realpath(info.dli_fname, resolved.data()) == nullptr) {
        OV_RAISE(CUnexpectedError, kPathUnknown);
    }
    const std::string path = resolved.data();
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        OV_RAISE(CUnexpectedError, "The liboviapi.so library path is invalid");
    }
    return {path.substr(0, slash)};
}

std::vector<std::string> CCtiRetrival::__GetFilePath(const std::vector<std::string>& names,
                                                     const std::vector<std::string>& folders) {
    std::vector<std::string> paths;
    for (const std::string& name : names) {
        for (const std::string& folder : folders) {
            std::string path = folder;
            path.append("/").append(name);
            if (Exists(path)) {
                paths.push_back(std::move(path));
                break;
            }
        }
    }
    // One missing producer is normal: not every machine needs all transports.
    if (paths.empty()) {
        OV_RAISE(CNotFoundTLError, "Not found TL library");
    }
    return paths;
}

}  // namespace OVTLClass
