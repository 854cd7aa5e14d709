#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "core/InvalidationQueue.h"

namespace GenApi_3_0_ORVANE {

/// What was last read from or written to a port, by address and length, and who has made a value
/// of it. The lock of the port's map guards all of it.
class CValueCache {
public:
    /// A range of bytes that a register has used. It stays in the same place as long as the
    /// cache, valid or not.
    class Entry {
    public:
        bool IsAt(int64_t address, int64_t length) const {
            return m_First == static_cast<uint64_t>(address) && m_Length == length;
        }
        int64_t GetAddress() const { return static_cast<int64_t>(m_First); }
        bool IsValid() const { return m_IsValid; }
        /// Whether it is valid and holds other bytes.
        bool DiffersFrom(const uint8_t* bytes) const;
        /// Keeps as many bytes as its length says.
        void Store(const uint8_t* bytes);
        /// Copies the first bytes of a valid entry.
        void Load(uint8_t* bytes, int64_t length) const;
        /// Registers a user, whose ForgetBytes is called when the bytes are forgotten.
        void AddUser(IBytesUser& user) { m_Users.push_back(&user); }
        void RemoveUser(IBytesUser& user);

    private:
        friend class CValueCache;

        uint64_t m_First = 0;
        uint64_t m_Last = 0;
        int64_t m_Length = 0;
        bool m_IsValid = false;
        std::vector<uint8_t> m_Bytes;
        std::vector<IBytesUser*> m_Users;
        /// The entries that share bytes with this one, with itself, as long as the cache has no
        /// more entries than when they were searched.
        std::vector<Entry*> m_Overlapping;
        size_t m_NumEntriesThen = 0;
    };

    /// Returns the entry of a range, after making it at the first call. A new entry isn't valid.
    Entry& GetEntry(int64_t address, int64_t length);
    /// Makes the entry and all that overlap with it invalid. Their users go to the queue, and are
    /// no users any more.
    void Forget(Entry& entry, CInvalidationQueue& queue);
    /// The same for all entries that have a byte of the range.
    void ForgetRange(int64_t address, int64_t length, CInvalidationQueue& queue);
    /// Makes all entries invalid and leaves their users alone: for a port, on which all its
    /// registers depend.
    void InvalidateAll();

private:
    /// Lengths from above one power of two up to the next are one class. An entry of a class
    /// begins at most that power before any of its bytes, so that one search in each class finds
    /// all entries that hold a byte.
    struct Key {
        unsigned lengthClass = 0;
        uint64_t first = 0;
        int64_t length = 0;
        // The linter takes the comparison that this makes for one with a pointer.
        // NOLINTNEXTLINE(modernize-use-nullptr)
        auto operator<=>(const Key&) const = default;
    };

    static unsigned ClassOf(int64_t length);
    /// Calls `use` with each entry that has a byte from the first to the last.
    template <class Use>
    void ForEachOverlapping(uint64_t first, uint64_t last, const Use& use);
    static void ForgetOne(Entry& entry, CInvalidationQueue& queue);

    std::map<Key, Entry> m_Entries;
    /// A bit for each class that has entries.
    uint64_t m_Classes = 0;
};

}  // namespace GenApi_3_0_ORVANE
