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
class CRegisterImpl : public CNodeImpl, public IBytesUser, virtual public IRegister {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIRegister; }
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;
    void ForgetBytes() override;

protected:
    /// The bytes where this register was read or written last: nothing is computed
    /// to find them.
    void ForgetBeneath() override;
    bool IsRegister() const override { return true; }
    ECachingMode ComputeCachingMode() override;
    gcstring InternalToString(bool verify, bool ignoreCache) override;
    void InternalFromString(const gcstring& value, bool verify) override;

    void InternalGet(uint8_t* buffer, int64_t length, bool verify, bool ignoreCache);
    void InternalSet(const uint8_t* buffer, int64_t length, bool verify);
    int64_t InternalGetLength() { return m_Length.GetValue(); }
    int64_t InternalGetAddress();
    /// Sums the address up anew; a change drops what is cached there.
    void UpdateAddress(bool ignoreCache);
    /// Refuses what no register can give or take. Gives the length of the
    /// register.
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
    /// Makes the bytes at the current address this register's.
    void FindEntry(int64_t length);
    /// Returns them. This register is told of what happens to
    /// them from now on.
    CValueCache::Entry& UseEntry(int64_t length);
    void LeaveEntry();

    CValueCache::Entry* m_pEntry = nullptr;
    bool m_IsEntryUser = false;
    /// Of what was read or written last without being kept.
    int64_t m_UncachedLength = 0;
    bool m_IsAddressKnown = false;
    std::vector<CIntegerPolyRef> m_Addresses;
    std::vector<IndexedOffset> m_Indices;
    EAccessMode m_AccessMode = RO;
};

class CRegister : public NodeT<RegisterT<ValueT<BaseT<CRegisterImpl>>>> {};

}  // namespace GenApi_3_0_ORVANE
