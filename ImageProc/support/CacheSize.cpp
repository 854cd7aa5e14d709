// Asks the system how large the processor's caches are.

#include "support/CacheSize.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace QyCache {

namespace {

/// What the C library knows. It knows nothing on some processors.
size_t LargestBytesOfLibrary() {
    long most = 0;
    for (const int name : {_SC_LEVEL2_CACHE_SIZE, _SC_LEVEL3_CACHE_SIZE, _SC_LEVEL4_CACHE_SIZE}) {
        most = std::max(most, sysconf(name));
    }
    return static_cast<size_t>(most);
}

size_t UnitOf(char unit) {
    switch (unit) {
        case 'K':
            return size_t{1} << 10;
        case 'M':
            return size_t{1} << 20;
        default:
            return 1;
    }
}

/// The size in a file, or 0.
size_t BytesIn(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    std::array<char, 32> text{};
    const ssize_t length = read(file, text.data(), text.size() - 1);
    close(file);
    size_t number = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + std::max<ssize_t>(length, 0), number);
    return number * UnitOf(*result.ptr);
}

}  // namespace

size_t LargestBytesIn(const char* folder) {
    constexpr int kMostCaches = 16;
    size_t most = 0;
    for (int i = 0; i < kMostCaches; ++i) {
        std::array<char, 256> path{};
        std::snprintf(path.data(), path.size(), "%s/index%d/size", folder, i);
        most = std::max(most, BytesIn(path.data()));
    }
    return most;
}

size_t LargestBytesOf(size_t first, size_t second) {
    const size_t most = std::max(first, second);
    return most == 0 ? kUsualBytes : most;
}

size_t LargestBytes() {
    static const size_t bytes = LargestBytesOf(
        LargestBytesOfLibrary(), LargestBytesIn("/sys/devices/system/cpu/cpu0/cache"));
    return bytes;
}

}  // namespace QyCache
