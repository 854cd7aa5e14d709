/// @file
/// A camera that is nothing but a description and made-up memory.
#ifndef OV_TEST_FILE_CAMERA_H
#define OV_TEST_FILE_CAMERA_H

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "MadeUpMemory.h"
#include "SwitchOnAddress.h"
#include "framework/Backend.h"

namespace OvTest {

/// Frames of 8 x 8 pixels, as fast as buffers come, whatever the memory says.
class FileStream : public OvProducer::CopyingStream, public OvProducer::FrameSource {
public:
    OvProducer::StreamFacts Facts() override;
    OvProducer::FrameSource& Source() override { return *this; }
    void CheckUsable() override {}

    bool WaitFrame(const std::stop_token& stop) override { return !stop.stop_requested(); }
    std::size_t FrameSize() override;
    bool WaitsForBuffer() override { return true; }
    OvProducer::FrameInfo ReadFrame(std::span<std::byte> memory,
                                    const std::stop_token& abort) override;
    void DropFrame() override { ++m_frame; }

private:
    std::uint64_t m_frame = 0;
};

/// Each opening finds the memory as it was when the register at kSwitchOnAddress was
/// last written.
class FileCamera : public OvProducer::DeviceBackend {
public:
    /// @param name  of the camera, which is also its ID
    FileCamera(std::string name, std::string description);

    OvProducer::DeviceFacts Facts() override;
    void Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<OvProducer::EventSink> sink) override;
    void Close() override { m_status = GenTL::DEVICE_ACCESS_STATUS_READWRITE; }
    bool OffersEvent(GenTL::EVENT_TYPE type) override;
    std::unique_ptr<OvProducer::Port> MakeRemotePort() override;
    std::vector<std::shared_ptr<OvProducer::StreamBackend>> Streams() override {
        return {m_stream};
    }
    void CheckUsable() override {}

private:
    const std::string m_name;
    const std::string m_description;
    MadeUpMemory m_memory;
    MadeUpMemory::Bytes m_switchedOn;
    const std::shared_ptr<FileStream> m_stream = std::make_shared<FileStream>();
    std::atomic<GenTL::DEVICE_ACCESS_STATUS> m_status = GenTL::DEVICE_ACCESS_STATUS_READWRITE;
};

}  // namespace OvTest

#endif
