// The register that unlocks the advanced features of a camera on an IEEE 1394 bus. It is written
// with a feature's identifier and a time, and read for whether they are granted.

#include "registers/DcamAccessCtrlRegImpl.h"

#include <array>

#include "registers/BigEndian.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Question and answer are two words of four bytes.
constexpr int64_t kLockLength = 8;
/// The time is the lowest 12 bits, the identifier the highest 48.
constexpr uint32_t kTimeoutMask = 0xFFF;
/// The identifier's lower 16 bits share a word with the time.
constexpr unsigned kHalf = 16;

using Bytes = std::array<uint8_t, kLockLength>;

/// The identifier's 48 bits, then the time.
Bytes QuestionOf(int64_t featureID, int64_t timeout) {
    const auto id = static_cast<uint64_t>(featureID);
    const uint32_t time = static_cast<uint32_t>(timeout) & kTimeoutMask;
    Bytes question{};
    PutBigEndian(static_cast<uint32_t>(id >> kHalf), question.data());
    PutBigEndian(static_cast<uint32_t>(id << kHalf) | time, question.data() + kLockLength / 2);
    return question;
}

}  // namespace

void CDcamAccessCtrlRegImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::FeatureID_ID:
            m_FeatureID = property.Integer();
            break;
        case CPropertyID::Timeout_ID:
            m_Timeout = property.Integer();
            break;
        default:
            CRegisterImpl::SetProperty(property);
    }
}

/// The length may come from another node, so it's checked at each read.
void CDcamAccessCtrlRegImpl::CheckLength() {
    if (m_Length.GetValue() != kLockLength) {
        RUNTIME_FAULT_NODE("m_Length.GetValue() == 8");
    }
}

/// Neither the question nor the answer enters the port's cache: the next
/// question may be answered differently.
void CDcamAccessCtrlRegImpl::InternalGet(uint8_t* buffer, int64_t length, bool /*verify*/,
                                         bool ignoreCache) {
    CheckLength();
    CheckAccess(buffer, length, "InternalGet");
    UpdateAddress(ignoreCache);
    const Bytes question = QuestionOf(m_FeatureID, m_Timeout);
    m_pPort->Write(question.data(), m_Address, question.size());
    const EAccessMode mode = InternalGetAccessMode();
    if (!IsReadable(mode)) {
        RUNTIME_EXCEPTION_NODE("Can't read from Register 0x%lX. Access mode is %s",
                               static_cast<unsigned long>(m_Address),
                               EAccessModeClass::ToString(mode));
    }
    m_pPort->Read(buffer, m_Address, length);
}

/// Every write to this register is a question, so clients can't write anything else.
void CDcamAccessCtrlRegImpl::InternalSet(const uint8_t* /*buffer*/, int64_t /*length*/,
                                         bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE("CDcamAccessCtrlRegImpl::InternalSet must not be called");
}

void CDcamAccessCtrlRegImpl::InternalSetValue(int64_t /*value*/, bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE("CDcamAccessCtrlRegImpl::InternalSetValue must not be called");
}

int64_t CDcamAccessCtrlRegImpl::InternalGetValue(bool verify, bool ignoreCache) {
    Bytes answer{};
    InternalGet(answer.data(), answer.size(), verify, ignoreCache);
    const uint64_t upper = GetBigEndian(answer.data());
    return static_cast<int64_t>(upper << 32 | GetBigEndian(answer.data() + kLockLength / 2));
}

}  // namespace GenApi_3_0_ORVANE
