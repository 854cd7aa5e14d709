#pragma once
/// The cameras whose handles applications have.

#include <condition_variable>
#include <memory>
#include <string>
#include <vector>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"
#include "camera/DeviceInfo.h"
#include "errors/Place.h"

/// Raises "Can't <what> in <kind> callback" on a thread that runs a callback of the
/// camera: the close waits for the end of the callback.
void CheckMayClose(const COvDeviceInfo& camera, const char* what, const OvPlace& place);

/// A camera is open until a thread begins to close it; it stays in the table until
/// that thread has ended. Callbacks of the camera may run until then, and the close
/// waits for them: that thread holds no lock of this class meanwhile.
class COpenCameras {
public:
    COpenCameras() = default;
    COpenCameras(const COpenCameras&) = delete;
    COpenCameras& operator=(const COpenCameras&) = delete;

    OV_DEV_HANDLE Add(std::unique_ptr<COvDeviceInfo> camera);
    /// Whether a camera of that address is open, being closed included.
    bool IsOpenAt(const std::string& ip) const;

    // Whoever takes a camera from one of these closes it and calls EndClosing.

    /// @return null when the camera isn't open, or no longer: the call has waited for the
    ///         other thread that closed it
    COvDeviceInfo* BeginClosing(const COvDeviceInfo& camera);
    /// The camera that was opened last. Raises when the calling thread runs a callback of
    /// that camera, or of one that is being closed.
    /// @return null when none is left, after waiting for those that are being closed
    COvDeviceInfo* BeginClosingLast(const OvPlace& place);
    /// Destroys the camera: its handle is void.
    void EndClosing(const COvDeviceInfo& camera);

private:
    using List = std::vector<std::unique_ptr<COvDeviceInfo>>;

    static List::iterator __Find(List& list, const COvDeviceInfo& camera);
    COvDeviceInfo* __MoveToClosing(List::iterator opened);

    /// Of both lists.
    mutable OVTLClass::CLock m_lock{OVTLClass::LockRank::Handles};
    List m_open;
    List m_closing;
    std::condition_variable_any m_closed;
};
