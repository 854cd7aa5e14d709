// Files that nobody else can have put where they are. The folder is opened once and all files are
// reached from there, so that nobody can exchange the folder between two steps.

#include "cache/TrustedFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::COpenFile;

namespace {

/// Others may read descriptions; only their owner may change them.
constexpr mode_t kFileMode = 0644;
constexpr const char* kTemporaryExtension = ".tmp";

/// Repeats a system call that a signal interrupts: programs with timers get many.
template <class Call>
auto Uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The administrator may prepare a cache for all users.
bool IsTrusted(const struct stat& status) {
    constexpr uid_t kAdministrator = 0;
    return status.st_uid == geteuid() || status.st_uid == kAdministrator;
}

/// Opens a folder for its names alone: none but those in it are needed, and a folder that can't
/// be listed will do.
int OpenFolder(const std::string& path) {
    COpenFile folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    const bool isUsable = folder.IsOpen() && fstat(folder.Get(), &status) == 0 && IsTrusted(status);
    return isUsable ? folder.Release() : COpenFile::kNone;
}

/// Until the end rather than by the size, which may have changed since somebody asked for it.
bool ReadAll(int file, std::string& bytes) {
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t count = Uninterrupted([&] { return read(file, block.data(), block.size()); });
        if (count <= 0) {
            return count == 0;
        }
        bytes.append(block.data(), static_cast<size_t>(count));
    }
}

/// A disk may take a part only.
bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count =
            Uninterrupted([&] { return write(file, bytes.data(), bytes.size()); });
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

/// Makes a file of its own: never one that is there already, and never what a link of that name
/// leads to.
bool WriteNew(int folder, const std::string& name, const std::string& bytes) {
    COpenFile file(openat(folder, name.c_str(),
                          O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode));
    return file.IsOpen() && WriteAll(file.Get(), bytes) && file.Close();
}

}  // namespace

CTrustedFolder::CTrustedFolder(const std::string& path) : m_Folder(OpenFolder(path)) {}

/// What isn't trusted is treated as missing, so that the description is read from its source
/// instead. What is trusted and can't be read is reported, as somebody should mend it.
auto CTrustedFolder::Read(const std::string& name, std::string& bytes) const -> EReading {
    if (!m_Folder.IsOpen()) {
        return EReading::Missing;
    }
    // A pipe would keep the process waiting for somebody to write to it.
    const COpenFile file(
        openat(m_Folder.Get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.IsOpen()) {
        return errno == ENOENT || errno == ELOOP ? EReading::Missing : EReading::NotOpened;
    }
    struct stat status {};
    if (fstat(file.Get(), &status) != 0) {
        return EReading::NotRead;
    }
    if (!IsTrusted(status)) {
        return EReading::Missing;
    }
    return S_ISREG(status.st_mode) && ReadAll(file.Get(), bytes) ? EReading::Done
                                                                 : EReading::NotRead;
}

/// First under a temporary name, then renamed, which replaces a file in one step: a reader never
/// meets half of one.
bool CTrustedFolder::Write(const std::string& name, const std::string& bytes) const {
    if (!m_Folder.IsOpen()) {
        return false;
    }
    const std::string temporary = name + kTemporaryExtension;
    Remove(temporary);  // of a process that died
    if (WriteNew(m_Folder.Get(), temporary, bytes) &&
        renameat(m_Folder.Get(), temporary.c_str(), m_Folder.Get(), name.c_str()) == 0) {
        return true;
    }
    Remove(temporary);
    return false;
}

/// A file that can't be removed stays; nobody is worse off than before.
void CTrustedFolder::Remove(const std::string& name) const {
    if (m_Folder.IsOpen()) {
        unlinkat(m_Folder.Get(), name.c_str(), 0);
    }
}

/// The folder was opened for its names alone, so listing needs it opened again. The list owns
/// that one.
bool CTrustedFolder::List(std::vector<std::string>& names) const {
    if (!m_Folder.IsOpen()) {
        return true;
    }
    COpenFile listed(openat(m_Folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto closing = [](DIR* folder) { closedir(folder); };
    const std::unique_ptr<DIR, decltype(closing)> folder(
        listed.IsOpen() ? fdopendir(listed.Get()) : nullptr, closing);
    if (folder == nullptr) {
        return false;
    }
    static_cast<void>(listed.Release());  // the list's from here on
    errno = 0;
    while (const dirent* const entry = readdir(folder.get())) {
        names.emplace_back(entry->d_name);
    }
    return errno == 0;
}

}  // namespace GenApi_3_0_ORVANE
