#pragma once
/// What tests of the cache share: a folder of their own, and its files.

#include <algorithm>
#include <iterator>

#include "FactorySupport.h"

namespace EngineTest {

inline const gcstring kDescription = Description("A", 1);
inline const char* const kForcedRead = "Forced read from cache failed.";
inline const char* const kForcedWrite = "Forced write to cache failed.";

inline std::string BytesOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A cache folder for one test.
class CacheFolder {
public:
    CacheFolder() : m_Scope("GENICAM_CACHE_V3_0", m_Folder.Path()) {}

    const std::string& Path() const { return m_Folder.Path(); }
    bool IsEmpty() const { return m_Folder.IsEmpty(); }
    /// Names of the cache files, without the folder.
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Path())) {
            if (entry.path().extension() == ".bin") {
                names.push_back(entry.path().filename());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    /// The one cache file, with the folder.
    std::string File() const {
        const auto files = Files();
        EXPECT_EQ(files.size(), 1U);
        return files.empty() ? std::string() : Path() + "/" + files.front();
    }
    void Put(const std::string& bytes) const {
        std::ofstream(File(), std::ios::binary | std::ios::trunc) << bytes;
    }
    /// The file becomes one that came without its checksum.
    void ForgetChecksum() const { fs::remove(File() + ".sum"); }

private:
    ScratchFolder m_Folder;
    EnvironmentScope m_Scope;
};

/// Has the description written to the cache.
inline void Store(const gcstring& description) {
    CNodeMapFactory(description, CacheUsage_ForceWrite).Preprocess();
}

}  // namespace EngineTest
