#pragma once
/// The order in which the library's locks are taken.

#include <cstdint>

namespace OvBase {

/// Every lock has a rank, and a thread takes locks of rising ranks only: whoever
/// holds one never waits for a lock that stands above it here. So no two threads
/// ever wait for one another.
enum class LockRank : uint8_t {
    /// Of a program's own node maps: nobody knows what it does inside them.
    None,

    // The flat interface and the producers.
    Api,
    Producers,
    Search,
    GenericUpdate,
    GevUpdate,
    SystemUpdate,
    LostInterfaces,
    InterfaceUpdate,
    CreateByAddress,
    OpeningAddresses,
    Handles,
    KnownDevices,

    // One camera.
    Acquisition,
    Device,
    Stream,
    DeviceList,
    LoadDescription,
    /// Held while a capture callback runs, which may use features.
    CaptureCallback,
    /// Held while a feature callback runs.
    NodeMap,
    OfflineChannel,
    OfflineCallbacks,
    FeatureCallbacks,
    PollingThread,
    Polling,
    FreeFrames,
    LentFrames,
    BufferQueue,

    // Held for a look or a copy.
    HandleStream,
    Children,
    LostDevices,
    Information,
    Updater,
    ProducersInstance,
    UserId,
    Folders,
    LogInstance,
    Log,
};

#ifdef NDEBUG

inline void CheckLockOrder(const void* /*lock*/, LockRank /*rank*/, const void* /*camera*/) {}
inline void NoteLocked(const void* /*lock*/, LockRank /*rank*/) {}
inline void NoteUnlocked(const void* /*lock*/) {}

/// See below.
class CApplicationCall {
public:
    explicit CApplicationCall(const void* /*camera*/) {}
};

#else

/// To be called before the calling thread waits for a lock: an assertion when it
/// holds one of the same or a higher rank. A lock that the thread holds already
/// isn't waited for.
/// @param camera  that the lock belongs to; null for none
void CheckLockOrder(const void* lock, LockRank rank, const void* camera);
void NoteLocked(const void* lock, LockRank rank);
void NoteUnlocked(const void* lock);

/// While it lives, the thread runs a callback of an application for that camera. The
/// application may turn to whatever is none of this camera's, from the start:
/// what it may not do with the camera itself is refused before a lock is taken.
class CApplicationCall {
public:
    explicit CApplicationCall(const void* camera);
    ~CApplicationCall();
    CApplicationCall(const CApplicationCall&) = delete;
    CApplicationCall& operator=(const CApplicationCall&) = delete;

private:
    const CApplicationCall* m_outer;
    const void* m_camera;
    /// How many locks the thread held at its begin.
    unsigned m_held;

    friend void CheckLockOrder(const void* lock, LockRank rank, const void* camera);
};

#endif

}  // namespace OvBase
