#include "virtual/CameraLock.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "framework/Failure.h"
#include "virtual/CameraMemory.h"

namespace OvVirtual {
namespace {

/// Each stands for a byte of the file, of which a lock is taken. There need be no such byte.
enum class Right : off_t { Control, Solitude };

struct flock LockOf(Right right) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(right);
    lock.l_len = 1;
    return lock;
}

bool TryLock(int descriptor, Right right) {
    struct flock lock = LockOf(right);
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0 || (errno != EAGAIN && errno != EACCES);
}

bool IsLockedElsewhere(int descriptor, Right right) {
    struct flock lock = LockOf(right);
    return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

/// A descriptor for the life of the object.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return m_number; }

private:
    int m_number;
};

}  // namespace

void CameraLock::Open() {
    if (m_file.empty()) {
        return;
    }
    MakeFolderOf(m_file);
    // A folder that can't be written costs the agreement, not the camera.
    m_descriptor = open(m_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

void CameraLock::Take(GenTL::DEVICE_ACCESS_FLAGS access) {
    Open();
    if (m_descriptor < 0) {
        return;
    }
    const bool isFree = access == GenTL::DEVICE_ACCESS_READONLY
                            ? !IsLockedElsewhere(m_descriptor, Right::Solitude)
                            : TryLock(m_descriptor, Right::Control);
    if (!isFree) {
        const std::string holder = Holder();
        Release();
        throw OvProducer::Failure(GenTL::GC_ERR_ACCESS_DENIED, "The camera is in use by " + holder);
    }
    if (access != GenTL::DEVICE_ACCESS_READONLY) {
        SignAsHolder();
    }
    if (access == GenTL::DEVICE_ACCESS_EXCLUSIVE) {
        // Nobody else tries: it takes control first.
        TryLock(m_descriptor, Right::Solitude);
    }
}

void CameraLock::Release() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
        m_descriptor = -1;
    }
}

GenTL::DEVICE_ACCESS_STATUS CameraLock::Status() const {
    const Descriptor file(m_file.empty() ? -1 : open(m_file.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.Number() >= 0 && IsLockedElsewhere(file.Number(), Right::Solitude)) {
        return GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
    }
    if (file.Number() >= 0 && IsLockedElsewhere(file.Number(), Right::Control)) {
        return GenTL::DEVICE_ACCESS_STATUS_READONLY;
    }
    return GenTL::DEVICE_ACCESS_STATUS_READWRITE;
}

void CameraLock::SignAsHolder() const {
    const std::string signature =
        std::string(program_invocation_short_name) + " (process " + std::to_string(getpid()) + ")";
    // A holder without a name is still one.
    if (ftruncate(m_descriptor, 0) == 0) {
        static_cast<void>(pwrite(m_descriptor, signature.data(), signature.size(), 0) == 0);
    }
}

std::string CameraLock::Holder() const {
    std::array<char, 256> signature{};
    const ssize_t size = pread(m_descriptor, signature.data(), signature.size(), 0);
    return size > 0 ? std::string(signature.data(), static_cast<size_t>(size)) : "another process";
}

}  // namespace OvVirtual
