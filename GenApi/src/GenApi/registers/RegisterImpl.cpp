// A range of bytes in the memory of a device: where it is, what of it may be kept, and how reads
// and writes keep the caches right of all registers that share bytes with it.

#include "registers/RegisterImpl.h"

#include <algorithm>
#include <utility>

#include "ports/ChunkAddresses.h"
#include "registers/RegisterBytes.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// Addresses and indices may be many; their sum is where the register is.
void CRegisterImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pPort_ID:
            m_pPort = LinkChild(property, ReadRole | WriteRole)->AsPort();
            if (m_pPort == nullptr) {
                RUNTIME_EXCEPTION_NODE("The 'pPort' of a register is no port.");
            }
            break;
        case CPropertyID::Length_ID:
            m_Length = property.Integer();
            break;
        case CPropertyID::pLength_ID:
            m_Length = LinkChild(property, ReadRole);
            break;
        case CPropertyID::Address_ID:
            m_Addresses.emplace_back() = property.Integer();
            break;
        case CPropertyID::pAddress_ID:
            m_Addresses.emplace_back() = LinkChild(property, ReadRole);
            break;
        case CPropertyID::pIndex_ID:
            AddIndex(property);
            break;
        case CPropertyID::AccessMode_ID:
            m_AccessMode = property.EAccessMode();
            break;
        case CPropertyID::Cachable_ID:
            m_CachingMode = property.ECachingMode();
            break;
        default:
            CNodeImpl::SetProperty(property);
            break;
    }
}

/// An index is multiplied by its offset: the elements of an array in the device's memory are
/// reached that way. The offset is a number, a node, or missing.
void CRegisterImpl::AddIndex(const CProperty& property) {
    IndexedOffset& entry = m_Indices.emplace_back();
    entry.index = LinkChild(property, ReadRole);
    const CProperty* const offset = property.GetAttribute();
    if (offset == nullptr) {
        return;  // the index counts registers
    }
    if (offset->GetPropertyID() == CPropertyID::pOffset_ID) {
        entry.offset = LinkChild(*offset, ReadRole);
    } else {
        entry.offset = offset->Integer();
    }
}

/// Without a port nothing can be read or written, whatever else the description says.
void CRegisterImpl::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (m_pPort == nullptr) {
        throw NodeFault("m_pPort != NULL");
    }
}

/// The register's own mode only restricts what the port and the other conditions leave.
EAccessMode CRegisterImpl::InternalGetAccessMode() {
    return CachedAccessMode([this] { return Combine(ComputeAccessMode(m_pPort), m_AccessMode); });
}

/// If the address may change unnoticed, bytes that are kept may be those of another place. So the
/// nodes that the address and the length come from decide as well.
ECachingMode CRegisterImpl::ComputeCachingMode() {
    ECachingMode mode = CNodeImpl::ComputeCachingMode();
    for (const CIntegerPolyRef& address : m_Addresses) {
        mode = Combine(mode, address.GetCachingMode());
    }
    for (const IndexedOffset& entry : m_Indices) {
        mode = Combine(mode, entry.index.GetCachingMode());
        if (entry.offset.IsInitialized()) {
            mode = Combine(mode, entry.offset.GetCachingMode());
        }
    }
    return m_Length.IsPointer() ? Combine(mode, m_Length.GetCachingMode()) : mode;
}

/// The address may depend on other nodes, such as a selector, so it is summed up for each access.
int64_t CRegisterImpl::SumAddress(bool ignoreCache) {
    // Addresses are bits: a sum beyond 64 of them wraps as a device's does.
    const auto bits = [](int64_t number) { return static_cast<uint64_t>(number); };
    uint64_t sum = 0;
    for (const CIntegerPolyRef& part : m_Addresses) {
        sum += bits(part.GetValue(false, ignoreCache));
    }
    for (const IndexedOffset& entry : m_Indices) {
        const int64_t offset = entry.offset.IsInitialized()
                                   ? entry.offset.GetValue(false, ignoreCache)
                                   : InternalGetLength();
        sum += bits(entry.index.GetValue(false, ignoreCache)) * bits(offset);
    }
    // Negative addresses count from the end of a chunk, where some devices put their newest
    // fields.
    if (static_cast<int64_t>(sum) < 0 && m_pPort->HasChunkID()) {
        int64_t length = 0;
        m_pPort->Read(&length, kChunkLengthAddress, sizeof(length));
        sum += bits(length);
    }
    return static_cast<int64_t>(sum);
}

/// A verified access is about the register's own value: the parts of the address are read without
/// verification. A read past the cache passes their caches as well.
void CRegisterImpl::UpdateAddress(bool ignoreCache) {
    const int64_t oldAddress = m_Address;
    m_Address = 0;
    try {
        m_Address = SumAddress(ignoreCache);
        if (m_IsAddressKnown && m_Address != oldAddress && InternalGetCachingMode() != NoCache) {
            // What is known there is from before the move.
            FindEntry(InternalGetLength());
            m_pPort->Forget(*m_pEntry);
        }
        m_IsAddressKnown = true;
    } catch (...) {
        m_Address = oldAddress;
        throw;
    }
}

/// Summed up for each question as well: what it depends on may have changed since the last
/// access.
int64_t CRegisterImpl::InternalGetAddress() {
    UpdateAddress(false);
    return m_Address;
}

/// The entry is kept with its place, since most registers never move.
void CRegisterImpl::FindEntry(int64_t length) {
    if (m_pEntry == nullptr || !m_pEntry->IsAt(m_Address, length)) {
        LeaveEntry();
        m_pEntry = &m_pPort->GetValueCache().GetEntry(m_Address, length);
    }
}

/// The caller is about to make a value of the bytes, so it has to learn when they are forgotten.
CValueCache::Entry& CRegisterImpl::UseEntry(int64_t length) {
    FindEntry(length);
    if (!m_IsEntryUser) {
        m_pEntry->AddUser(*this);
        m_IsEntryUser = true;
    }
    return *m_pEntry;
}

/// Called before the register's own writes, too: they must not make it invalid. The frame of the
/// write decides what it keeps.
void CRegisterImpl::LeaveEntry() {
    if (std::exchange(m_IsEntryUser, false)) {
        m_pEntry->RemoveUser(*this);
    }
}

/// Called by the queue when another register, or a client, has written some of the same bytes.
/// The port has removed this one from the users already.
void CRegisterImpl::ForgetBytes() {
    GCLOGINFO(m_pCacheLog, "SetInvalid( simAll )");
    m_IsEntryUser = false;
    // A write of this register that is still under way was before this one.
    m_WasWritten = false;
    m_KeepCache = false;
    InvalidateCaches();
    // The other register's write sets its own dependents invalid. These may be others.
    InvalidateDependents();
}

/// Without asking where the register is now: computing that could read the device, in the middle
/// of an invalidation. What matters is where it was when a value was made of its bytes.
void CRegisterImpl::ForgetBeneath() {
    if (m_pEntry != nullptr) {
        LeaveEntry();
        m_pPort->Forget(*m_pEntry);
    } else if (m_UncachedLength > 0) {
        // It keeps nothing itself, but others may of the same bytes.
        m_pPort->ForgetRange(m_Address, m_UncachedLength);
    }
}

/// Refuses what no register can do, before anything is read, written or forgotten.
/// @return the length of the register
int64_t CRegisterImpl::CheckAccess(const void* buffer, int64_t length, const char* operation) {
    if (buffer == nullptr) {
        LOGICAL_ERROR_EXCEPTION_NODE("CRegisterImpl::%s : pBuffer must not be NULL", operation);
    }
    if (length < 0) {
        OUT_OF_RANGE_EXCEPTION_NODE("CRegisterImpl::%s : a length of %ld is less than none",
                                    operation, length);
    }
    const int64_t registerLength = InternalGetLength();
    if (length > registerLength) {
        OUT_OF_RANGE_EXCEPTION_NODE(
            "CRegisterImpl::%s : more data requested than hold by the register", operation);
    }
    if (m_pPort == nullptr) {
        ACCESS_EXCEPTION_NODE("CRegisterImpl::%s : port not set", operation);
    }
    return registerLength;
}

/// Reads from the port's cache if that may answer, else from the device.
void CRegisterImpl::InternalGet(uint8_t* buffer, int64_t length, bool verify, bool ignoreCache) {
    const int64_t registerLength = CheckAccess(buffer, length, "InternalGet");
    UpdateAddress(ignoreCache);
    const ECachingMode mode = InternalGetCachingMode();
    OV_ASSERT((mode == NoCache || mode == WriteThrough || mode == WriteAround) &&
              "Unexpected Caching Mode");
    if (mode == NoCache) {
        // Others may keep bytes of the same place, so this register has to know what to forget
        // later.
        m_UncachedLength = registerLength;
        m_pPort->Read(buffer, m_Address, length);
        return;
    }
    CValueCache::Entry& entry = UseEntry(registerLength);
    if (!verify && !ignoreCache && entry.IsValid()) {
        entry.Load(buffer, length);
        return;
    }
    // Read even if the value is known: a client that verifies wants the device's answer.
    m_pPort->Read(buffer, m_Address, length);
    // A part of a register is not kept. An entry is the whole register or nothing.
    if (length == registerLength) {
        if (entry.DiffersFrom(buffer)) {
            // What others made of the old bytes is as old.
            m_pPort->Forget(entry);
        }
        UseEntry(registerLength).Store(buffer);
    }
}

/// Writes through to the device; nothing is ever written later.
void CRegisterImpl::InternalSet(const uint8_t* buffer, int64_t length, bool /*verify*/) {
    // All that can fail comes before the write: once the device has changed,
    // nothing may keep the cache from learning of it.
    const int64_t registerLength = CheckAccess(buffer, length, "InternalSet");
    UpdateAddress(false);
    const ECachingMode mode = InternalGetCachingMode();
    if (mode == NoCache) {
        m_UncachedLength = registerLength;
        m_pPort->Write(buffer, m_Address, length);
        return;
    }
    CValueCache::Entry& entry = UseEntry(registerLength);
    // The frame of the write decides what this node keeps of the bytes.
    LeaveEntry();
    m_pPort->WriteEntry(entry, buffer, length);
    // Only where the description says that the device takes a value as it is written. With
    // WriteAround the next read asks for what the device made of it.
    if (mode == WriteThrough && length == registerLength) {
        UseEntry(registerLength).Store(buffer);
    }
}

/// Without the frames of Get: those of the text's own read are around this one already.
gcstring CRegisterImpl::InternalToString(bool verify, bool ignoreCache) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    InternalGet(bytes.Data(), length, verify, ignoreCache);
    gcstring text;
    Value2String(bytes.Data(), text, length);
    return text;
}

/// A text that is too short leaves zeros at the end of the register.
void CRegisterImpl::InternalFromString(const gcstring& value, bool verify) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    if (!String2Value(value, bytes.Data(), length)) {
        INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert hex string", m_Name.c_str());
    }
    InternalSet(bytes.Data(), length, verify);
}

}  // namespace GenApi_3_0_ORVANE
