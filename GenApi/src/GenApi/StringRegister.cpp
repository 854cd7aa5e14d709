#include "GenApi/impl/StringRegister.h"

#include <cstring>
#include <vector>

namespace GenApi_3_0_ORVANE {

void CStringRegisterImpl::InternalSetValue(const gcstring& value, bool verify) {
    const int64_t length = InternalGetLength();
    if (static_cast<int64_t>(value.size()) >= length) {
        OUT_OF_RANGE_EXCEPTION_NODE("String exceeds maximum length. Max length is %d",
                                    static_cast<int>(length));
    }
    std::vector<uint8_t> bytes(static_cast<size_t>(length), 0);
    std::memcpy(bytes.data(), value.c_str(), value.size());
    InternalSet(bytes.data(), length, verify);
}

gcstring CStringRegisterImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const int64_t length = InternalGetLength();
    std::vector<char> text(static_cast<size_t>(length) + 1, '\0');
    InternalGet(reinterpret_cast<uint8_t*>(text.data()), length, verify, ignoreCache);
    return text.data();
}

}  // namespace GenApi_3_0_ORVANE
