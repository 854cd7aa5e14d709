#pragma once
/// Bounds for what a description may ask of whoever loads it. A description comes
/// from a device or from a file, and a few kilobytes can ask for more memory and
/// time than any machine has. No real camera comes near one of the bounds; what
/// passes one is refused with a text that names it. docs/limits.md lists them.

#include <cstddef>

namespace GenApi_3_0_ORVANE {

/// Elements within one another.
inline constexpr size_t kMaxElementDepth = 200;
/// Characters of a name. Real ones stay below a hundred.
inline constexpr size_t kMaxNameLength = 1024;
/// Bytes of a description after unpacking; an entry that claims more is a lie.
inline constexpr size_t kMaxUnpackedBytes = 256UL * 1024 * 1024;
/// Properties that structures and expressions repeat, which grow with the square
/// of a description.
inline constexpr size_t kMaxRepeatedProperties = 1000000;
/// Properties that preprocessing adds. Each node gets a link to every node that depends on it: a
/// chain of n links makes n * n / 2 of them, and selected nodes or categories that are nested as
/// diamonds make two to the power of n.
inline constexpr size_t kMaxDerivedProperties = 16000000;
/// Links that preprocessing looks at to find those.
inline constexpr size_t kMaxPreprocessingSteps = 10 * kMaxDerivedProperties;

}  // namespace GenApi_3_0_ORVANE
