// What is known of the processor's caches.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/CacheSize.h"

namespace {

namespace fs = std::filesystem;

/// A folder like that of a processor, which is removed with the object.
class CacheFolder {
public:
    CacheFolder() : m_path(fs::path(testing::TempDir()) / ("caches." + std::to_string(getpid()))) {
        fs::create_directory(m_path);
    }
    CacheFolder(const CacheFolder&) = delete;
    CacheFolder& operator=(const CacheFolder&) = delete;
    ~CacheFolder() { fs::remove_all(m_path); }

    void Add(const std::string& cache, const std::string& size) const {
        fs::create_directory(m_path / cache);
        std::ofstream(m_path / cache / "size") << size;
    }
    const fs::path& Path() const { return m_path; }

private:
    fs::path m_path;
};

TEST(CacheSize, IsThatOfTheLargestOne) {
    const CacheFolder folder;
    folder.Add("index0", "48K\n");
    folder.Add("index3", "36864K\n");
    folder.Add("index2", "2048K\n");
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), size_t{36} << 20);
}

TEST(CacheSize, HasEveryUnit) {
    const CacheFolder folder;
    folder.Add("index0", "123456");
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), 123456U);
    folder.Add("index0", "200K");
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), size_t{200} << 10);
    folder.Add("index0", "3M\n");
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), size_t{3} << 20);
}

TEST(CacheSize, IsUnknownWhereNothingSaysIt) {
    const CacheFolder folder;
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), 0U);
    EXPECT_EQ(QyCache::LargestBytesIn((folder.Path() / "absent").c_str()), 0U);
    folder.Add("index0", "unknown");
    fs::create_directory(folder.Path() / "index1");
    folder.Add("other", "5M");
    EXPECT_EQ(QyCache::LargestBytesIn(folder.Path().c_str()), 0U);
}

TEST(CacheSize, IsAUsualOneWhenUnknown) {
    EXPECT_EQ(QyCache::LargestBytesOf(0, 0), QyCache::kUsualBytes);
    EXPECT_EQ(QyCache::LargestBytesOf(5, 0), 5U);
    EXPECT_EQ(QyCache::LargestBytesOf(5, 7), 7U);
}

TEST(CacheSize, OfThisMachineStaysTheSame) {
    EXPECT_GT(QyCache::LargestBytes(), 0U);
    EXPECT_EQ(QyCache::LargestBytes(), QyCache::LargestBytes());
}

}  // namespace
