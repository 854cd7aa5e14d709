// The bytes of a cache file on their way out and in. Numbers are written byte by byte from the
// low end, so that the machine doesn't matter.

#include "cache/CacheStream.h"

namespace GenApi_3_0_ORVANE {

namespace {

using namespace std::string_view_literals;

/// Three version numbers of two bytes, then the text that names the form, with its zero.
constexpr auto kHeader = "\3\0\0\0\3\0D{CE5EC8AE-C875-498E-8E7B-48F78F219876}\0"sv;
static_assert(kHeader.size() == 46);

}  // namespace

std::string_view GetCacheFileHeader() {
    return kHeader;
}

/// As many bytes as the form has for this number.
void CCacheWriter::Number(uint64_t number, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) {
        m_Bytes.push_back(static_cast<char>(number >> (8 * i)));
    }
}

/// Returned without a copy: the bytes of the file outlive the reader.
std::string_view CCacheReader::Text() {
    const size_t length = m_Rest.find('\0');
    if (length == std::string_view::npos) {
        Fail(State::Corrupt);
        return {};
    }
    const std::string_view text = m_Rest.substr(0, length);
    m_Rest.remove_prefix(length + 1);
    return text;
}

void CCacheReader::Header() {
    if (m_Rest.starts_with(kHeader)) {
        m_Rest.remove_prefix(kHeader.size());
    } else {
        // A file that ends within its header is no more than the beginning of one.
        Fail(kHeader.starts_with(m_Rest) ? State::Corrupt : State::Foreign);
    }
}

/// The first failure is the cause, and all later ones follow from it. Without a rest, every later
/// read ends at once.
void CCacheReader::Fail(State state) {
    if (IsGood()) {
        m_State = state;
        m_Rest = {};
    }
}

}  // namespace GenApi_3_0_ORVANE
