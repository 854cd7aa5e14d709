#include "TLClassEvent/CallbackScope.h"

#include "Base/EachFrame.h"

namespace OVTLClass {

namespace {

// The scopes of a thread are a list through its stack: no memory, no lock.
thread_local const CCallbackScope* t_innermost = nullptr;

}  // namespace

OV_EACH_FRAME CCallbackScope::CCallbackScope(CallbackKind kind, const void* camera)
    : m_outer(t_innermost), m_kind(kind), m_camera(camera), m_call(camera) {
    t_innermost = this;
}

OV_EACH_FRAME CCallbackScope::~CCallbackScope() {
    t_innermost = m_outer;
}

bool CCallbackScope::IsInside(CallbackKind kind, const void* camera) {
    for (const CCallbackScope* scope = t_innermost; scope != nullptr; scope = scope->m_outer) {
        if (scope->m_kind == kind && scope->m_camera == camera) {
            return true;
        }
    }
    return false;
}

bool CCallbackScope::IsInsideAny() {
    return t_innermost != nullptr;
}

}  // namespace OVTLClass
