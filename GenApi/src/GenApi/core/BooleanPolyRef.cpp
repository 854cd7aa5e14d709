// References to truth values, the conditions of access modes above all. Any number other than zero
// is true.

#include "core/PolySource.h"

namespace GenApi_3_0_ORVANE {

CBooleanPolyRef& CBooleanPolyRef::operator=(INodePrivate* node) {
    if (!SetPointer(node)) {
        RUNTIME_EXCEPTION(
            "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, "
            "IEnumeration*, nor IBoolean*");
    }
    return *this;
}

bool CBooleanPolyRef::GetValue(bool verify, bool ignoreCache) const {
    return std::visit(
        By{[](std::monostate) -> bool { ThrowUninitialized("CBooleanPolyRef::GetValue()"); },
           [](bool value) { return value; },
           [&](IInteger* source) { return source->GetValue(verify, ignoreCache) != 0; },
           [&](IEnumeration* source) { return source->GetIntValue(verify, ignoreCache) != 0; },
           [&](IBoolean* source) { return source->GetValue(verify, ignoreCache); }},
        m_Source);
}

ECachingMode CBooleanPolyRef::GetCachingMode() const {
    return std::visit(
        By{[](std::monostate) -> ECachingMode {
               ThrowUninitialized("CBooleanPolyRef::GetCachingMode()");
           },
           [](bool) { return WriteThrough; }, [](auto* source) { return CachingModeOf(source); }},
        m_Source);
}

}  // namespace GenApi_3_0_ORVANE
