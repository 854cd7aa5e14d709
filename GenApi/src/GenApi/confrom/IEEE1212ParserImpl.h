#pragma once

#include <cstdint>

#include "confrom/ConfRomReader.h"
#include "registers/RegisterImpl.h"

namespace GenApi_3_0_ORVANE {

class RegisterBytes;

/// The Configuration ROM of a camera on an IEEE 1394 bus: a register that other
/// nodes look keys up in. What was found is kept until the bus has another unit
/// in this place.
class CIEEE1212ParserImpl : public CRegisterImpl {
public:
    void SetProperty(const CProperty& property) override;
    void SetInvalid(ESetInvalidMode mode) override;

    /// The value of a key. RuntimeException for a key that the ROM lacks and for
    /// a ROM that can't be understood. The map's lock is held.
    int64_t GetInteger(uint32_t key);
    gcstring GetText(uint32_t key);

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override;
    void InternalFromString(const gcstring& value, bool verify) override;
    void InternalSet(const uint8_t* buffer, int64_t length, bool verify);

private:
    /// The value of a key in one of the maps; the ROM is parsed where neither
    /// holds the key.
    template <class Values>
    auto Find(const Values& values, uint32_t key);
    RegisterBytes AllocateImage(int64_t length);
    void ParseConfRom(uint32_t key);
    bool IsSameUnit();

    uint32_t m_UnitSpecifier = 0;
    ConfRomEntries m_Entries;
    uint64_t m_UnitIdentifier = 0;
};

class CIEEE1212Parser : public BaseT<ValueT<RegisterT<NodeT<CIEEE1212ParserImpl>>>> {};

/// What a node that shows an entry of the ROM keeps.
class CConfRomKeyImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    /// RuntimeException for a key whose parser is another node.
    void FinalConstruct() override;
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;

protected:
    CIEEE1212ParserImpl& GetParser() { return *m_pParser; }
    uint32_t GetKey() const { return m_Key; }

private:
    CIEEE1212ParserImpl* m_pParser = nullptr;
    uint32_t m_Key = 0;
};

}  // namespace GenApi_3_0_ORVANE
