#include "registers/StringRegisterImpl.h"

#include <cstring>

#include "registers/RegisterBytes.h"

namespace GenApi_3_0_ORVANE {

void CStringRegisterImpl::InternalSetValue(const gcstring& value, bool verify) {
    const int64_t length = InternalGetLength();
    if (static_cast<int64_t>(value.size()) >= length) {
        OUT_OF_RANGE_EXCEPTION_NODE("String exceeds maximum length. Max length is %ld", length);
    }
    RegisterBytes bytes(*this, length);
    std::memcpy(bytes.Data(), value.c_str(), value.size());
    InternalSet(bytes.Data(), length, verify);
}

gcstring CStringRegisterImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const int64_t length = InternalGetLength();
    RegisterBytes bytes(*this, length);
    InternalGet(bytes.Data(), length, verify, ignoreCache);
    return bytes.Text();
}

}  // namespace GenApi_3_0_ORVANE
