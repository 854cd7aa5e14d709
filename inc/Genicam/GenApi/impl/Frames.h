#pragma once
/// The frames around every read and every write of a node: lock, entry point, depth counter,
/// callbacks. They exist only here; the typed templates fill in the middle.

#include "node/EntryMethodFinalizer.h"
#include "node/NestingScope.h"

namespace GenApi_3_0_ORVANE {

/// Runs `read` with the map's lock held and the entry point set.
template <class Read>
auto RunRead(CNodeImpl& node, EMethod method, bool ignoreCache, const Read& read) {
    const AutoLock lock(node.GetLock());
    const EntryMethodFinalizer entry(node, method, ignoreCache);
    return read();
}

/// Runs `ask` with the map's lock held, for questions that a node passes on to the next one as
/// they are.
template <class Ask>
auto RunQuestion(CNodeImpl& node, const Ask& ask) {
    const AutoLock lock(node.GetLock());
    const NestingScope nesting(node);
    return ask();
}

/// Runs `check`, then `write` as a counted write, then `finish`, with the map's lock held and the
/// entry point set, for a node without a fault. The outermost write invalidates what depends on
/// it and runs the callbacks, some with the lock held and some after it. A write that fails is
/// counted down all the same, and runs no callbacks.
template <class Check, class Write, class Finish>
void RunWrite(CNodeImpl& node, EMethod method, const Check& check, const Write& write,
              const Finish& finish) {
    CallbackList callbacks;
    {
        const AutoLock lock(node.GetLock());
        const EntryMethodFinalizer entry(node, method);
        node.RequireSound();
        check();
        node.PreSetValue();
        try {
            write();
            node.NoteOwnWrite();
        } catch (...) {
            node.GetCallState().NoteFailedWrite();
            node.PostSetValue(callbacks);
            throw;
        }
        node.PostSetValue(callbacks);
        finish();
        FireCallbacks(callbacks, cbPostInsideLock);
    }
    FireCallbacks(callbacks, cbPostOutsideLock);
}

}  // namespace GenApi_3_0_ORVANE
