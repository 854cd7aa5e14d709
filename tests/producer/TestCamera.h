/// @file
/// The test producer's camera: 64 KiB of memory, small frames of known content.
#ifndef OV_TEST_CAMERA_H
#define OV_TEST_CAMERA_H

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "framework/Backend.h"

namespace OvTest {

class TestStream;

/// Addresses of the registers that the camera itself reads.
namespace CameraRegister {
constexpr std::size_t UserId = 0x0200;
constexpr std::size_t Width = 0x0400;
constexpr std::size_t Height = 0x0404;
constexpr std::size_t OffsetX = 0x0408;
constexpr std::size_t OffsetY = 0x040C;
constexpr std::size_t PixelFormat = 0x0410;
constexpr std::size_t PayloadSize = 0x0414;
}  // namespace CameraRegister

/// A description file with which a test replaces a module's own.
struct FileOverride {
    std::string fileName;
    std::vector<std::byte> content;
};

/// A test's changes to the description of one module.
struct DescriptionOverride {
    std::unique_ptr<FileOverride> file;
    std::unique_ptr<std::string> url;

    /// Adds `own` or its replacement to the port.
    void Apply(OvProducer::Port& port, const OvProducer::Description& own) const;
    /// Replaces the URLs of the port, if a test has set one.
    void ApplyUrl(OvProducer::Port& port) const;
};

/// The settings of the test that apply to all devices.
class CameraSettings {
public:
    virtual ~CameraSettings() = default;
    virtual bool OffersEvent(GenTL::EVENT_TYPE type) const = 0;
    virtual void DescribeRemote(OvProducer::Port& port) const = 0;
};

class TestCamera : public OvProducer::DeviceBackend,
                   public std::enable_shared_from_this<TestCamera> {
public:
    TestCamera(const CameraSettings& settings, OvProducer::DeviceFacts facts);
    ~TestCamera() override;

    OvProducer::DeviceFacts Facts() override;
    void Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<OvProducer::EventSink> sink) override;
    void Close() override;
    bool OffersEvent(GenTL::EVENT_TYPE type) override { return m_settings.OffersEvent(type); }
    std::unique_ptr<OvProducer::Port> MakeRemotePort() override;
    std::vector<std::shared_ptr<OvProducer::StreamBackend>> Streams() override;
    void CheckUsable() override;

    // For the test.

    void ChangeFacts(const std::function<void(OvProducer::DeviceFacts&)>& change);
    void SetStreamCount(std::size_t count);
    std::vector<std::shared_ptr<TestStream>> AllStreams() const;
    void Lose();
    void Return();
    bool IsLost() const;
    /// Whether only a search of the whole network finds the camera.
    void SetForeign(bool on) { m_foreign = on; }
    bool IsForeign() const { return m_foreign; }
    void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry);
    std::int64_t CommandCount(std::size_t offset) const;

    /// The camera's memory. Accesses must be within it.
    void ReadMemory(std::size_t offset, std::span<std::byte> out) const;
    /// Writes for a test: starts no action.
    void WriteMemory(std::size_t offset, std::span<const std::byte> in);
    /// Writes for a consumer: starts the actions of command registers.
    void WriteRegister(std::size_t offset, std::span<const std::byte> in);
    std::uint32_t Number(std::size_t offset) const;

    static constexpr std::size_t kMemorySize = 0x10000;

private:
    void SetNumber(std::size_t offset, std::uint32_t value);
    void SetText(std::size_t offset, const std::string& text);
    void RunCommand(std::size_t offset);

    const CameraSettings& m_settings;
    mutable std::mutex m_mutex;
    OvProducer::DeviceFacts m_facts;
    std::weak_ptr<OvProducer::EventSink> m_sink;
    std::vector<std::byte> m_memory;
    std::map<std::size_t, std::int64_t> m_commands;
    std::vector<std::shared_ptr<TestStream>> m_streams;
    std::size_t m_streamCount = 1;
    bool m_lost = false;
    bool m_open = false;
    std::atomic<bool> m_foreign{false};
};

/// One stream of the camera, and the source of its frames.
class TestStream : public OvProducer::CopyingStream, public OvProducer::FrameSource {
public:
    TestStream(TestCamera& camera, std::string id) : m_camera(camera), m_id(std::move(id)) {}

    OvProducer::StreamFacts Facts() override;
    OvProducer::FrameSource& Source() override { return *this; }
    void CheckUsable() override { m_camera.CheckUsable(); }

    bool WaitFrame(const std::stop_token& stop) override;
    std::size_t FrameSize() override;
    bool WaitsForBuffer() override;
    OvProducer::FrameInfo ReadFrame(std::span<std::byte> memory,
                                    const std::stop_token& abort) override;
    void DropFrame() override;

    // For the test.

    void Trigger(std::uint64_t count);
    void SetFreeRunning(bool on);
    void RestartCount();
    /// The camera was lost or found again.
    void SetLost(bool lost);
    bool SetFrameValue(const std::string& key, std::int64_t value);
    bool SetFact(const std::string& key, std::int64_t value);
    void AddChunk(const GenTL::S_SINGLE_CHUNK_DATA& chunk);
    void ClearChunks();

private:
    OvProducer::FrameInfo Describe(std::uint64_t frame) const;
    bool WaitWhileHeld(const std::stop_token& abort);
    void Draw(std::span<std::byte> memory, std::uint64_t frame) const;

    TestCamera& m_camera;
    const std::string m_id;
    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::uint64_t m_due = 0;
    std::uint64_t m_frame = 0;
    bool m_freeRunning = false;
    bool m_lost = false;
    std::map<std::string, std::int64_t> m_frameValues;
    std::map<std::string, std::int64_t> m_facts;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> m_chunks;
};

}  // namespace OvTest

#endif
