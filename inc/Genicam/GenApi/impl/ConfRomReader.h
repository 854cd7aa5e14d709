#pragma once
/// Reads the Configuration ROM of a camera on an IEEE 1394 bus.

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace GenApi_3_0_ORVANE {

/// What has been found in a ROM, by key.
struct ConfRomEntries {
    std::map<uint32_t, int64_t> integers;
    std::map<uint32_t, std::string> texts;

    bool Holds(uint32_t key) const { return integers.contains(key) || texts.contains(key); }
};

/// One image of a ROM. Whatever the image says, nothing beyond it is read, and
/// directories that lead to one another are followed as deep as the format is:
/// root, unit, unit-dependent.
class ConfRomReader {
public:
    /// So much of the ROM tells which unit it belongs to.
    static constexpr size_t kHeadBytes = 20;

    explicit ConfRomReader(std::vector<uint8_t> image) : m_Image(std::move(image)) {}

    /// The unit's own number on all buses. RuntimeException for a ROM of another
    /// bus.
    uint64_t UnitIdentifier() const;
    /// Looks a key up in the root, and then in the directories of the units of
    /// the given specifier. RuntimeException for a ROM that points outside of
    /// itself or has a directory where a value is wanted.
    void Find(uint32_t key, uint32_t unitSpecifier, ConfRomEntries& entries) const;

private:
    /// A place in the ROM, counted in quadlets.
    using Place = size_t;
    struct Entry {
        Place place;
        uint32_t key;
        uint32_t value;

        /// Where an offset leads.
        Place Target() const { return place + value; }
    };

    uint32_t Quadlet(Place place) const;
    void CheckAddressRange(Place place, size_t quadlets) const;
    Place RootDirectory() const;
    std::vector<Entry> Directory(Place place) const;
    bool ParseDirectory(Place place, uint32_t key, ConfRomEntries& entries) const;
    void TakeEntry(const Entry& entry, const Entry* next, ConfRomEntries& entries) const;
    void TakeDescriptorOf(uint32_t key, const Entry& descriptor, ConfRomEntries& entries) const;
    void ParseDescriptor(Place leaf, uint32_t key, ConfRomEntries& entries) const;
    bool ParseUnitDirectory(Place place, uint32_t key, ConfRomEntries& entries) const;
    bool IsUnitOf(Place place, uint32_t unitSpecifier) const;

    std::vector<uint8_t> m_Image;
};

}  // namespace GenApi_3_0_ORVANE
