// Calls that would wait for the end of a callback are refused in that callback: the
// thread would wait for itself.

#include "errors/CallbackCheck.h"

#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

using namespace OVTLClass;

namespace {

const char* NameOf(CallbackKind kind) {
    switch (kind) {
        case CallbackKind::Capture:
            return "capture";
        case CallbackKind::Event:
            return "event";
        case CallbackKind::Offline:
            return "offline";
        default:
            return "feature";
    }
}

}  // namespace

void CheckNotInCallback(const IDevice& camera, const char* what,
                        std::initializer_list<CallbackKind> kinds, const OvPlace& place) {
    for (const CallbackKind kind : kinds) {
        if (CCallbackScope::IsInside(kind, &camera)) {
            OV_RAISE_AT(CInvalidCallError, place,
                        COvString::MsgComposer("Can't %s in %s callback", what, NameOf(kind)));
        }
    }
}
