#include "TLClassInfo/ModuleID.h"

#include <cstring>

namespace OVTLClass {

std::string CModuleID::GetID() {
    const size_t size = __GetIDLength();
    return size == 0 ? std::string() : __GetIDContent(size);
}

size_t CModuleID::__GetIDLength() {
    size_t size = 0;
    return __GetID(nullptr, &size) == 0 ? size : 0;
}

std::string CModuleID::__GetIDContent(size_t size) {
    std::string id(size, '\0');
    size_t given = size;
    if (__GetID(id.data(), &given) != 0) {
        return {};
    }
    id.resize(strnlen(id.data(), size));
    return id;
}

}  // namespace OVTLClass
