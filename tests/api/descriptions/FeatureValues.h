#pragma once
/// Whether features have values that they may have.

#include "Base/GCException.h"
#include "GenApi/IValue.h"

/// Whether a call returns true. A call that throws doesn't.
template <class Call>
bool Holds(const Call& call) {
    try {
        return call();
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        return false;
    }
}

/// Makes a call that may throw.
template <class Call>
void Try(const Call& call) {
    Holds([&] {
        call();
        return true;
    });
}

/// Whether the feature's value, if it can be read, has a text.
bool IsShown(GenApi_3_0_ORVANE::IValue& value);

/// Whether the feature's value, if it can be read, is one that a client may write.
bool IsLegal(GenApi_3_0_ORVANE::IValue& value);

/// Sets a feature to its first legal value, as a client would.
void SetToFirst(GenApi_3_0_ORVANE::IValue& value);
