#include "cache/CacheStream.h"

namespace GenApi_3_0_ORVANE {

namespace {

using namespace std::string_view_literals;

constexpr auto kHeader = "\3\0\0\0\2\0D{CE5EC8AE-C875-498E-8E7B-48F78F219876}\0"sv;
static_assert(kHeader.size() == 46);

}  // namespace

std::string_view GetCacheFileHeader() {
    return kHeader;
}

void CCacheWriter::Number(uint64_t number, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) {
        m_Bytes.push_back(static_cast<char>(number >> (8 * i)));
    }
}

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

void CCacheReader::Fail(State state) {
    if (IsGood()) {
        m_State = state;
        m_Rest = {};
    }
}

}  // namespace GenApi_3_0_ORVANE
