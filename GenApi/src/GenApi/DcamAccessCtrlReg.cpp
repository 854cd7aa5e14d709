#include "GenApi/impl/DcamAccessCtrlReg.h"

#include <array>

#include "GenApi/impl/BigEndian.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr size_t kLength = 8;
constexpr uint32_t kTimeoutMask = 0xFFF;
constexpr unsigned kHalf = 16;

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

void CDcamAccessCtrlRegImpl::InternalGet(uint8_t* buffer, int64_t length, bool verify,
                                         bool /*ignoreCache*/) {
    OV_ASSERT(m_Length.GetValue() == 8);
    const auto id = static_cast<uint64_t>(m_FeatureID);
    std::array<uint8_t, kLength> question{};
    PutBigEndian(static_cast<uint32_t>(id >> kHalf), question.data());
    PutBigEndian(
        static_cast<uint32_t>(id << kHalf) | (static_cast<uint32_t>(m_Timeout) & kTimeoutMask),
        question.data() + kLength / 2);
    CRegisterImpl::InternalSet(question.data(), question.size(), verify);
    const EAccessMode mode = InternalGetAccessMode();
    if (!IsReadable(mode)) {
        RUNTIME_EXCEPTION_NODE("Can't read from Register 0x%lX. Access mode is %s",
                               static_cast<unsigned long>(InternalGetAddress()),
                               EAccessModeClass::ToString(mode));
    }
    CRegisterImpl::InternalGet(buffer, length, verify, true);
}

void CDcamAccessCtrlRegImpl::InternalSet(const uint8_t* /*buffer*/, int64_t /*length*/,
                                         bool /*verify*/) {
    OV_ASSERT(false && "CDcamAccessCtrlRegImpl::InternalSet must not be called");
}

void CDcamAccessCtrlRegImpl::InternalSetValue(int64_t /*value*/, bool /*verify*/) {
    OV_ASSERT(false && "CDcamAccessCtrlRegImpl::InternalSetValue must not be called");
}

int64_t CDcamAccessCtrlRegImpl::InternalGetValue(bool verify, bool ignoreCache) {
    std::array<uint8_t, kLength> answer{};
    InternalGet(answer.data(), answer.size(), verify, ignoreCache);
    const uint64_t upper = GetBigEndian(answer.data());
    return static_cast<int64_t>(upper << 32 | GetBigEndian(answer.data() + kLength / 2));
}

}  // namespace GenApi_3_0_ORVANE
