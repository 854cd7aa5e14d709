#include "virtual/FileRegisters.h"

#include <atomic>

#include "framework/RequireRange.h"
#include "virtual/CameraFiles.h"

namespace OvVirtual {
namespace {

using OvProducer::RegisterSpace;
using OvProducer::RequireRange;

constexpr uint64_t kMode = 0x0908;
constexpr uint64_t kExecute = 0x090C;
constexpr uint64_t kStatus = 0x091C;
constexpr uint64_t kResult = 0x0920;
constexpr uint64_t kSize = 0x0924;
constexpr uint64_t kBuffer = 0x4000;

/// Parameters of the next operation.
struct FileParameters {
    std::atomic<int64_t> mode = 0;
    std::atomic<int64_t> offset = 0;
    std::atomic<int64_t> length = CameraFiles::kBufferLength;

    FileRequest Request(const CameraSelectors& selectors) const {
        return {static_cast<FileName>(selectors.file),
                static_cast<FileOperation>(selectors.fileOperation),
                static_cast<FileOpenMode>(mode.load()), offset, length};
    }
};

/// These accept any number. The operation fails if it makes no sense.
struct Amount {
    uint64_t address;
    std::atomic<int64_t> FileParameters::*field;
    size_t length;
};

constexpr Amount kAmounts[] = {
    {0x0910, &FileParameters::offset, 8},
    {0x0918, &FileParameters::length, 4},
};

class FileBuffer : public OvProducer::RegisterRange {
public:
    explicit FileBuffer(std::shared_ptr<Camera> camera) : m_camera(std::move(camera)) {}

    size_t Length() const override { return CameraFiles::kBufferLength; }

    void Read(size_t offset, std::span<std::byte> out) const override {
        m_camera->Files().ReadBuffer(offset, out);
    }

    void Write(size_t offset, std::span<const std::byte> in) override {
        m_camera->Files().WriteBuffer(offset, in);
    }

private:
    std::shared_ptr<Camera> m_camera;
};

void AddParameters(RegisterSpace& registers, const std::shared_ptr<FileParameters>& parameters) {
    registers.AddInteger(
        kMode, 4, [p = parameters] { return p->mode.load(); },
        [p = parameters](int64_t value) {
            RequireRange(value, 0, static_cast<int64_t>(FileOpenMode::Count) - 1);
            p->mode = value;
        });
    for (const Amount& amount : kAmounts) {
        registers.AddInteger(
            amount.address, amount.length,
            [p = parameters, field = amount.field] { return ((*p).*field).load(); },
            [p = parameters, field = amount.field](int64_t value) { (*p).*field = value; });
    }
}

}  // namespace

void AddFileRegisters(RegisterSpace& registers, const std::shared_ptr<Camera>& camera) {
    const auto parameters = std::make_shared<FileParameters>();
    AddParameters(registers, parameters);
    registers.AddCommand(kExecute, [camera, parameters] {
        camera->Files().Execute(parameters->Request(camera->Selectors()));
    });
    registers.AddInteger(
        kStatus, 4, [camera] { return static_cast<int64_t>(camera->Files().Outcome().status); });
    registers.AddInteger(kResult, 4, [camera] { return camera->Files().Outcome().count; });
    registers.AddInteger(kSize, 4, [camera] {
        const auto file = static_cast<FileName>(camera->Selectors().file);
        return static_cast<int64_t>(camera->Files().Size(file));
    });
    registers.Add(kBuffer, std::make_unique<FileBuffer>(camera));
}

}  // namespace OvVirtual
