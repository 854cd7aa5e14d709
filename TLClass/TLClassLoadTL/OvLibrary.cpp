#include "TLClassLoadTL/OvLibrary.h"

#include <dlfcn.h>

#include "TLClassSupport/OvLog.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

bool COvLibrary::Load(const std::string& path) {
    if (m_handle != nullptr) {
        return false;
    }
    // Lazily: a producer may need libraries for calls that nobody makes.
    m_handle = dlopen(path.c_str(), RTLD_LAZY);
    return m_handle != nullptr;
}

bool COvLibrary::Unload() {
    if (m_handle == nullptr) {
        return true;
    }
    const int result = dlclose(m_handle);
    m_handle = nullptr;
    return result == 0;
}

void* COvLibrary::Find(const char* name) const {
    return m_handle == nullptr ? nullptr : dlsym(m_handle, name);
}

void* COvLibrary::Resolve(const char* name) const {
    void* const address = Find(name);
    if (address == nullptr && m_handle != nullptr) {
        COvLog::GetInstance().WriteLog(
            COvString::MsgComposer("Failed to get ProcAddress %s\n", name));
    }
    return address;
}

}  // namespace OVTLClass
