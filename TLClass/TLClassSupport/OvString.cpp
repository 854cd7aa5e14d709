#include "TLClassSupport/OvString.h"

#include <array>
#include <cctype>
#include <cstdarg>
#include <cstdio>

#include "Base/PlainLocale.h"
#include "TLClassSupport/Edian.h"

namespace OVTLClass {

namespace {

constexpr size_t kMessageSize = 1024;

unsigned AddressByte(uint32_t ip, int index) {
    const int shift = CEdian::IsLittleEdian() ? 24 - 8 * index : 8 * index;
    return (ip >> shift) & 0xFFU;
}

}  // namespace

std::string COvString::MsgComposer(const char* format, ...) {
    // The application's locale would change decimal points in texts that others parse.
    const GenICam_3_0_ORVANE::CPlainLocale plain;
    std::array<char, kMessageSize> buffer{};
    va_list arguments;
    va_start(arguments, format);
    // The analyzer doesn't see that va_start sets the list.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return buffer.data();
}

std::string COvString::ConvertInt32ToIPString(int32_t ip) {
    const auto address = static_cast<uint32_t>(ip);
    return MsgComposer("%u.%u.%u.%u", AddressByte(address, 0), AddressByte(address, 1),
                       AddressByte(address, 2), AddressByte(address, 3));
}

std::string COvString::ConvertInt64ToMACString(int64_t mac) {
    const auto value = static_cast<uint64_t>(mac);
    const auto byteAt = [value](int index) {
        return static_cast<unsigned>((value >> (40 - 8 * index)) & 0xFFU);
    };
    std::string text = MsgComposer("%02x-%02x-%02x-%02x-%02x-%02x", byteAt(0), byteAt(1), byteAt(2),
                                   byteAt(3), byteAt(4), byteAt(5));
    for (char& character : text) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    return text;
}

std::vector<std::string> COvString::SplitString(std::string text, const std::string& pattern) {
    std::vector<std::string> pieces;
    if (text.empty()) {
        return pieces;
    }
    text += pattern;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find(pattern, begin);
        if (end == std::string::npos) {
            break;
        }
        pieces.push_back(text.substr(begin, end - begin));
        begin = end + pattern.size();
    }
    return pieces;
}

}  // namespace OVTLClass
