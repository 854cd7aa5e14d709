// References to texts. A constant can be changed: it is the value of the node that has it.

#include "core/PolySource.h"

namespace GenApi_3_0_ORVANE {

CStringPolyRef& CStringPolyRef::operator=(INodePrivate* node) {
    if (!SetPointer(node)) {
        RUNTIME_EXCEPTION("CStringPolyRef::operator(IBase*) : pointer is not IString*");
    }
    return *this;
}

gcstring CStringPolyRef::GetValue(bool verify, bool ignoreCache) const {
    return std::visit(
        By{[](std::monostate) -> gcstring { ThrowUninitialized("CStringPolyRef::GetValue()"); },
           [](const gcstring& value) { return value; },
           [&](IString* source) { return source->GetValue(verify, ignoreCache); }},
        m_Source);
}

void CStringPolyRef::SetValue(const gcstring& value, bool verify) {
    std::visit(By{[](std::monostate) { ThrowUninitialized("CStringPolyRef::SetValue()"); },
                  [&](gcstring& constant) { constant = value; },
                  [&](IString* source) { source->SetValue(value, verify); }},
               m_Source);
}

int64_t CStringPolyRef::GetMaxLength() const {
    return std::visit(
        By{[](std::monostate) -> int64_t { ThrowUninitialized("CStringPolyRef::GetMaxLength()"); },
           [](const gcstring& value) { return static_cast<int64_t>(value.size()); },
           [](IString* source) { return source->GetMaxLength(); }},
        m_Source);
}

bool CStringPolyRef::IsValueCacheValid() const {
    return std::visit(By{[](std::monostate) -> bool {
                             ThrowUninitialized("CStringPolyRef::IsValueCacheValid()");
                         },
                         [](const gcstring&) { return true; },
                         [](IString* source) { return CacheValidOf(source); }},
                      m_Source);
}

ECachingMode CStringPolyRef::GetCachingMode() const {
    return std::visit(By{[](std::monostate) -> ECachingMode {
                             ThrowUninitialized("CStringPolyRef::GetCachingMode()");
                         },
                         [](const gcstring&) { return WriteThrough; },
                         [](IString* source) { return CachingModeOf(source); }},
                      m_Source);
}

}  // namespace GenApi_3_0_ORVANE
