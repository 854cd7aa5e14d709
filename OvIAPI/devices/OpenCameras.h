#pragma once
/// The open cameras: those whose handles are valid.

#include <condition_variable>
#include <memory>
#include <string>
#include <vector>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"
#include "camera/DeviceInfo.h"
#include "errors/Place.h"

/// Throws "Can't <what> in <kind> callback" on a thread that runs a callback of the
/// camera, because a close waits for the callback to return.
void CheckMayClose(const COvDeviceInfo& camera, const char* what, const OvPlace& place);

/// A camera is open until a thread begins to close it, and stays in the table until that
/// thread has closed it. Its callbacks may run until then. The thread that closes it
/// waits for them and holds no lock of this class meanwhile, because a callback may call
/// functions that need the lock.
class COpenCameras {
public:
    COpenCameras() = default;
    COpenCameras(const COpenCameras&) = delete;
    COpenCameras& operator=(const COpenCameras&) = delete;

    OV_DEV_HANDLE Add(std::unique_ptr<COvDeviceInfo> camera);
    /// Whether a camera of that address is open or being closed.
    bool IsOpenAt(const std::string& ip) const;

    // The next two return a camera that the caller must close and then pass to EndClosing().

    /// @return null if the camera isn't open. If another thread was closing it, the call
    ///         has waited for that thread
    COvDeviceInfo* BeginClosing(const COvDeviceInfo& camera);
    /// Returns the camera that was opened last. Throws if the calling thread runs a
    /// callback of that camera, or of one that is being closed.
    /// @return null if none is open, after those that other threads were closing are
    ///         closed
    COvDeviceInfo* BeginClosingLast(const OvPlace& place);
    /// Destroys the camera. Its handle is invalid afterwards.
    void EndClosing(const COvDeviceInfo& camera);

private:
    using List = std::vector<std::unique_ptr<COvDeviceInfo>>;

    static List::iterator __Find(List& list, const COvDeviceInfo& camera);
    COvDeviceInfo* __MoveToClosing(List::iterator opened);

    /// Guards both lists.
    mutable OVTLClass::CLock m_lock{OVTLClass::LockRank::Handles};
    List m_open;
    List m_closing;
    std::condition_variable_any m_closed;
};
