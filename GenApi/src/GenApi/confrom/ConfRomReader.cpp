#include "confrom/ConfRomReader.h"

#include <algorithm>
#include <cstring>

#include "Base/GCException.h"
#include "registers/BigEndian.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr size_t kQuadletBytes = 4;
constexpr uint32_t kBusName = 0x31333934;  ///< "1394"
constexpr uint32_t kLeastInfoQuadlets = 4;
constexpr size_t kIdentifierPlace = 3;

constexpr uint32_t kUnitSpecifierKey = 0x12;
constexpr uint32_t kTextLeafKey = 0x81;
constexpr uint32_t kTextDirectoryKey = 0xC1;
constexpr uint32_t kUnitDirectoryKey = 0xD1;
constexpr uint32_t kDependentDirectoryKey = 0xD4;

/// The two top bits of a key.
enum class KeyType { Immediate, Offset, Leaf, Directory };

KeyType TypeOf(uint32_t key) {
    return static_cast<KeyType>(key >> 6);
}

uint32_t UpperHalf(uint32_t quadlet) {
    return quadlet >> 16;
}

}  // namespace

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

uint64_t ConfRomReader::UnitIdentifier() const {
    if (Quadlet(0) >> 24 < kLeastInfoQuadlets) {
        RUNTIME_EXCEPTION("DirLenQuad >= 4");
    }
    if (Quadlet(1) != kBusName) {
        RUNTIME_EXCEPTION("unsupported bus");
    }
    return uint64_t{Quadlet(kIdentifierPlace)} << 32 | Quadlet(kIdentifierPlace + 1);
}

ConfRomReader::Place ConfRomReader::RootDirectory() const {
    return 1 + (Quadlet(0) >> 24);
}

std::vector<ConfRomReader::Entry> ConfRomReader::Directory(Place place) const {
    const uint32_t DirLenQuad = UpperHalf(Quadlet(place));
    CheckAddressRange(place + 1, DirLenQuad);
    std::vector<Entry> entries;
    for (Place i = place + 1; i <= place + DirLenQuad; ++i) {
        const uint32_t quadlet = Quadlet(i);
        entries.push_back({.place = i, .key = quadlet >> 24, .value = quadlet & 0xFFFFFF});
    }
    return entries;
}

void ConfRomReader::Find(uint32_t key, uint32_t unitSpecifier, ConfRomEntries& entries) const {
    const Place root = RootDirectory();
    if (!ParseRootDirectory(root, key, entries)) {
        LocateUnitDirectory(root, key, unitSpecifier, entries);
    }
}

bool ConfRomReader::ParseRootDirectory(Place root, uint32_t key, ConfRomEntries& entries) const {
    return ParseDirectory(root, key, entries);
}

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

bool ConfRomReader::IsUnitOf(Place directory, uint32_t unitSpecifier) const {
    ConfRomEntries entries;
    return ParseDirectory(directory, kUnitSpecifierKey, entries) &&
           entries.integers.at(kUnitSpecifierKey) == unitSpecifier;
}

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

/// @param next  the entry behind, which may describe this one; may be null
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

void ConfRomReader::TakeDescriptorOf(uint32_t key, const Entry& descriptor,
                                     ConfRomEntries& entries) const {
    if (descriptor.key == kTextLeafKey) {
        ParseDescriptor(descriptor.Target(), key, entries);
    } else if (descriptor.key == kTextDirectoryKey) {
        // The same text in several languages, or in several forms.
        for (const Entry& entry : Directory(descriptor.Target())) {
            if (entry.key == kTextLeafKey && ParseDescriptor(entry.Target(), key, entries)) {
                return;
            }
        }
    }
}

/// A leaf that is no plain text in the language of all units is passed over.
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
