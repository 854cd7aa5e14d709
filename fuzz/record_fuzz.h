#pragma once
/// Inputs that are a row of steps.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/// Cuts an input into records: two bytes that the program knows, the length of what follows, which
/// is cut at the input's end, and that.
/// @param take  called with the two bytes and the content of each
template <class Take>
void ForEachRecord(const uint8_t* data, size_t size, const Take& take) {
    constexpr size_t kHead = 4;
    std::span<const uint8_t> input(data, size);
    while (input.size() >= kHead) {
        const size_t length =
            std::min<size_t>(input[2] * size_t{256} + input[3], input.size() - kHead);
        take(input[0], input[1], std::as_bytes(input.subspan(kHead, length)));
        input = input.subspan(kHead + length);
    }
}
