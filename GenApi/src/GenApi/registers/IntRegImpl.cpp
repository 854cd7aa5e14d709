// Integers of 1 to 8 bytes, with or without a sign, in either byte order. The length may come
// from another node, so it is checked at each access.

#include "registers/IntRegImpl.h"

#include <array>
#include <bit>
#include <limits>

#include "registers/ByteOrder.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The longest that an int64_t holds.
constexpr int64_t kMaxIntegerLength = 8;
using Bytes = std::array<uint8_t, kMaxIntegerLength>;

}  // namespace

void CIntRegImpl::SetProperty(const CProperty& property) {
    if (m_Display.Set(property)) {
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::Sign_ID:
            m_Sign = property.ESign();
            break;
        case CPropertyID::Endianess_ID:
            m_Endianess = property.EEndianess();
            break;
        default:
            CRegisterImpl::SetProperty(property);
            break;
    }
}

/// The texts are those of any value that is out of range, since the length may be the value of
/// another node.
int64_t CIntRegImpl::CheckedLength() {
    const int64_t length = InternalGetLength();
    if (length < 1) {
        OUT_OF_RANGE_EXCEPTION_NODE("Value = %ld must be equal or greater than Min = %ld", length,
                                    1L);
    }
    if (length > kMaxIntegerLength) {
        OUT_OF_RANGE_EXCEPTION_NODE("Value = %ld must be equal or smaller than Max = %ld", length,
                                    static_cast<long>(kMaxIntegerLength));
    }
    return length;
}

/// Everything is computed unsigned, where shifts by up to 63 bits are defined. A shift by 64
/// isn't, hence the special cases.
CIntRegImpl::Masks CIntRegImpl::MasksOf(unsigned bits, ESign sign) {
    Masks masks;
    masks.sign = uint64_t{1} << (bits - 1);
    masks.extension = bits == 64 ? 0 : ~uint64_t{0} << bits;
    if (sign == Signed) {
        masks.min = static_cast<int64_t>(masks.sign | masks.extension);
        masks.max = ~masks.min;
    } else {
        masks.min = 0;
        // An unsigned number of 64 bits doesn't fit into the interface, whose integers have a
        // sign. Its upper half shows as negative numbers, which no limit admits.
        masks.max = bits == 64 ? std::numeric_limits<int64_t>::max()
                               : static_cast<int64_t>(~masks.extension);
    }
    return masks;
}

/// Kept once known. They are asked for in every read and for every limit.
const CIntRegImpl::Masks& CIntRegImpl::GetMasks() {
    if (!m_AreMasksKnown) {
        m_Masks = MasksOf(static_cast<unsigned>(8 * CheckedLength()), m_Sign);
        m_AreMasksKnown = true;
    }
    return m_Masks;
}

int64_t CIntRegImpl::SignExtended(uint64_t raw, const Masks& masks, ESign sign) {
    return static_cast<int64_t>(sign == Signed && (raw & masks.sign) != 0 ? raw | masks.extension
                                                                          : raw);
}

/// The bytes are turned into the machine's order at the start of eight zero bytes, so that any
/// length gives a number without a loop.
uint64_t CIntRegImpl::ReadRaw(bool verify, bool ignoreCache) {
    Bytes bytes{};
    const int64_t length = CheckedLength();
    InternalGet(bytes.data(), length, verify, ignoreCache);
    SwapToMachine({bytes.data(), static_cast<size_t>(length)}, m_Endianess);
    return std::bit_cast<uint64_t>(bytes);
}

/// The same backwards: bytes beyond the length are cut off. Verified writes have checked the
/// limits before.
void CIntRegImpl::WriteRaw(uint64_t raw, bool verify) {
    auto bytes = std::bit_cast<Bytes>(raw);
    const int64_t length = CheckedLength();
    SwapToMachine({bytes.data(), static_cast<size_t>(length)}, m_Endianess);
    InternalSet(bytes.data(), length, verify);
}

int64_t CIntRegImpl::InternalGetValue(bool verify, bool ignoreCache) {
    return SignExtended(ReadRaw(verify, ignoreCache), GetMasks(), m_Sign);
}

void CIntRegImpl::InternalSetValue(int64_t value, bool verify) {
    WriteRaw(static_cast<uint64_t>(value), verify);
}

int64_t CIntRegImpl::InternalGetMin() {
    return GetMasks().min;
}

int64_t CIntRegImpl::InternalGetMax() {
    return GetMasks().max;
}

}  // namespace GenApi_3_0_ORVANE
