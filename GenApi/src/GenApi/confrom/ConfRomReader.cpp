// Reads the Configuration ROM of a camera on an IEEE 1394 bus: directories of entries, each with
// a key of 8 bits and a value of 24. The image comes from a device, so every place in it is
// checked before it is read, and no directory is searched twice.

#include "confrom/ConfRomReader.h"

#include <algorithm>
#include <cstring>

#include "Base/GCException.h"
#include "registers/BigEndian.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The unit of the whole format: words of four bytes, big-endian.
constexpr size_t kQuadletBytes = 4;
constexpr uint32_t kBusName = 0x31333934;  ///< "1394"
/// The bus information has at least its name, its options and the identifier.
constexpr uint32_t kLeastInfoQuadlets = 4;
/// The identifier is two quadlets from here.
constexpr size_t kIdentifierPlace = 3;

/// The keys that lead to what is looked for. The two highest bits of a key are its type.
constexpr uint32_t kUnitSpecifierKey = 0x12;
constexpr uint32_t kTextLeafKey = 0x81;
constexpr uint32_t kTextDirectoryKey = 0xC1;
constexpr uint32_t kUnitDirectoryKey = 0xD1;
constexpr uint32_t kDependentDirectoryKey = 0xD4;

/// What the value of an entry is: the value itself, an address, or where a leaf or a directory
/// is.
enum class KeyType { Immediate, Offset, Leaf, Directory };

KeyType TypeOf(uint32_t key) {
    constexpr unsigned kTypeShift = 6;
    return static_cast<KeyType>(key >> kTypeShift);
}

/// Leaves and directories begin with their length here, and a CRC in the lower half. The CRC
/// isn't checked: a wrong place in the image is refused when it is read.
uint32_t UpperHalf(uint32_t quadlet) {
    constexpr unsigned kHalfBits = 16;
    return quadlet >> kHalfBits;
}

/// The highest byte: the key of an entry, or the length of the bus information.
uint32_t HighestByte(uint32_t quadlet) {
    constexpr unsigned kShift = 24;
    return quadlet >> kShift;
}

}  // namespace

/// By differences rather than sums, which could overflow. The text is fixed and has addresses
/// in memory.
void ConfRomReader::CheckAddressRange(Place place, size_t quadlets) const {
    const size_t all = m_Image.size() / kQuadletBytes;
    if (place > all || quadlets > all - place) {
        const uint8_t* const begin = m_Image.data();
        const auto address = reinterpret_cast<uintptr_t>(begin) + place * kQuadletBytes;
        RUNTIME_EXCEPTION("p=%p out of range [%p,%p)", reinterpret_cast<void*>(address), begin,
                          begin + m_Image.size());
    }
}

uint32_t ConfRomReader::Quadlet(Place place) const {
    CheckAddressRange(place, 1);
    return GetBigEndian(m_Image.data() + place * kQuadletBytes);
}

/// What identifies a camera wherever it is plugged in.
uint64_t ConfRomReader::UnitIdentifier() const {
    if (HighestByte(Quadlet(0)) < kLeastInfoQuadlets) {
        RUNTIME_EXCEPTION("DirLenQuad >= 4");
    }
    if (Quadlet(1) != kBusName) {
        RUNTIME_EXCEPTION("unsupported bus");
    }
    return uint64_t{Quadlet(kIdentifierPlace)} << 32 | Quadlet(kIdentifierPlace + 1);
}

/// It follows the bus information, whose length is in the first quadlet.
ConfRomReader::Place ConfRomReader::RootDirectory() const {
    return 1 + HighestByte(Quadlet(0));
}

/// Checked as a whole, so that a directory which is cut off is refused before any of its entries
/// is used.
std::vector<ConfRomReader::Entry> ConfRomReader::Directory(Place place) const {
    const uint32_t DirLenQuad = UpperHalf(Quadlet(place));
    CheckAddressRange(place + 1, DirLenQuad);
    constexpr uint32_t kValueMask = 0xFFFFFF;
    std::vector<Entry> entries;
    for (Place i = place + 1; i <= place + DirLenQuad; ++i) {
        const uint32_t quadlet = Quadlet(i);
        entries.push_back({.place = i, .key = HighestByte(quadlet), .value = quadlet & kValueMask});
    }
    return entries;
}

/// The root describes the device as a whole, and wins over its units.
void ConfRomReader::Find(uint32_t key, uint32_t unitSpecifier, ConfRomEntries& entries) const {
    const Place root = RootDirectory();
    if (!ParseRootDirectory(root, key, entries)) {
        LocateUnitDirectory(root, key, unitSpecifier, entries);
    }
}

bool ConfRomReader::ParseRootDirectory(Place root, uint32_t key, ConfRomEntries& entries) const {
    return ParseDirectory(root, key, entries);
}

/// Many entries may lead to the same directory, by which a hostile image could make the search
/// last very long. So each directory is searched once.
bool ConfRomReader::LocateUnitDirectory(Place root, uint32_t key, uint32_t unitSpecifier,
                                        ConfRomEntries& entries) const {
    std::set<Place> searchedUnits;
    std::set<Place> searchedDependents;
    for (const Entry& entry : Directory(root)) {
        if (entry.key == kUnitDirectoryKey && searchedUnits.insert(entry.Target()).second &&
            IsUnitOf(entry.Target(), unitSpecifier) &&
            ParseUnitDirectory(entry.Target(), key, searchedDependents, entries)) {
            return true;
        }
    }
    return false;
}

/// A device may have units of several kinds, for example a camera and a storage.
bool ConfRomReader::IsUnitOf(Place directory, uint32_t unitSpecifier) const {
    ConfRomEntries entries;
    return ParseDirectory(directory, kUnitSpecifierKey, entries) &&
           entries.integers.at(kUnitSpecifierKey) == unitSpecifier;
}

/// Units keep some of their entries in a directory below. There is no further level, whatever the
/// image says.
bool ConfRomReader::ParseUnitDirectory(Place directory, uint32_t key, std::set<Place>& searched,
                                       ConfRomEntries& entries) const {
    if (ParseDirectory(directory, key, entries)) {
        return true;
    }
    for (const Entry& entry : Directory(directory)) {
        if (entry.key == kDependentDirectoryKey && searched.insert(entry.Target()).second &&
            ParseUnitDependentDirectory(entry.Target(), key, entries)) {
            return true;
        }
    }
    return false;
}

bool ConfRomReader::ParseUnitDependentDirectory(Place directory, uint32_t key,
                                                ConfRomEntries& entries) const {
    return ParseDirectory(directory, key, entries);
}

bool ConfRomReader::ParseDirectory(Place directory, uint32_t key, ConfRomEntries& entries) const {
    const std::vector<Entry> all = Directory(directory);
    const auto found =
        std::find_if(all.begin(), all.end(), [key](const Entry& e) { return e.key == key; });
    if (found == all.end()) {
        return false;
    }
    TakeEntry(*found, found + 1 != all.end() ? &*(found + 1) : nullptr, entries);
    return true;
}

/// A number may be followed by an entry that describes it as text; both are kept under the key.
/// @param next  the entry after it; may be null
void ConfRomReader::TakeEntry(const Entry& entry, const Entry* next,
                              ConfRomEntries& entries) const {
    switch (TypeOf(entry.key)) {
        case KeyType::Immediate:
        case KeyType::Offset:
            entries.integers[entry.key] = entry.value;
            if (next != nullptr) {
                TakeDescriptorOf(entry.key, *next, entries);
            }
            return;
        case KeyType::Leaf:
            ParseDescriptor(entry.Target(), entry.key, entries);
            return;
        case KeyType::Directory:
            RUNTIME_EXCEPTION("Key type is directory (key=0x%X)?!", entry.key);
    }
}

/// A text may be there in several languages, or in several forms. The first that can be read is
/// taken.
void ConfRomReader::TakeDescriptorOf(uint32_t key, const Entry& descriptor,
                                     ConfRomEntries& entries) const {
    if (descriptor.key == kTextLeafKey) {
        ParseDescriptor(descriptor.Target(), key, entries);
    } else if (descriptor.key == kTextDirectoryKey) {
        for (const Entry& entry : Directory(descriptor.Target())) {
            if (entry.key == kTextLeafKey && ParseDescriptor(entry.Target(), key, entries)) {
                return;
            }
        }
    }
}

/// A leaf that isn't plain text in the language of all units is passed over: two zero quadlets
/// mark that.
bool ConfRomReader::ParseDescriptor(Place leaf, uint32_t key, ConfRomEntries& entries) const {
    constexpr uint32_t kSpecifierQuadlets = 2;
    const uint32_t length = UpperHalf(Quadlet(leaf));
    CheckAddressRange(leaf + 1, length);
    if (length < kSpecifierQuadlets || Quadlet(leaf + 1) != 0 || Quadlet(leaf + 2) != 0) {
        return false;
    }
    const auto* const text = reinterpret_cast<const char*>(m_Image.data()) +
                             (leaf + 1 + kSpecifierQuadlets) * kQuadletBytes;
    // Zeros fill the last quadlet.
    entries.texts[key].assign(text, strnlen(text, (length - kSpecifierQuadlets) * kQuadletBytes));
    return true;
}

}  // namespace GenApi_3_0_ORVANE
