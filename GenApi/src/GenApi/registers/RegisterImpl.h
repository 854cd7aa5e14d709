#pragma once

#include <utility>
#include <vector>

#include "GenApi/IRegister.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/RegisterT.h"
#include "GenApi/impl/ValueT.h"
#include "ports/PortImplIntern.h"

namespace GenApi_3_0_ORVANE {

/// A range of bytes in a port, with a computed address and a cache by address.
/// A base that isn't virtual would have each template above refer to tables of its own class.
class CRegisterImpl : public CNodeImpl, virtual public IBytesUser, virtual public IRegister {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIRegister; }
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;
    void ForgetBytes() override;

protected:
    /// Forgets the bytes where this register was read or written last. Nothing is computed to
    /// find them.
    void ForgetBeneath() override;
    bool IsRegister() const override { return true; }
    ECachingMode ComputeCachingMode() override;
    gcstring InternalToString(bool verify, bool ignoreCache) override;
    void InternalFromString(const gcstring& value, bool verify) override;

    void InternalGet(uint8_t* buffer, int64_t length, bool verify, bool ignoreCache);
    void InternalSet(const uint8_t* buffer, int64_t length, bool verify);
    int64_t InternalGetLength() { return m_Length.GetValue(); }
    int64_t InternalGetAddress();
    /// Computes the address again. If it has changed, what is cached at the new place is dropped.
    void UpdateAddress(bool ignoreCache);
    /// Refuses what no register can do.
    /// @return the length of the register
    int64_t CheckAccess(const void* buffer, int64_t length, const char* operation);

    CIntegerPolyRef m_Length;
    CPortImplIntern* m_pPort = nullptr;
    int64_t m_Address = -1;

private:
    struct IndexedOffset {
        CIntegerPolyRef index;
        CIntegerPolyRef offset;
    };

    void AddIndex(const CProperty& property);
    int64_t SumAddress(bool ignoreCache);
    /// Finds the cache entry of the current address.
    void FindEntry(int64_t length);
    /// Returns that entry. From now on, this register learns when the entry's bytes are
    /// forgotten.
    CValueCache::Entry& UseEntry(int64_t length);
    void LeaveEntry();

    CValueCache::Entry* m_pEntry = nullptr;
    bool m_IsEntryUser = false;
    /// The length of the last access without a cache.
    int64_t m_UncachedLength = 0;
    bool m_IsAddressKnown = false;
    std::vector<CIntegerPolyRef> m_Addresses;
    std::vector<IndexedOffset> m_Indices;
    EAccessMode m_AccessMode = RO;
};

class CRegister : public NodeT<RegisterT<ValueT<BaseT<CRegisterImpl>>>> {};

}  // namespace GenApi_3_0_ORVANE
