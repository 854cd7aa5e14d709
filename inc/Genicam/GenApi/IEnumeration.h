#pragma once

#include "GenApi/IEnumEntry.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API IEnumeration : virtual public IValue {
    /// The symbolics of the entries that can be chosen now, in order.
    virtual void GetSymbolics(gcstring_vector& symbolics) = 0;
    /// All entries.
    virtual void GetEntries(node_vector& entries) = 0;
    virtual IEnumeration& operator=(const gcstring& symbolic) = 0;
    virtual void SetIntValue(int64_t value, bool verify = true) = 0;
    virtual gcstring operator*() = 0;
    virtual int64_t GetIntValue(bool verify = false, bool ignoreCache = false) = 0;
    /// Null when there is none.
    virtual IEnumEntry* GetEntryByName(const gcstring& symbolic) = 0;
    /// Null when there is none.
    virtual IEnumEntry* GetEntry(int64_t value) = 0;
    /// Null when the device holds a value that has no entry.
    virtual IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) = 0;
};

}  // namespace GenApi_3_0_ORVANE
