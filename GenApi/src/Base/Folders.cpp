// The folders that a program may set, and the environment variables that apply where it doesn't.

#include <string>

#include "Base/Environment.h"
#include "Base/GCException.h"
#include "Base/Lock.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// What a program has set, the variable for when it has set nothing, and the failure's text for
/// when neither is there.
struct Folder {
    const char* variable;
    const char* message;
    gcstring value;
};

/// Made at the first call: a host may set a folder while static objects are still being
/// constructed. The message is a whole for each, so that a user finds in it what to do.
Folder& CacheFolder() {
    static Folder folder{"GENICAM_CACHE_V3_0",
                         "GenICam cache folder not set. Call SetGenICamCacheFolder(path) or set "
                         "the environment variable GENICAM_CACHE_V3_0",
                         {}};
    return folder;
}

Folder& LogConfig() {
    static Folder folder{"GENICAM_LOG_CONFIG_V3_0",
                         "GenICam log config not set. Call SetGenICamLogConfig(path) or set the "
                         "environment variable GENICAM_LOG_CONFIG_V3_0",
                         {}};
    return folder;
}

Folder& CLProtocolFolder() {
    static Folder folder{"GENICAM_CLPROTOCOL",
                         "GenICam CLProtocol folder not set. Call "
                         "SetGenICamCLProtocolFolder(path) or set the environment variable "
                         "GENICAM_CLPROTOCOL",
                         {}};
    return folder;
}

/// One lock for all: they are set once at the start of a program.
CLock& FolderLock() {
    static CLock lock(OvBase::LockRank::Folders);
    return lock;
}

void Set(Folder& folder, const gcstring& value) {
    const AutoLock lock(FolderLock());
    folder.value = value;
}

/// The variable is read each time: a program may change its own environment.
gcstring Get(const Folder& folder) {
    {
        const AutoLock lock(FolderLock());
        if (!folder.value.empty()) {
            return folder.value;
        }
    }
    // The environment is read without the lock, which guards only our own values.
    gcstring value;
    if (!GetValueOfEnvironmentVariable(folder.variable, value)) {
        RUNTIME_EXCEPTION("%s", folder.message);
    }
    const size_t length = value.size();
    // Callers append a separator and a name. What a host sets is its own business;
    // variables are typed by people.
    const bool endsInSeparator =
        length > 0 && (value.c_str()[length - 1] == '/' || value.c_str()[length - 1] == '\\');
    return endsInSeparator ? value.substr(0, length - 1) : value;
}

}  // namespace

void SetGenICamCacheFolder(const gcstring& folder) {
    Set(CacheFolder(), folder);
}

gcstring GetGenICamCacheFolder() {
    return Get(CacheFolder());
}

void SetGenICamLogConfig(const gcstring& file) {
    Set(LogConfig(), file);
}

gcstring GetGenICamLogConfig() {
    return Get(LogConfig());
}

void SetGenICamCLProtocolFolder(const gcstring& folder) {
    Set(CLProtocolFolder(), folder);
}

gcstring GetGenICamCLProtocolFolder() {
    return Get(CLProtocolFolder());
}

}  // namespace GenICam_3_0_ORVANE
