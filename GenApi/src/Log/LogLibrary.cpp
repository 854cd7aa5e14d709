// The logging library of the system, if there is one, and its configuration. Everything that goes
// wrong here leaves a library with a plain configuration: a log must never keep a program from
// running.

#include "LogLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <fstream>
#include <sstream>
#include <string>

#include "Base/Environment.h"
#include "Base/GCException.h"

namespace GenICam_3_0_ORVANE {

namespace {

constexpr const char* kLibraryName = "liblog4cpp_VC120_v3_0_ORVANE.so";
constexpr const char* kResetPattern = "=>%p %x: %c : %m%n";
constexpr const char* kDefaultFile = "/log/config/DefaultLogging.properties";
constexpr const char* kLoggerName = "GenApi.Logging";

/// With the separator at its end; empty if the system doesn't say.
std::string ExecutableFolder() {
    std::array<char, PATH_MAX> path{};
    const std::string link = "/proc/" + std::to_string(getpid()) + "/exe";
    const ssize_t length = readlink(link.c_str(), path.data(), path.size() - 1);
    const std::string file(path.data(), length > 0 ? static_cast<size_t>(length) : 0);
    return file.substr(0, file.rfind('/') + 1);
}

/// About the configuration itself, in a category of its own.
void Say(const CLogBackend& backend, int level, const std::string& line) {
    void* const logger = backend.GetLogger(kLoggerName);
    if (logger != nullptr && backend.IsEnabled(logger, level)) {
        backend.Write(logger, level, line.c_str());
    }
}

void ResetToDefault(const CLogBackend& backend) {
    backend.Reset(kResetPattern);
}

/// The file that the user named; empty if nobody named one.
gcstring UserFile() {
    try {
        gcstring file = GetGenICamLogConfig();
        ReplaceEnvironmentVariables(file);
        return file;
    } catch (const RuntimeException&) {
        return {};
    }
}

/// The default file, three levels above this module.
gcstring DefaultFile() {
    constexpr size_t kLevels = 3;
    const gcstring module =
        GetModulePathFromFunction(reinterpret_cast<void*>(&ConfigureLogLibrary));
    gcstring_vector parts;
    Tokenize(module, parts, "/\\");
    const size_t keep =
        parts.size() > kLevels ? parts.size() - kLevels : parts.size() - (parts.empty() ? 0 : 1);
    gcstring folder;
    for (size_t i = 0; i < keep; ++i) {
        folder += "/" + parts[i];
    }
    return folder + kDefaultFile;
}

/// The user's file, else the default file, else a console.
void Configure(const CLogBackend& backend) {
    const gcstring userFile = UserFile();
    if (!userFile.empty() && ConfigureLogLibraryFromFile(backend, userFile)) {
        return;
    }
    Say(backend, LogInfo,
        "SetGenICamLogConfig(path) not called, and environment variable GENICAM_LOG_CONFIG_V3_0 "
        "not found. Using default logging configuration.");
    if (ConfigureLogLibraryFromFile(backend, DefaultFile())) {
        return;
    }
    Say(backend, LogInfo,
        "Default logger parameter file '$(GENICAM_ROOT)/log/config/DefaultLogging.properties' "
        "not found");
    ResetToDefault(backend);
    Say(backend, LogInfo, "Using default logger configuration");
}

}  // namespace

/// Line by line, so that the last line is ended, too.
bool ConfigureLogLibraryFromFile(const CLogBackend& backend, const gcstring& fileName) {
    std::ifstream file(fileName.c_str());
    if (!file) {
        Say(backend, LogError,
            std::string("Cannot open logger parameter file '") + fileName.c_str() + "'");
        return false;
    }
    Say(backend, LogInfo, std::string("Loading logger parameter file '") + fileName.c_str() + "'");
    std::ostringstream text;
    for (std::string line; std::getline(file, line);) {
        text << line << '\n';
    }
    backend.Configure(text.str().c_str());
    return true;
}

/// The library stays loaded: loggers are used until the end of the process.
const CLogBackend* FindLogLibrary() {
    void* library = dlopen((ExecutableFolder() + kLibraryName).c_str(), RTLD_LAZY);
    // A program may bring its own library.
    if (library == nullptr) {
        library = dlopen(kLibraryName, RTLD_LAZY);
    }
    return library == nullptr ? nullptr
                              : static_cast<const CLogBackend*>(dlsym(library, "Wrapper"));
}

void ConfigureLogLibrary(const CLogBackend& backend) {
    ResetToDefault(backend);
    // Only errors by default. While the library is configured, the lines about that are
    // to be seen, too.
    backend.SetRootLevel(LogError);
    backend.SetRootLevel(LogInfo);
    try {
        Configure(backend);
    } catch (const GenericException& error) {
        ResetToDefault(backend);
        Say(backend, LogInfo,
            std::string("Loading logger configuration failed. error = '") + error.what() + "'");
    }
}

}  // namespace GenICam_3_0_ORVANE
