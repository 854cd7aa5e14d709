// Smart features of cameras on an IEEE 1394 bus: whoever writes the GUID of a feature to a
// register reads the address of the feature's own registers from it.

#include "registers/SmartFeatureImpl.h"

#include <array>
#include <bit>
#include <cstring>

#include "registers/BigEndian.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The register, in bytes. It holds the GUID, then the address.
constexpr int64_t kAnswerLength = 24;
/// The bus moves words of four bytes, each of them big-endian.
constexpr size_t kAnswerQuadletBytes = 4;
/// Where the address is: its lower half comes before its upper half.
constexpr size_t kLowerPlace = 16;
constexpr size_t kUpperPlace = 20;

/// The GUID as it is in memory, with the bytes of each quadlet turned for the bus.
std::array<uint8_t, sizeof(GUID)> GuidBytes(const GUID& guid) {
    static_assert(std::endian::native == std::endian::little);
    std::array<uint8_t, sizeof(GUID)> bytes{};
    for (size_t i = 0; i < bytes.size(); i += kAnswerQuadletBytes) {
        uint32_t quadlet = 0;
        std::memcpy(&quadlet, reinterpret_cast<const uint8_t*>(&guid) + i, sizeof quadlet);
        PutBigEndian(quadlet, bytes.data() + i);
    }
    return bytes;
}

}  // namespace

CSmartFeatureImpl::CSmartFeatureImpl() {
    // The description doesn't have the length: all such registers are alike.
    m_Length = kAnswerLength;
}

/// A GUID that can't be read makes the whole description wrong: it was accepted as text by the
/// grammar.
void CSmartFeatureImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::FeatureID_ID:
            if (const gcstring text = TextOf(property.String());
                !String2Value(text, &m_FeatureID)) {
                RUNTIME_EXCEPTION_NODE("Error while parsing XML file : %s is not a valid GUID",
                                       text.c_str());
            }
            break;
        default:
            CRegisterImpl::SetProperty(property);
    }
}

/// The register's own access mode doesn't count, as the question is written to what a client can
/// only read.
EAccessMode CSmartFeatureImpl::InternalGetAccessMode() {
    return CNodeImpl::InternalGetAccessMode(m_pPort);
}

void CSmartFeatureImpl::InternalSetValue(int64_t /*value*/, bool /*verify*/) {
    RUNTIME_EXCEPTION_NODE(
        "CSmartFeatureImpl::InternalSetValue : a smart feature cannot be written");
}

/// Question and answer go past the cache: the camera answers each question anew.
int64_t CSmartFeatureImpl::InternalGetValue(bool verify, bool /*ignoreCache*/) {
    if (m_Length.GetValue() != kAnswerLength) {
        RUNTIME_FAULT_NODE("m_Length.GetValue() == 24");
    }
    const auto question = GuidBytes(m_FeatureID);
    InternalSet(question.data(), question.size(), verify);
    std::array<uint8_t, kAnswerLength> answer{};
    InternalGet(answer.data(), answer.size(), verify, true);
    const uint64_t upper = GetBigEndian(answer.data() + kUpperPlace);
    return static_cast<int64_t>(upper << 32 | GetBigEndian(answer.data() + kLowerPlace));
}

}  // namespace GenApi_3_0_ORVANE
