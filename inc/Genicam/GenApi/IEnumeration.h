#pragma once

#include "GenApi/IEnumEntry.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// A node whose value is one of several entries.
struct OV_ENGINE_API IEnumeration : virtual public IValue {
    /// Returns the symbolic names of the entries that can be chosen at present, in the order
    /// of the description.
    virtual void GetSymbolics(gcstring_vector& symbolics) = 0;
    /// Returns all entries, also those that can't be chosen. They belong to the map.
    virtual void GetEntries(node_vector& entries) = 0;
    /// Chooses an entry by its symbolic name, with verification.
    /// @throws InvalidArgumentException if no entry has the name
    virtual IEnumeration& operator=(const gcstring& symbolic) = 0;
    /// Chooses an entry by its number.
    /// @throws InvalidArgumentException if no entry has the number,
    ///         AccessException if the node isn't writable
    virtual void SetIntValue(int64_t value, bool verify = true) = 0;
    /// Returns the symbolic name of the chosen entry.
    virtual gcstring operator*() = 0;
    /// Returns the number of the chosen entry.
    /// @throws AccessException if the node isn't readable
    virtual int64_t GetIntValue(bool verify = false, bool ignoreCache = false) = 0;
    /// Returns the entry with that symbolic name; null if there is none.
    virtual IEnumEntry* GetEntryByName(const gcstring& symbolic) = 0;
    /// Returns the entry with that number; null if there is none.
    virtual IEnumEntry* GetEntry(int64_t value) = 0;
    /// Returns the chosen entry; null if the device has a number that no entry has.
    virtual IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) = 0;
};

}  // namespace GenApi_3_0_ORVANE
