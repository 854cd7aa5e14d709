#pragma once
/// A virtual camera: its settings, its acquisition, and the clock that decides when
/// frames are due.

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

#include "framework/Acquisition.h"
#include "virtual/CameraFiles.h"
#include "virtual/CameraLink.h"
#include "virtual/CameraLock.h"
#include "virtual/CameraMemory.h"
#include "virtual/Chunks.h"
#include "virtual/Environment.h"

namespace OvVirtual {

/// What identifies the camera.
struct CameraIdentity {
    unsigned index = 0;
    bool color = true;
    std::string model;
    std::string serialNumber;
};

/// Any thread may call all operations, except those of the frame source, which one thread
/// calls.
class Camera : public OvProducer::FrameSource {
public:
    using Clock = std::chrono::steady_clock;

    Camera(CameraIdentity identity, const Environment& environment);

    const CameraIdentity& Identity() const { return m_identity; }

    // Settings.

    CameraSettings Settings() const;
    /// Size of a frame with the present settings, in bytes.
    size_t PayloadSize() const;
    /// Fails with -1019 if the value is out of range, with -1005 if the setting is
    /// locked.
    void Set(const SettingRange& range, int64_t value);
    /// Changes several settings in one step. Changes nothing if it fails.
    void Change(bool shapesFrame, const std::function<void(CameraSettings&)>& change);
    /// Until `EndLoading`, settings may contradict each other, so that they can be loaded
    /// one by one. Fails with -1005 during an acquisition.
    void BeginLoading();
    /// If the settings contradict each other, restores those from before `BeginLoading`
    /// and fails with -1019.
    void EndLoading();
    bool IsLoading() const;

    CameraSelectors Selectors() const;
    /// Fails with -1019 if the value is out of range.
    void Select(const SelectorRegister& selector, int64_t value);

    std::string UserId() const;
    void SetUserId(const std::string& userId);
    bool ParamsLocked() const;
    void SetParamsLocked(bool locked);

    static constexpr size_t kUserSets = CameraState::kUserSets;
    int64_t UserSetDefault() const;
    void SetUserSetDefault(int64_t set);
    void LoadUserSet(int64_t set);
    /// Fails with -1005 for the factory's set.
    void SaveUserSet(int64_t set);
    /// Does what switching the camera off and on does: loads the default set, stops the
    /// acquisition, sets the time to 0 and closes files.
    void Reset();

    /// Restores the state that the last process saved.
    void Recall();
    /// Does the same while another process has control, if it changed anything since.
    void Follow();
    /// Saves the state for other processes. If the folder can't be written, the state is
    /// lost, but the camera goes on.
    void Keep();

    CameraFiles& Files() { return m_files; }
    CameraLink& Link() { return m_link; }
    CameraLock& Lock() { return m_lock; }

    // Acquisition.

    void Start();
    void Stop();
    bool IsAcquiring() const;
    /// Starts a frame if the camera is waiting for a trigger of that source. The trigger is
    /// missed if the last frame is still being exposed, unless frames only wait for
    /// buffers.
    void Trigger(TriggerSource source);
    bool WaitsForTrigger() const;

    /// Drops off the bus for the time that is set, without a message.
    void DropOff();

    // Time, in ticks of a nanosecond.

    static constexpr int64_t kTicksPerSecond = 1000000000;
    int64_t Ticks() const;
    /// Does nothing while the camera shares a clock, which isn't its own to set.
    void ResetTicks();
    /// Whether the camera has the time of a clock that cameras share: this machine's.
    void ShareClock(bool on);
    bool SharesClock() const;

    // The frames.

    bool WaitFrame(const std::stop_token& stop) override;
    size_t FrameSize() override;
    bool WaitsForBuffer() override { return m_unpaced; }
    OvProducer::FrameInfo ReadFrame(std::span<std::byte> memory,
                                    const std::stop_token& abort) override;
    void DropFrame() override;

private:
    // To be called with the lock held.
    bool FrameIsPlanned() const;
    bool TakesTriggers(TriggerSource source) const;
    Clock::duration FramePeriod() const;
    uint64_t TicksNow() const;
    void Send(CameraEvent event, uint64_t frame);
    void Leave();
    void LeaveIfDue();
    uint64_t TakeFrameNumber();
    void RequireUnlocked(bool shapesFrame) const;
    void FinishLoading();
    void TakeUpMemory();
    FrameSettings Shape() const;
    OvProducer::FrameInfo Describe(const FrameSettings& settings, uint64_t frame) const;
    void AppendTo(OvProducer::FrameInfo& info, std::span<std::byte> memory) const;

    const CameraIdentity m_identity;
    CameraLock m_lock;
    CameraMemory m_memory;
    const bool m_unpaced;
    const double m_shortestPeriod;  ///< in seconds, from the limit of the environment

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    CameraLink m_link;
    CameraState m_state;
    std::optional<CameraSettings> m_beforeLoading;  ///< empty unless settings are being loaded
    bool m_paramsLocked = false;
    bool m_acquiring = false;
    std::optional<uint64_t> m_framesLeft;  ///< empty without a limit
    uint64_t m_triggers = 0;
    uint64_t m_frame = 0;
    Clock::time_point m_due;
    Clock::time_point m_epoch = Clock::now();  ///< of the camera's own clock
    bool m_sharesClock = false;

    // Used only by the thread of the frame source.
    // The frame that is due.
    FrameSettings m_next;
    std::optional<int64_t> m_nextChunks;  ///< a bit for each chunk; empty without chunk mode
    uint32_t m_nextLines = 0;
    size_t m_nextSize = 0;  ///< bytes, chunks included
    FrameRenderer m_renderer;

    CameraFiles m_files;
};

}  // namespace OvVirtual
