// The bytes known of a port, by address and length, and who has made values of them.
//
// Registers of real cameras overlap: a structure and its fields, or one address with several
// lengths. A write to one must make all others forget. So the table is ordered by address within
// classes of lengths: an entry of a class can begin at most its class's length before a byte that
// it holds, which bounds the search for overlaps to a few neighbours in each of at most 64
// classes.

#include "ports/ValueCache.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace GenApi_3_0_ORVANE {

namespace {

/// The last byte of a range. Addresses use all 64 bits; a range that would pass their end ends
/// there.
uint64_t LastOf(uint64_t first, int64_t length) {
    const uint64_t distance = static_cast<uint64_t>(length) - 1;
    return first > std::numeric_limits<uint64_t>::max() - distance
               ? std::numeric_limits<uint64_t>::max()
               : first + distance;
}

}  // namespace

/// A read past the cache that finds the same bytes need not make anybody forget.
bool CValueCache::Entry::DiffersFrom(const uint8_t* bytes) const {
    return m_IsValid && !std::equal(m_Bytes.begin(), m_Bytes.end(), bytes);
}

void CValueCache::Entry::Store(const uint8_t* bytes) {
    m_Bytes.assign(bytes, bytes + m_Length);
    m_IsValid = true;
}

/// Clients may read the first bytes of a register only.
void CValueCache::Entry::Load(uint8_t* bytes, int64_t length) const {
    std::copy_n(m_Bytes.begin(), std::min(length, m_Length), bytes);
}

void CValueCache::Entry::RemoveUser(IBytesUser& user) {
    // From the back: the latest user is the one removed most often, before it writes.
    const auto found = std::find(m_Users.rbegin(), m_Users.rend(), &user);
    if (found != m_Users.rend()) {
        *found = m_Users.back();
        m_Users.pop_back();
    }
}

/// The exponent of the next power of two: lengths of one class differ by a factor of two at most.
unsigned CValueCache::ClassOf(int64_t length) {
    return length <= 1 ? 0
                       : static_cast<unsigned>(std::bit_width(static_cast<uint64_t>(length) - 1));
}

/// Entries stay once they exist: their addresses in memory are kept by registers and by lists of
/// overlaps, and there are no more than the registers have places.
CValueCache::Entry& CValueCache::GetEntry(int64_t address, int64_t length) {
    const auto first = static_cast<uint64_t>(address);
    const unsigned lengthClass = ClassOf(length);
    const auto [found, isNew] = m_Entries.try_emplace({lengthClass, first, length});
    Entry& entry = found->second;
    if (isNew) {
        entry.m_First = first;
        entry.m_Last = length == 0 ? first : LastOf(first, length);
        entry.m_Length = length;
        m_Classes |= uint64_t{1} << lengthClass;
    }
    return entry;
}

/// Visits only classes that have entries. Within a class the search begins as far before the
/// range as an entry of that class can reach, and ends with the first entry after the range.
template <class Use>
void CValueCache::ForEachOverlapping(uint64_t first, uint64_t last, const Use& use) {
    for (uint64_t classes = m_Classes; classes != 0; classes &= classes - 1) {
        const auto lengthClass = static_cast<unsigned>(std::countr_zero(classes));
        const uint64_t reach = (uint64_t{1} << lengthClass) - 1;
        const uint64_t begin = first - std::min(first, reach);
        for (auto found = m_Entries.lower_bound({lengthClass, begin, 0});
             found != m_Entries.end() && found->first.lengthClass == lengthClass &&
             found->first.first <= last;
             ++found) {
            if (found->second.m_Last >= first) {
                use(found->second);
            }
        }
    }
}

/// Users are no users any more from here on. They become users again when they next make a value
/// of the bytes.
void CValueCache::ForgetOne(Entry& entry, CInvalidationQueue& queue) {
    entry.m_IsValid = false;
    for (IBytesUser* const user : entry.m_Users) {
        queue.AddUser(*user);
    }
    entry.m_Users.clear();
}

/// The overlaps of an entry change only when entries are added, so their list is kept for the
/// next write of the same register, which is the usual one.
void CValueCache::Forget(Entry& entry, CInvalidationQueue& queue) {
    if (entry.m_NumEntriesThen != m_Entries.size()) {
        entry.m_Overlapping.clear();
        ForEachOverlapping(entry.m_First, entry.m_Last,
                           [&](Entry& other) { entry.m_Overlapping.push_back(&other); });
        entry.m_NumEntriesThen = m_Entries.size();
    }
    for (Entry* const other : entry.m_Overlapping) {
        ForgetOne(*other, queue);
    }
}

/// For writes whose register isn't known: of a client, of a list, or of a register without a
/// cache.
void CValueCache::ForgetRange(int64_t address, int64_t length, CInvalidationQueue& queue) {
    if (length <= 0) {
        return;
    }
    const auto first = static_cast<uint64_t>(address);
    ForEachOverlapping(first, LastOf(first, length),
                       [&](Entry& entry) { ForgetOne(entry, queue); });
}

/// No users are called: all registers of a port depend on the port, which is what has become
/// invalid.
void CValueCache::InvalidateAll() {
    for (auto& [key, entry] : m_Entries) {
        entry.m_IsValid = false;
    }
}

}  // namespace GenApi_3_0_ORVANE
