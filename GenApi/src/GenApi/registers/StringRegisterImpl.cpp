// Texts in registers, terminated by a zero or by the end of the register.

#include "registers/StringRegisterImpl.h"

#include <cstring>

#include "registers/RegisterBytes.h"

namespace GenApi_3_0_ORVANE {

/// The zero has to fit, too: some devices read their texts up to it. The rest of the register is
/// filled with zeros, so that no old text shines through.
void CStringRegisterImpl::InternalSetValue(const gcstring& value, bool verify) {
    const int64_t length = InternalGetLength();
    if (static_cast<int64_t>(value.size()) >= length) {
        OUT_OF_RANGE_EXCEPTION_NODE("String exceeds maximum length. Max length is %ld", length);
    }
    RegisterBytes bytes(*this, length);
    std::memcpy(bytes.Data(), value.c_str(), value.size());
    InternalSet(bytes.Data(), length, verify);
}

/// A register without a zero is a whole text: one more byte than the register has is always zero.
gcstring CStringRegisterImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    InternalGet(bytes.Data(), length, verify, ignoreCache);
    return bytes.Text();
}

}  // namespace GenApi_3_0_ORVANE
