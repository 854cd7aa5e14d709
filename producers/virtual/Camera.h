#pragma once
/// A virtual camera: its settings, its acquisition, and the clock that makes its
/// frames due.

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
#include "virtual/CameraMemory.h"
#include "virtual/Chunks.h"
#include "virtual/Environment.h"

namespace OvVirtual {

/// Who the camera is.
struct CameraIdentity {
    unsigned index = 0;
    bool color = true;
    std::string model;
    std::string serialNumber;
};

/// All operations may be called from any thread; the source's side from one.
class Camera : public OvProducer::FrameSource {
public:
    using Clock = std::chrono::steady_clock;

    Camera(CameraIdentity identity, const Environment& environment);

    const CameraIdentity& Identity() const { return m_identity; }

    // Settings.

    CameraSettings Settings() const;
    /// Bytes of a frame as the camera is set up now.
    size_t PayloadSize() const;
    /// -1019 when the value is out of the range, -1005 when it is locked.
    void Set(const SettingRange& range, int64_t value);
    /// Changes settings by `change` as one step; nothing changes when it fails.
    void Change(bool shapesFrame, const std::function<void(CameraSettings&)>& change);
    /// Until the end settings are taken one by one, whatever they amount to
    /// together. -1005 while frames flow.
    void BeginLoading();
    /// -1019, and all settings as they were before the begin, when the camera
    /// can't combine them.
    void EndLoading();
    bool IsLoading() const;

    CameraSelectors Selectors() const;
    /// -1019 when the value is out of the range.
    void Select(const SelectorRegister& selector, int64_t value);

    std::string UserId() const;
    void SetUserId(const std::string& userId);
    bool ParamsLocked() const;
    void SetParamsLocked(bool locked);

    static constexpr size_t kUserSets = CameraState::kUserSets;
    int64_t UserSetDefault() const;
    void SetUserSetDefault(int64_t set);
    void LoadUserSet(int64_t set);
    /// -1005 for the factory's set.
    void SaveUserSet(int64_t set);
    /// As switched off and on: the default set, no acquisition, time 0, no open
    /// file.
    void Reset();

    /// Takes up what another process left.
    void Recall();
    /// Leaves the state to the next process. A folder that can't be written
    /// costs the memory, not the camera.
    void Keep() const;

    CameraFiles& Files() { return m_files; }
    CameraLink& Link() { return m_link; }

    // Acquisition.

    void Start();
    void Stop();
    bool IsAcquiring() const;
    /// Takes a frame if the camera waits for a software trigger. A camera that
    /// still exposes the last one misses it; where frames wait for buffers and
    /// nothing else, triggers are kept.
    void TriggerSoftware();
    bool WaitsForTrigger() const;

    /// Off the bus for the time that is set, without a farewell.
    void DropOff();

    // Time. Ticks are nanoseconds.

    static constexpr int64_t kTicksPerSecond = 1000000000;
    int64_t Ticks() const;
    void ResetTicks();

    // The frames.

    bool WaitFrame(const std::stop_token& stop) override;
    size_t FrameSize() override;
    bool WaitsForBuffer() override { return m_unpaced; }
    OvProducer::FrameInfo ReadFrame(std::span<std::byte> memory,
                                    const std::stop_token& abort) override;
    void DropFrame() override;

private:
    // With the lock held.
    bool FrameIsPlanned() const;
    bool TakesSoftwareTriggers() const;
    Clock::duration FramePeriod() const;
    uint64_t TicksNow() const;
    void Send(CameraEvent event, uint64_t frame);
    void Leave();
    void LeaveIfDue();
    uint64_t TakeFrameNumber();
    void RequireUnlocked(bool shapesFrame) const;
    void FinishLoading();
    FrameSettings Shape() const;
    OvProducer::FrameInfo Describe(const FrameSettings& settings, uint64_t frame) const;
    void AppendTo(OvProducer::FrameInfo& info, std::span<std::byte> memory) const;

    const CameraIdentity m_identity;
    const CameraMemory m_memory;
    const bool m_unpaced;
    const double m_shortestPeriod;  ///< seconds, by the environment's limit

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    CameraLink m_link;
    CameraState m_state;
    std::optional<CameraSettings> m_beforeLoading;  ///< empty unless settings are loaded
    bool m_paramsLocked = false;
    bool m_acquiring = false;
    std::optional<uint64_t> m_framesLeft;  ///< empty without a limit
    uint64_t m_triggers = 0;
    uint64_t m_frame = 0;
    Clock::time_point m_due;
    Clock::time_point m_epoch = Clock::now();

    // Of the source's thread.
    // The frame that is due.
    FrameSettings m_next;
    std::optional<int64_t> m_nextChunks;  ///< a bit for each; empty without chunk mode
    uint32_t m_nextLines = 0;
    size_t m_nextSize = 0;  ///< bytes, chunks included
    FrameRenderer m_renderer;

    CameraFiles m_files;
};

}  // namespace OvVirtual
