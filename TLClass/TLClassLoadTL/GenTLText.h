#pragma once
/// Texts that a producer returns in two calls: one without a buffer for the size,
/// one with a buffer for the text.

#include <cstdint>
#include <cstring>
#include <exception>
#include <string>

namespace OVTLClass {

/// Asks for a text of at most `size` bytes, up to its first zero byte. A size
/// that no memory can hold throws std::length_error or std::bad_alloc.
/// @param call  int32_t(char* text, size_t* size), with the producer's status
/// @return the status of the call; the text is untouched when it isn't 0
template <class Call>
int32_t ReadGenTLContent(const Call& call, size_t size, std::string& text) {
    std::string buffer(size, '\0');
    size_t given = size;
    const int32_t status = call(buffer.data(), &given);
    if (status == 0) {
        buffer.resize(strnlen(buffer.data(), size));
        text = std::move(buffer);
    }
    return status;
}

/// Asks for the size and then for the text.
/// @return the status of the first call that failed, or 0
template <class Call>
int32_t ReadGenTLText(const Call& call, std::string& text) {
    size_t size = 0;
    const int32_t status = call(nullptr, &size);
    return status != 0 ? status : ReadGenTLContent(call, size, text);
}

/// Whether the producer returned the text. For queries that never throw: a size
/// that no memory can hold is a lie, and counts as a refusal.
template <class Call>
bool TryReadGenTLContent(const Call& call, size_t size, std::string& text) {
    try {
        return ReadGenTLContent(call, size, text) == 0;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace OVTLClass
