#pragma once
/// Texts of the interface's records.

#include <cstddef>
#include <cstring>
#include <string>

/// A text of a fixed field, which has no end when it is full.
template <size_t Size>
std::string FieldText(const char (&field)[Size]) {
    return {field, strnlen(field, Size)};
}
