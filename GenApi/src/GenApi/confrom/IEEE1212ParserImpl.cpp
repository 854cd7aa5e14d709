// The Configuration ROM as a node, and what the nodes share that show its entries. The ROM is
// parsed when a key is first asked for, and what was found is kept until another unit is in the
// same place of the bus.

#include "confrom/IEEE1212ParserImpl.h"

#include <array>
#include <cstdio>

#include "registers/RegisterBytes.h"

namespace GenApi_3_0_ORVANE {

namespace {

std::string KeyText(uint32_t key) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%x", key);
    return text.data();
}

}  // namespace

void CIEEE1212ParserImpl::SetProperty(const CProperty& property) {
    if (property.GetPropertyID() == CPropertyID::Unit_ID) {
        m_UnitSpecifier = static_cast<uint32_t>(property.Integer());
    } else {
        CRegisterImpl::SetProperty(property);
    }
}

/// Invalidation usually means that some register of the same port was written; the ROM of a unit
/// never changes. So the entries stay if the unit is still the same: a read of a few bytes is
/// enough to find out.
void CIEEE1212ParserImpl::SetInvalid(ESetInvalidMode mode) {
    CRegisterImpl::SetInvalid(mode);
    if (m_Entries.IsEmpty()) {
        return;  // nothing to forget, and nothing to ask the device for
    }
    if (IsReadable(InternalGetAccessMode()) && !IsSameUnit()) {
        m_Entries = {};
    }
    // The port may not have been invalidated yet, so its answer must not be kept.
    m_AccessModeCache = _UndefinedAccesMode;
}

/// A ROM that can't be read now may be another unit's, so its entries are dropped. The
/// next read finds out and reports the failure.
bool CIEEE1212ParserImpl::IsSameUnit() {
    try {
        std::array<uint8_t, ConfRomReader::kHeadBytes> head{};
        InternalGet(head.data(), head.size(), false, true);
        return ConfRomReader(head).UnitIdentifier() == m_UnitIdentifier;
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        return false;
    }
}

/// Allocates memory for the whole ROM. The description says how long it is, and may say
/// anything.
RegisterBytes CIEEE1212ParserImpl::AllocateImage(int64_t length) {
    try {
        return {*this, length};
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        GENERIC_EXCEPTION_NODE("Out of memory");
    }
}

/// Adds the entries of one key to those that are known. Parsing everything at once would fail for
/// ROMs whose other parts are wrong.
void CIEEE1212ParserImpl::ParseConfRom(uint32_t key) {
    const int64_t length = InternalGetLength();
    RegisterBytes image = AllocateImage(length);
    // Past the port's own bytes, which may be another unit's: what is kept of the ROM are
    // the entries.
    InternalGet(image.Data(), length, false, true);
    try {
        const ConfRomReader rom({image.Data(), static_cast<size_t>(length)});
        const uint64_t identifier = rom.UnitIdentifier();
        if (identifier != m_UnitIdentifier) {
            m_Entries = {};
            m_UnitIdentifier = identifier;
        }
        rom.Find(key, m_UnitSpecifier, m_Entries);
    } catch (const GenICam_3_0_ORVANE::RuntimeException& failure) {
        m_Entries = {};
        // The reader knows of no nodes; a user who reads the failure wants the name.
        RUNTIME_EXCEPTION_NODE("%s", failure.GetDescription());
    }
}

/// A key that was found as a number may be asked for as a text, or the other way round: then it
/// isn't parsed again, and isn't found.
template <class Values>
auto CIEEE1212ParserImpl::Find(const Values& values, uint32_t key) {
    // A key that the ROM lacks is looked for each time: it may have come with another
    // unit.
    if (!m_Entries.Holds(key)) {
        ParseConfRom(key);
    }
    const auto found = values.find(key);
    if (found == values.end()) {
        RUNTIME_EXCEPTION_NODE("Key 0x%x, not found", key);
    }
    return found->second;
}

int64_t CIEEE1212ParserImpl::GetInteger(uint32_t key) {
    return Find(m_Entries.integers, key);
}

gcstring CIEEE1212ParserImpl::GetText(uint32_t key) {
    return Find(m_Entries.texts, key).c_str();
}

/// Only what has been found so far, for people who debug a description.
gcstring CIEEE1212ParserImpl::InternalToString(bool /*verify*/, bool /*ignoreCache*/) {
    std::string text = "CIEEE1212Parser: -";
    for (const auto& [key, value] : m_Entries.integers) {
        text += " " + KeyText(key) + " = " + KeyText(static_cast<uint32_t>(value));
    }
    for (const auto& [key, value] : m_Entries.texts) {
        text += " " + KeyText(key) + " = '" + value + "'";
    }
    return text.c_str();
}

// Both ways of writing without verification end here.

void CIEEE1212ParserImpl::InternalFromString(const gcstring& /*value*/, bool /*verify*/) {
    ACCESS_EXCEPTION_NODE("Node is not writable.");
}

void CIEEE1212ParserImpl::InternalSet(const uint8_t* /*buffer*/, int64_t /*length*/,
                                      bool /*verify*/) {
    ACCESS_EXCEPTION_NODE("Node is not writable.");
}

void CConfRomKeyImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::p1212Parser_ID:
            m_pParser = dynamic_cast<CIEEE1212ParserImpl*>(LinkChild(property, ReadRole));
            break;
        case CPropertyID::Key_ID:
            m_Key = static_cast<uint32_t>(property.Integer());
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

/// Without a fault of its own, the link leads to a node of another kind.
void CConfRomKeyImpl::FinalConstruct() {
    if (m_pParser == nullptr && FindFault() == nullptr) {
        RUNTIME_EXCEPTION_NODE("The 'p1212Parser' of a key is no parser.");
    }
    CNodeImpl::FinalConstruct();
}

EAccessMode CConfRomKeyImpl::InternalGetAccessMode() {
    return CNodeImpl::InternalGetAccessMode(m_pParser);
}

}  // namespace GenApi_3_0_ORVANE
