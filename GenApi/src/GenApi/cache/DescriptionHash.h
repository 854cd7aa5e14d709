#pragma once
/// The hash under which a preprocessed description is kept.

#include <cstdint>
#include <memory>
#include <string_view>

struct XXH32_state_s;

namespace GenApi_3_0_ORVANE {

/// Takes a description in pieces. Not cryptographic: it only distinguishes descriptions.
class CDescriptionHash {
public:
    /// Begins with the form of the cache file and the family of builds, which both change the
    /// hash.
    CDescriptionHash();
    ~CDescriptionHash();
    CDescriptionHash(const CDescriptionHash&) = delete;
    CDescriptionHash& operator=(const CDescriptionHash&) = delete;

    void Feed(std::string_view bytes);
    /// RuntimeException when the file can't be opened.
    void FeedFile(const char* fileName);
    /// Returns the hash of everything so far. 0 means that the description isn't cached.
    uint32_t Digest() const;

private:
    XXH32_state_s* m_pState;
};

}  // namespace GenApi_3_0_ORVANE
