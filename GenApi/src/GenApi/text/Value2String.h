#pragma once
/// Converts values to text and back. After a failure (false) the value is unchanged, except
/// for bytes, which may be partly written.

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

void Value2String(int64_t value, gcstring& text, ERepresentation representation);
bool String2Value(const char* text, int64_t* value, ERepresentation representation);

/// "0x" and the bytes in the order of memory.
void Value2String(const uint8_t* bytes, gcstring& text, int64_t length);
/// Pairs of hexadecimal digits, with or without "0x", until the text or the
/// length ends.
bool String2Value(const gcstring& text, uint8_t* bytes, int64_t length);

/// A number that is the only one of its kind, as registries keep it.
struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
    bool operator==(const GUID&) const = default;
};

/// The form with braces, in capitals.
void Value2String(const GUID& guid, gcstring& text);
/// The form with or without braces.
bool String2Value(const gcstring& text, GUID* guid);

/// "true", "false" or a number.
bool String2Value(const gcstring& text, bool* value);
/// A number as the "C" locale writes it.
bool String2Value(const gcstring& text, double* value);

}  // namespace GenApi_3_0_ORVANE
