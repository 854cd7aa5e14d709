#include "virtual/Camera.h"

#include <algorithm>
#include <utility>

#include "framework/Failure.h"
#include "framework/RequireRange.h"
#include "virtual/FactoryCalibration.h"

namespace OvVirtual {

using OvProducer::Failure;
using OvProducer::RequireRange;

namespace {

std::filesystem::path MemoryFile(const Environment& environment, const CameraIdentity& identity,
                                 const char* extension = "") {
    return environment.stateFolder.empty()
               ? std::filesystem::path()
               : environment.stateFolder / (identity.serialNumber + extension);
}

Camera::Clock::duration Seconds(double seconds) {
    return std::chrono::duration_cast<Camera::Clock::duration>(
        std::chrono::duration<double>(seconds));
}

Camera::Clock::duration Exposure(const CameraSettings& settings) {
    return Seconds(ExposureTime(settings));
}

}  // namespace

Camera::Camera(CameraIdentity identity, const Environment& environment)
    : m_identity(std::move(identity)),
      m_lock(MemoryFile(environment, m_identity, ".lock")),
      m_memory(MemoryFile(environment, m_identity)),
      m_unpaced(environment.frameRate && *environment.frameRate == 0),
      m_shortestPeriod(environment.frameRate && !m_unpaced ? 1 / *environment.frameRate : 0),
      m_state(m_memory.Load(m_identity.color).value_or(FactoryState(m_identity.color))),
      m_files(FactoryCalibration(m_identity)) {
    m_files.SetUserFile(std::exchange(m_state.userFile, std::nullopt));
}

CameraSettings Camera::Settings() const {
    const std::lock_guard lock(m_mutex);
    return m_state.settings;
}

FrameSettings Camera::Shape() const {
    return FrameSettingsOf(m_state.settings, m_identity.color, m_identity.index);
}

size_t Camera::PayloadSize() const {
    const std::lock_guard lock(m_mutex);
    return OvVirtual::PayloadSize(m_state.settings, OvVirtual::FrameSize(Shape()));
}

void Camera::Set(const SettingRange& range, int64_t value) {
    if (value < range.min || value > range.max || (value - range.min) % range.step != 0) {
        throw Failure(GenTL::GC_ERR_INVALID_VALUE, "The value is out of the register's range");
    }
    Change(range.shapesFrame, [&](CameraSettings& settings) { settings.*range.field = value; });
}

void Camera::Change(bool shapesFrame, const std::function<void(CameraSettings&)>& change) {
    {
        const std::lock_guard lock(m_mutex);
        RequireUnlocked(shapesFrame);
        CameraSettings changed = m_state.settings;
        change(changed);
        if (!m_beforeLoading) {
            CheckSettings(changed, m_identity.color);
        }
        m_state.settings = std::move(changed);
    }
    m_changed.notify_all();
}

void Camera::BeginLoading() {
    const std::lock_guard lock(m_mutex);
    RequireUnlocked(true);
    if (!m_beforeLoading) {
        m_beforeLoading = m_state.settings;
    }
}

void Camera::EndLoading() {
    const std::lock_guard lock(m_mutex);
    FinishLoading();
}

void Camera::FinishLoading() {
    if (!m_beforeLoading) {
        return;
    }
    const CameraSettings before = *std::exchange(m_beforeLoading, std::nullopt);
    try {
        CheckSettings(m_state.settings, m_identity.color);
    } catch (const Failure&) {
        m_state.settings = before;
        throw;
    }
}

bool Camera::IsLoading() const {
    const std::lock_guard lock(m_mutex);
    return m_beforeLoading.has_value();
}

void Camera::RequireUnlocked(bool shapesFrame) const {
    if (shapesFrame && (m_acquiring || m_paramsLocked)) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The setting is locked while frames flow");
    }
}

CameraSelectors Camera::Selectors() const {
    const std::lock_guard lock(m_mutex);
    return m_state.selectors;
}

void Camera::Select(const SelectorRegister& selector, int64_t value) {
    RequireRange(value, 0, selector.max);
    const std::lock_guard lock(m_mutex);
    m_state.selectors.*selector.field = value;
}

std::string Camera::UserId() const {
    const std::lock_guard lock(m_mutex);
    return m_state.userId;
}

void Camera::SetUserId(const std::string& userId) {
    const std::lock_guard lock(m_mutex);
    m_state.userId = userId;
}

bool Camera::ParamsLocked() const {
    const std::lock_guard lock(m_mutex);
    return m_paramsLocked;
}

void Camera::SetParamsLocked(bool locked) {
    const std::lock_guard lock(m_mutex);
    m_paramsLocked = locked;
}

int64_t Camera::UserSetDefault() const {
    const std::lock_guard lock(m_mutex);
    return m_state.userSetDefault;
}

void Camera::SetUserSetDefault(int64_t set) {
    const std::lock_guard lock(m_mutex);
    m_state.userSetDefault = set;
}

void Camera::LoadUserSet(int64_t set) {
    Change(true, [&](CameraSettings& settings) {
        settings = m_state.userSets[static_cast<size_t>(set)];
    });
}

void Camera::SaveUserSet(int64_t set) {
    if (set == 0) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The factory's set can't be overwritten");
    }
    const std::lock_guard lock(m_mutex);
    FinishLoading();
    m_state.userSets[static_cast<size_t>(set)] = m_state.settings;
}

void Camera::Reset() {
    m_files.Reset();
    const std::lock_guard lock(m_mutex);
    m_acquiring = false;
    m_paramsLocked = false;
    m_beforeLoading.reset();
    m_state.settings = m_state.userSets[static_cast<size_t>(m_state.userSetDefault)];
    m_state.selectors = {};
    m_epoch = Clock::now();
}

void Camera::Recall() {
    const std::lock_guard lock(m_mutex);
    m_beforeLoading.reset();
    TakeUpMemory();
}

void Camera::Follow() {
    const std::lock_guard lock(m_mutex);
    if (m_memory.IsNewer()) {
        TakeUpMemory();
    }
}

void Camera::TakeUpMemory() {
    if (std::optional<CameraState> state = m_memory.Load(m_identity.color)) {
        m_state = *std::move(state);
        m_files.SetUserFile(std::exchange(m_state.userFile, std::nullopt));
    }
}

void Camera::Keep() {
    const std::lock_guard lock(m_mutex);
    CameraState state = m_state;
    state.settings = m_beforeLoading.value_or(m_state.settings);
    state.userFile = m_files.UserFile();
    m_memory.Store(state);
}

void Camera::Start() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_acquiring) {
            return;
        }
        FinishLoading();
        m_acquiring = true;
        m_frame = 0;
        m_triggers = 0;
        switch (static_cast<AcquisitionMode>(m_state.settings.acquisitionMode)) {
            case AcquisitionMode::SingleFrame:
                m_framesLeft = 1;
                break;
            case AcquisitionMode::MultiFrame:
                m_framesLeft = static_cast<uint64_t>(m_state.settings.frameCount);
                break;
            default:
                m_framesLeft.reset();
        }
        m_due = Clock::now() + FramePeriod();
    }
    m_changed.notify_all();
}

void Camera::Stop() {
    const std::lock_guard lock(m_mutex);
    m_acquiring = false;
}

bool Camera::IsAcquiring() const {
    const std::lock_guard lock(m_mutex);
    return m_acquiring;
}

void Camera::Trigger(TriggerSource source) {
    {
        const std::lock_guard lock(m_mutex);
        if (!TakesTriggers(source)) {
            return;
        }
        if (m_triggers != 0 && !m_unpaced) {
            Send(CameraEvent::FrameStartOvertrigger, m_frame);
            return;
        }
        if (m_triggers++ == 0) {
            m_due = std::max(m_due, Clock::now() + Exposure(m_state.settings));
        }
    }
    m_changed.notify_all();
}

bool Camera::TakesTriggers(TriggerSource source) const {
    const CameraSettings& settings = m_state.settings;
    return m_acquiring && settings.triggerMode != 0 &&
           settings.triggerSource == static_cast<int64_t>(source);
}

bool Camera::WaitsForTrigger() const {
    const std::lock_guard lock(m_mutex);
    return m_acquiring && m_state.settings.triggerMode != 0 && m_triggers == 0;
}

int64_t Camera::Ticks() const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int64_t>(TicksNow());
}

uint64_t Camera::TicksNow() const {
    using std::chrono::system_clock;
    if (m_sharesClock) {
        return static_cast<uint64_t>(
            std::chrono::nanoseconds(system_clock::now().time_since_epoch()).count());
    }
    return static_cast<uint64_t>(std::chrono::nanoseconds(Clock::now() - m_epoch).count());
}

void Camera::ResetTicks() {
    const std::lock_guard lock(m_mutex);
    m_epoch = Clock::now();
}

void Camera::ShareClock(bool on) {
    const std::lock_guard lock(m_mutex);
    if (m_sharesClock && !on) {
        // Its own clock goes on from the time that it had.
        m_epoch = Clock::now() - std::chrono::nanoseconds(TicksNow());
    }
    m_sharesClock = on;
}

bool Camera::SharesClock() const {
    const std::lock_guard lock(m_mutex);
    return m_sharesClock;
}

bool Camera::FrameIsPlanned() const {
    return m_acquiring && (m_state.settings.triggerMode == 0 || m_triggers != 0);
}

Camera::Clock::duration Camera::FramePeriod() const {
    return Seconds(std::max(FrameTime(m_state.settings), m_shortestPeriod));
}

void Camera::Send(CameraEvent event, uint64_t frame) {
    if ((m_state.settings.eventsEnabled & BitOf(event)) != 0) {
        m_link.Send(event, frame, TicksNow());
    }
}

void Camera::DropOff() {
    const std::lock_guard lock(m_mutex);
    Leave();
}

void Camera::Leave() {
    m_acquiring = false;
    m_state.settings.dropOffFrames = 0;
    m_link.DropOff(std::chrono::milliseconds(m_state.settings.dropOffTime));
}

void Camera::LeaveIfDue() {
    const auto frames = static_cast<uint64_t>(m_state.settings.dropOffFrames);
    if (m_acquiring && frames != 0 && m_frame >= frames) {
        Leave();
    }
}

bool Camera::WaitFrame(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    LeaveIfDue();
    while (m_changed.wait(lock, stop, [this] { return FrameIsPlanned(); })) {
        if (m_unpaced || Clock::now() >= m_due) {
            return true;
        }
        // A stop of the camera ends this wait as well.
        m_changed.wait_until(lock, stop, m_due, [this] { return !FrameIsPlanned(); });
        if (stop.stop_requested()) {
            return false;
        }
    }
    return false;
}

size_t Camera::FrameSize() {
    // The frame keeps its settings even if the camera is stopped and changed before the
    // frame is read.
    const std::lock_guard lock(m_mutex);
    const CameraSettings& settings = m_state.settings;
    m_next = Shape();
    m_nextChunks = settings.chunkMode != 0 ? std::optional(settings.chunksEnabled) : std::nullopt;
    m_nextLines = LineStatus(settings);
    m_nextSize = OvVirtual::PayloadSize(settings, OvVirtual::FrameSize(m_next));
    return m_nextSize;
}

uint64_t Camera::TakeFrameNumber() {
    // If rendering takes too long, the camera becomes slower. It doesn't make up for the
    // frames that it missed.
    m_due = std::max(m_due + FramePeriod(), Clock::now());
    Send(CameraEvent::ExposureEnd, m_frame);
    m_triggers -= m_triggers == 0 ? 0 : 1;
    if (m_framesLeft && *m_framesLeft != 0 && --*m_framesLeft == 0) {
        m_acquiring = false;
    }
    return m_frame++;
}

OvProducer::FrameInfo Camera::ReadFrame(std::span<std::byte> memory, const std::stop_token& abort) {
    OvProducer::FrameInfo info;
    {
        const std::lock_guard lock(m_mutex);
        info = Describe(m_next, TakeFrameNumber());
    }
    info.incomplete = !m_renderer.Render(m_next, info.frameId, memory, abort);
    if (m_nextChunks) {
        AppendTo(info, memory);
    }
    return info;
}

void Camera::AppendTo(OvProducer::FrameInfo& info, std::span<std::byte> memory) const {
    info.chunks =
        AppendChunks(memory, info.sizeFilled, *m_nextChunks,
                     {info.frameId, info.timestamp, m_next.exposure, m_next.gain, m_nextLines});
    info.sizeFilled = m_nextSize;
    info.chunkPayloadSize = m_nextSize;
    info.payloadType = GenTL::PAYLOAD_TYPE_CHUNK_DATA;
}

void Camera::DropFrame() {
    const std::lock_guard lock(m_mutex);
    Send(CameraEvent::BlockDiscard, TakeFrameNumber());
}

OvProducer::FrameInfo Camera::Describe(const FrameSettings& settings, uint64_t frame) const {
    OvProducer::FrameInfo info;
    info.width = settings.width;
    info.height = settings.height;
    info.offsetX = settings.offsetX;
    info.offsetY = settings.offsetY;
    info.deliveredHeight = settings.height;
    info.sizeFilled = OvVirtual::FrameSize(settings);
    info.pixelFormat = static_cast<uint64_t>(settings.format);
    info.frameId = frame;
    info.timestamp = TicksNow();
    info.timestampNs = info.timestamp;
    return info;
}

}  // namespace OvVirtual
