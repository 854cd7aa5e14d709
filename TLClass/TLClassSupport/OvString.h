#pragma once
/// Text helpers of the transport model.

#include <cstdint>
#include <string>
#include <vector>

namespace OVTLClass {

class COvString {
public:
    /// printf into a text of at most 1023 characters; longer text is cut.
    [[gnu::format(printf, 1, 2)]] static std::string MsgComposer(const char* format, ...);

    /// Dotted form of an address with its first number in the top byte.
    static std::string ConvertInt32ToIPString(int32_t ip);

    /// "AA-BB-CC-DD-EE-FF" of the six low bytes, highest first.
    static std::string ConvertInt64ToMACString(int64_t mac);

    /// The pieces between the occurrences of `pattern`. Empty pieces stay; an
    /// empty text has no piece.
    static std::vector<std::string> SplitString(std::string text, const std::string& pattern);
};

}  // namespace OVTLClass
