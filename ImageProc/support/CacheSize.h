#pragma once
/// How much the processor's caches hold.

#include <cstddef>

namespace QyCache {

/// What is assumed where nobody says how large the caches are.
constexpr size_t kUsualBytes = size_t{16} << 20;

/// Bytes of the largest cache, asked of the system once. Takes no memory.
size_t LargestBytes();

/// Bytes of the largest cache that a folder of the system describes; 0 if it describes none.
/// @param folder  has folders "index0", "index1" and so on, each with a file "size", which
///                holds a text such as "32K"
size_t LargestBytesIn(const char* folder);

/// The larger one of two answers, or kUsualBytes if both are 0.
size_t LargestBytesOf(size_t first, size_t second);

}  // namespace QyCache
