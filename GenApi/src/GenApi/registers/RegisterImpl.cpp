#include "registers/RegisterImpl.h"

#include <algorithm>
#include <utility>

#include "registers/RegisterBytes.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Where a chunk port tells the end of its chunk.
constexpr int64_t kChunkEndAddress = 0x7FFFFFFFFFFFFFF0;

}  // namespace

void CRegisterImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pPort_ID:
            m_pPort = dynamic_cast<CPortImplIntern*>(LinkChild(property, ReadRole | WriteRole));
            if (m_pPort == nullptr) {
                RUNTIME_EXCEPTION_NODE("The 'pPort' of a register is no port.");
            }
            break;
        case CPropertyID::Length_ID:
            m_Length = property.Integer();
            break;
        case CPropertyID::pLength_ID:
            m_Length = static_cast<IBase*>(LinkChild(property, ReadRole));
            break;
        case CPropertyID::Address_ID:
            m_Addresses.emplace_back() = property.Integer();
            break;
        case CPropertyID::pAddress_ID:
            m_Addresses.emplace_back() = static_cast<IBase*>(LinkChild(property, ReadRole));
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

void CRegisterImpl::AddIndex(const CProperty& property) {
    IndexedOffset& entry = m_Indices.emplace_back();
    entry.index = static_cast<IBase*>(LinkChild(property, ReadRole));
    const CProperty* const offset = property.GetAttribute();
    if (offset == nullptr) {
        return;  // the index counts registers
    }
    if (offset->GetPropertyID() == CPropertyID::pOffset_ID) {
        entry.offset = static_cast<IBase*>(LinkChild(*offset, ReadRole));
    } else {
        entry.offset = offset->Integer();
    }
}

void CRegisterImpl::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (m_pPort == nullptr) {
        throw NodeFault("m_pPort != NULL");
    }
}

EAccessMode CRegisterImpl::InternalGetAccessMode() {
    return CachedAccessMode([this] { return Combine(ComputeAccessMode(m_pPort), m_AccessMode); });
}

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
    if (static_cast<int64_t>(sum) < 0 && m_pPort->HasChunkID()) {
        int64_t base = 0;
        m_pPort->Read(&base, kChunkEndAddress, sizeof(base));
        sum += bits(base);
    }
    return static_cast<int64_t>(sum);
}

// A verified access is one of the register itself, not of those that tell where it
// lies: their values come from the cache even then.
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

int64_t CRegisterImpl::InternalGetAddress() {
    UpdateAddress(false);
    return m_Address;
}

void CRegisterImpl::FindEntry(int64_t length) {
    if (m_pEntry == nullptr || !m_pEntry->IsAt(m_Address, length)) {
        LeaveEntry();
        m_pEntry = &m_pPort->GetValueCache().GetEntry(m_Address, length);
    }
}

CValueCache::Entry& CRegisterImpl::UseEntry(int64_t length) {
    FindEntry(length);
    if (!m_IsEntryUser) {
        m_pEntry->AddUser(*this);
        m_IsEntryUser = true;
    }
    return *m_pEntry;
}

void CRegisterImpl::LeaveEntry() {
    if (std::exchange(m_IsEntryUser, false)) {
        m_pEntry->RemoveUser(*this);
    }
}

void CRegisterImpl::ForgetBytes() {
    GCLOGINFO(m_pCacheLog, "SetInvalid( simAll )");
    m_IsEntryUser = false;
    // A write of this register that is still under way was before this one.
    m_WasWritten = false;
    m_KeepCache = false;
    InvalidateCaches();
    InvalidateDependents();
}

void CRegisterImpl::ForgetBeneath() {
    if (m_pEntry != nullptr) {
        LeaveEntry();
        m_pPort->Forget(*m_pEntry);
    } else if (m_UncachedLength > 0) {
        // It keeps nothing itself, but others may of the same bytes.
        m_pPort->ForgetRange(m_Address, m_UncachedLength);
    }
}

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

void CRegisterImpl::InternalGet(uint8_t* buffer, int64_t length, bool verify, bool ignoreCache) {
    const int64_t registerLength = CheckAccess(buffer, length, "InternalGet");
    UpdateAddress(ignoreCache);
    const ECachingMode mode = InternalGetCachingMode();
    OV_ASSERT((mode == NoCache || mode == WriteThrough || mode == WriteAround) &&
              "Unexpected Caching Mode");
    if (mode == NoCache) {
        m_UncachedLength = registerLength;
        m_pPort->Read(buffer, m_Address, length);
        return;
    }
    CValueCache::Entry& entry = UseEntry(registerLength);
    if (!verify && !ignoreCache && entry.IsValid()) {
        entry.Load(buffer, length);
        return;
    }
    m_pPort->Read(buffer, m_Address, length);
    if (length == registerLength) {
        if (entry.DiffersFrom(buffer)) {
            // What others made of the old bytes is as old.
            m_pPort->Forget(entry);
        }
        UseEntry(registerLength).Store(buffer);
    }
}

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
    // What this node makes of the bytes is up to the frame of its write.
    LeaveEntry();
    m_pPort->WriteEntry(entry, buffer, length);
    if (mode == WriteThrough && length == registerLength) {
        UseEntry(registerLength).Store(buffer);
    }
}

gcstring CRegisterImpl::InternalToString(bool verify, bool ignoreCache) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    InternalGet(bytes.Data(), length, verify, ignoreCache);
    gcstring text;
    Value2String(bytes.Data(), text, length);
    return text;
}

void CRegisterImpl::InternalFromString(const gcstring& value, bool verify) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    if (!String2Value(value, bytes.Data(), length)) {
        INVALID_ARGUMENT_EXCEPTION_NODE("Node '%s' : cannot convert hex string", m_Name.c_str());
    }
    InternalSet(bytes.Data(), length, verify);
}

}  // namespace GenApi_3_0_ORVANE
