#pragma once
/// Reads the Configuration ROM of a camera on an IEEE 1394 bus.

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace GenApi_3_0_ORVANE {

/// What was found in a ROM, by key.
struct ConfRomEntries {
    std::map<uint32_t, int64_t> integers;
    std::map<uint32_t, std::string> texts;

    bool IsEmpty() const { return integers.empty() && texts.empty(); }
    bool Holds(uint32_t key) const { return integers.contains(key) || texts.contains(key); }
};

/// Reads one image of a ROM, which the caller keeps. Whatever the image says, nothing beyond it
/// is read, directories that lead to one another are followed only as deep as the format is
/// (root, unit, unit-dependent), and none is searched twice for the same key however many entries
/// lead there.
class ConfRomReader {
public:
    /// The part of the ROM that identifies its unit.
    static constexpr size_t kHeadBytes = 20;

    explicit ConfRomReader(std::span<const uint8_t> image) : m_Image(image) {}

    /// Returns the number that identifies the unit on every bus.
    /// @throws RuntimeException for a ROM of another bus
    uint64_t UnitIdentifier() const;
    /// Looks a key up in the root, and then in the directories of the units with that specifier.
    /// @throws RuntimeException for a ROM with an address outside of itself, or with a directory
    ///         in the place of a value
    void Find(uint32_t key, uint32_t unitSpecifier, ConfRomEntries& entries) const;

private:
    /// A place in the ROM, counted in quadlets.
    using Place = size_t;
    struct Entry {
        Place place;
        uint32_t key;
        uint32_t value;

        /// Returns where an offset leads.
        Place Target() const { return place + value; }
    };

    uint32_t Quadlet(Place place) const;
    void CheckAddressRange(Place place, size_t quadlets) const;
    Place RootDirectory() const;
    std::vector<Entry> Directory(Place place) const;

    /// Each looks for the key and returns whether it is there.
    bool ParseRootDirectory(Place root, uint32_t key, ConfRomEntries& entries) const;
    bool LocateUnitDirectory(Place root, uint32_t key, uint32_t unitSpecifier,
                             ConfRomEntries& entries) const;
    bool ParseUnitDirectory(Place directory, uint32_t key, std::set<Place>& searched,
                            ConfRomEntries& entries) const;
    bool ParseUnitDependentDirectory(Place directory, uint32_t key, ConfRomEntries& entries) const;
    bool ParseDirectory(Place directory, uint32_t key, ConfRomEntries& entries) const;

    bool IsUnitOf(Place directory, uint32_t unitSpecifier) const;
    void TakeEntry(const Entry& entry, const Entry* next, ConfRomEntries& entries) const;
    void TakeDescriptorOf(uint32_t key, const Entry& descriptor, ConfRomEntries& entries) const;
    /// Whether the leaf is a text that can be taken.
    bool ParseDescriptor(Place leaf, uint32_t key, ConfRomEntries& entries) const;

    std::span<const uint8_t> m_Image;
};

}  // namespace GenApi_3_0_ORVANE
