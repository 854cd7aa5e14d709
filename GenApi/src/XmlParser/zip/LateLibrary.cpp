#include "zip/LateLibrary.h"

#include <dlfcn.h>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The address, which the system must have found.
void* Found(void* address) {
    if (address == nullptr) {
        RUNTIME_EXCEPTION("Library is missing or another one: %s", dlerror());
    }
    return address;
}

}  // namespace

CLateLibrary::CLateLibrary(const char* fileName)
    : m_pLibrary(Found(dlopen(fileName, RTLD_NOW | RTLD_LOCAL))) {}

void* CLateLibrary::Address(const char* name) const {
    return Found(dlsym(m_pLibrary, name));
}

}  // namespace GenApi_3_0_ORVANE
