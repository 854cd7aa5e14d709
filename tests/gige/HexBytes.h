#pragma once
/// Packets in tests as hexadecimal texts.

#include <cstddef>
#include <string_view>

#include "gige/protocol/BigEndian.h"

/// The bytes of "42 01 00 80"; blanks are for the reader.
inline OvGige::Bytes FromHex(std::string_view text) {
    OvGige::Bytes bytes;
    int digits = 0;
    unsigned value = 0;
    for (const char c : text) {
        if (c == ' ') {
            continue;
        }
        value = value * 16 + static_cast<unsigned>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
        if (++digits == 2) {
            bytes.push_back(static_cast<std::byte>(value));
            digits = 0;
            value = 0;
        }
    }
    return bytes;
}
