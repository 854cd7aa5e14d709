#pragma once
/// Calls a function on bytes at any address, also in place.

#include <algorithm>
#include <functional>
#include <string>

#include "Cases.h"
#include "Frames.h"
#include "InstructionSets.h"

/// Bytes of a source.
inline std::vector<uint8_t> MakeBytes(size_t count, Content content) {
    const BayerReference::Raw raw = MakeRaw(static_cast<int>(count), 1, content, 255);
    return {raw.samples.begin(), raw.samples.end()};
}

/// A call from `src` to `dst` that returns a status.
using BytesCall = std::function<int(const void* src, void* dst)>;

/// The first place where `out` differs from the expected bytes; "" if it doesn't.
inline std::string Difference(GuardedBytes& out, const std::vector<uint8_t>& expected) {
    if (std::memcmp(out.Data(), expected.data(), expected.size()) != 0) {
        const auto* const wrong =
            std::mismatch(out.Data(), out.Data() + expected.size(), expected.begin()).first;
        const auto place = static_cast<size_t>(wrong - out.Data());
        return "byte " + std::to_string(place) + " is " + std::to_string(*wrong) + " instead of " +
               std::to_string(expected[place]);
    }
    return out.IsGuardWhole() ? "" : "a byte beside the destination was written";
}

/// Runs the call on a copy of `src` that has no memory after it, so that the address
/// sanitizer sees a read beyond it.
inline std::string CompareBytes(const BytesCall& call, const std::vector<uint8_t>& src,
                                const std::vector<uint8_t>& expected, size_t offset) {
    const size_t before = SourceOffset(offset);
    std::vector<uint8_t> source(src.size() + before);
    std::copy(src.begin(), src.end(), source.begin() + static_cast<ptrdiff_t>(before));
    GuardedBytes out(expected.size(), offset);
    CountCase();
    if (const int status = call(source.data() + before, out.Data()); status != 0) {
        return "status " + std::to_string(status);
    }
    return Difference(out, expected);
}

/// Runs the call in place. The bytes after the result must be those of the source.
inline std::string CompareInPlace(const BytesCall& call, const std::vector<uint8_t>& src,
                                  std::vector<uint8_t> expected, size_t offset) {
    expected.insert(expected.end(), src.begin() + static_cast<ptrdiff_t>(expected.size()),
                    src.end());
    GuardedBytes out(src.size(), offset);
    std::copy(src.begin(), src.end(), out.Data());
    CountCase();
    if (const int status = call(out.Data(), out.Data()); status != 0) {
        return "status " + std::to_string(status);
    }
    return Difference(out, expected);
}

/// Runs the call on every instruction set, also in place.
inline void ExpectSameOnAll(const BytesCall& call, const std::vector<uint8_t>& src,
                            const std::vector<uint8_t>& expected, size_t offset) {
    WithEachInstructionSet([&] {
        EXPECT_EQ(CompareBytes(call, src, expected, offset), "") << src.size() << " bytes";
        EXPECT_EQ(CompareInPlace(call, src, expected, offset), "") << src.size() << " bytes";
    });
}
