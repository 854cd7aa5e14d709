// Floats of 4 or 8 bytes in either byte order.
//
// After a write the register is read again at the next read: the value that the device holds may
// have been rounded, from double to float for example. Hence the caching mode of the constructor.

#include "registers/FltRegImpl.h"

#include <array>
#include <bit>
#include <limits>

#include "registers/ByteOrder.h"

namespace GenApi_3_0_ORVANE {

namespace {

template <class Number>
using BytesOf = std::array<uint8_t, sizeof(Number)>;

constexpr int64_t kSingleLength = sizeof(float);
constexpr int64_t kDoubleLength = sizeof(double);

}  // namespace

void CFltRegImpl::SetProperty(const CProperty& property) {
    if (m_Display.Set(property)) {
        return;
    }
    if (property.GetPropertyID() == CPropertyID::Endianess_ID) {
        m_Endianess = property.EEndianess();
    } else {
        CRegisterImpl::SetProperty(property);
    }
}

/// The length may come from another node, so it is checked at each access. Both texts are the
/// broken condition.
double CFltRegImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const int64_t Length = InternalGetLength();
    if (Length > kDoubleLength) {
        RUNTIME_FAULT_NODE("Length <= 8");
    }
    if (Length == kSingleLength) {
        BytesOf<float> bytes{};
        InternalGet(bytes.data(), Length, verify, ignoreCache);
        SwapToMachine(bytes, m_Endianess);
        return std::bit_cast<float>(bytes);
    }
    if (Length != kDoubleLength) {
        RUNTIME_FAULT_NODE("Length == kDoubleLength");
    }
    BytesOf<double> bytes{};
    InternalGet(bytes.data(), Length, verify, ignoreCache);
    SwapToMachine(bytes, m_Endianess);
    return std::bit_cast<double>(bytes);
}

void CFltRegImpl::InternalSetValue(double value, bool verify) {
    const int64_t length = InternalGetLength();
    if (length == kSingleLength) {
        auto bytes = std::bit_cast<BytesOf<float>>(static_cast<float>(value));
        SwapToMachine(bytes, m_Endianess);
        InternalSet(bytes.data(), length, verify);
    } else if (length == kDoubleLength) {
        auto bytes = std::bit_cast<BytesOf<double>>(value);
        SwapToMachine(bytes, m_Endianess);
        InternalSet(bytes.data(), length, verify);
    } else {
        RUNTIME_EXCEPTION_NODE("CFltRegImpl::InternalSetValue called with Length != 4 or 8");
    }
}

/// A larger number would arrive as infinity in a register of 4 bytes.
double CFltRegImpl::InternalGetMax() {
    return InternalGetLength() == kSingleLength ? std::numeric_limits<float>::max()
                                                : std::numeric_limits<double>::max();
}

}  // namespace GenApi_3_0_ORVANE
