#include "TLClassInfo/ModuleID.h"

#include "TLClassLoadTL/GenTLText.h"

namespace OVTLClass {

std::string CModuleID::GetID() {
    const size_t size = __GetIDLength();
    // No room even for the end of a text: the producer has none.
    return size == 0 ? std::string() : __GetIDContent(size);
}

size_t CModuleID::__GetIDLength() {
    size_t size = 0;
    return __GetID(nullptr, &size) == 0 ? size : 0;
}

std::string CModuleID::__GetIDContent(size_t size) {
    const auto call = [this](char* text, size_t* given) { return __GetID(text, given); };
    std::string id;
    TryReadGenTLContent(call, size, id);
    return id;
}

}  // namespace OVTLClass
