#pragma once

#include <unordered_map>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// What was last read from or written to a port, by address. Registers of one
/// address share an entry, whose size is that of the first. Has a lock of its
/// own, which is taken inside the map's and held only to copy bytes.
class CValueCache {
public:
    void InvalidateValue(int64_t address);
    void InvalidateAll();
    bool IsValueValid(int64_t address, int64_t size);
    void SetValue(int64_t address, int64_t size, const uint8_t* bytes);
    /// RuntimeException without an entry.
    void GetValue(int64_t address, int64_t size, uint8_t* bytes);
    /// Copies when there is a valid entry of exactly `entrySize` bytes.
    bool TryGetValue(int64_t address, int64_t entrySize, int64_t size, uint8_t* bytes);

private:
    struct Entry {
        bool valid = false;
        std::vector<uint8_t> bytes;
    };

    CLock m_Lock;
    std::unordered_map<int64_t, Entry> m_Entries;
};

}  // namespace GenApi_3_0_ORVANE
