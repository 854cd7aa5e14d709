#pragma once
/// The hash under which a preprocessed description is kept.

#include <cstdint>
#include <memory>
#include <string_view>

struct XXH32_state_s;

namespace GenApi_3_0_ORVANE {

/// Takes a description in pieces. The bits guard against no one: they tell
/// descriptions apart, fast.
class CDescriptionHash {
public:
    /// Begins with what tells one form of the file, and one build family, from
    /// another.
    CDescriptionHash();
    ~CDescriptionHash();
    CDescriptionHash(const CDescriptionHash&) = delete;
    CDescriptionHash& operator=(const CDescriptionHash&) = delete;

    void Feed(std::string_view bytes);
    /// RuntimeException when the file can't be opened.
    void FeedFile(const char* fileName);
    /// 0 is a hash of no use.
    uint32_t Digest() const;

private:
    XXH32_state_s* m_pState;
};

}  // namespace GenApi_3_0_ORVANE
