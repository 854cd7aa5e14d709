#pragma once
/// Which callbacks of which cameras a thread is in.

#include "Base/LockRank.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

/// A feature callback on the thread of the camera's own events is one of `Event`.
enum class CallbackKind { Capture, Event, Offline, Feature };

/// Lives on the stack of the thread that runs a callback, while it runs.
///
/// Calls that are refused in a callback ask this, and don't compare the identities of
/// threads: a write runs feature callbacks on whatever thread writes.
class CCallbackScope : public CUnCopyable {
public:
    CCallbackScope(CallbackKind kind, const void* camera);
    ~CCallbackScope();

    /// Whether the calling thread runs such a callback of that camera, directly or
    /// in what another callback called.
    static bool IsInside(CallbackKind kind, const void* camera);
    /// Whether it runs any callback of any camera.
    static bool IsInsideAny();

private:
    const CCallbackScope* m_outer;
    CallbackKind m_kind;
    const void* m_camera;
    OvBase::CApplicationCall m_call;
};

}  // namespace OVTLClass
