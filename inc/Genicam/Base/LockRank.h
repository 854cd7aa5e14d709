#pragma once
/// The order in which the library's locks are taken.

#include <cstdint>

namespace OvBase {

/// Every lock has a rank, and a thread takes locks of rising ranks only: whoever holds a lock
/// never waits for one that comes before it in this list. So no two threads ever wait for one
/// another.
enum class LockRank : uint8_t {
    /// For the locks of a program's own node maps: nobody knows what it does while it holds them.
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
    /// Held while a file goes to a camera or comes from it.
    FileTransfer,
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
    NodeHandles,
    NodeTable,
    KnownNodes,
    Folders,
    SharedDescriptions,
    LogInstance,
    Log,
};

#ifdef NDEBUG

/// @name Checks of debug builds, which cost nothing here
/// @{
inline void CheckLockOrder(const void* /*lock*/, LockRank /*rank*/, const void* /*camera*/) {}
inline void NoteLocked(const void* /*lock*/, LockRank /*rank*/) {}
inline void NoteUnlocked(const void* /*lock*/) {}
class CApplicationCall {
public:
    explicit CApplicationCall(const void* /*camera*/) {}
};
/// @}

#else

/// Call before waiting for a lock: asserts if the calling thread holds one of the same or a
/// higher rank. A lock that the thread holds already isn't waited for.
/// @param camera  that the lock belongs to; null for none
void CheckLockOrder(const void* lock, LockRank rank, const void* camera);
/// Call after a lock was taken.
void NoteLocked(const void* lock, LockRank rank);
/// Call after a lock was given back.
void NoteUnlocked(const void* lock);

/// While it lives, the thread runs a callback of an application for that camera. The application
/// may use anything that isn't part of this camera, with locks of any rank. What it may not do
/// with the camera itself is refused before a lock is taken.
class CApplicationCall {
public:
    /// @param camera  identifies it by its address; null for none
    explicit CApplicationCall(const void* camera);
    ~CApplicationCall();
    CApplicationCall(const CApplicationCall&) = delete;
    CApplicationCall& operator=(const CApplicationCall&) = delete;

private:
    const CApplicationCall* m_outer;
    const void* m_camera;
    /// How many locks the thread held when the callback began.
    unsigned m_held;

    friend void CheckLockOrder(const void* lock, LockRank rank, const void* camera);
};

#endif

}  // namespace OvBase
