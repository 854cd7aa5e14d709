#include "virtual/FileRegisters.h"

#include <atomic>

#include "virtual/CameraFiles.h"
#include "virtual/RequireRange.h"

namespace OvVirtual {
namespace {

using OvProducer::RegisterSpace;

constexpr std::uint64_t kExecute = 0x090C;
constexpr std::uint64_t kStatus = 0x091C;
constexpr std::uint64_t kResult = 0x0920;
constexpr std::uint64_t kSize = 0x0924;
constexpr std::uint64_t kBuffer = 0x4000;

/// What the next operation does.
struct FileParameters {
    std::atomic<std::int64_t> file = 0;
    std::atomic<std::int64_t> operation = 0;
    std::atomic<std::int64_t> mode = 0;
    std::atomic<std::int64_t> offset = 0;
    std::atomic<std::int64_t> length = CameraFiles::kBufferLength;

    FileRequest Request() const {
        return {static_cast<FileName>(file.load()), static_cast<FileOperation>(operation.load()),
                static_cast<FileOpenMode>(mode.load()), offset, length};
    }
};

struct Choice {
    std::uint64_t address;
    std::atomic<std::int64_t> FileParameters::*field;
    std::int64_t count;
};

constexpr Choice kChoices[] = {
    {0x0900, &FileParameters::file, static_cast<std::int64_t>(FileName::Count)},
    {0x0904, &FileParameters::operation, static_cast<std::int64_t>(FileOperation::Count)},
    {0x0908, &FileParameters::mode, static_cast<std::int64_t>(FileOpenMode::Count)},
};

/// These take every number: the operation tells whether it makes sense.
struct Amount {
    std::uint64_t address;
    std::atomic<std::int64_t> FileParameters::*field;
    std::size_t length;
};

constexpr Amount kAmounts[] = {
    {0x0910, &FileParameters::offset, 8},
    {0x0918, &FileParameters::length, 4},
};

class FileBuffer : public OvProducer::RegisterRange {
public:
    explicit FileBuffer(std::shared_ptr<Camera> camera) : m_camera(std::move(camera)) {}

    std::size_t Length() const override { return CameraFiles::kBufferLength; }

    void Read(std::size_t offset, std::span<std::byte> out) const override {
        m_camera->Files().ReadBuffer(offset, out);
    }

    void Write(std::size_t offset, std::span<const std::byte> in) override {
        m_camera->Files().WriteBuffer(offset, in);
    }

private:
    std::shared_ptr<Camera> m_camera;
};

void AddParameters(RegisterSpace& registers, const std::shared_ptr<FileParameters>& parameters) {
    for (const Choice& choice : kChoices) {
        registers.AddInteger(
            choice.address, 4,
            [p = parameters, field = choice.field] { return ((*p).*field).load(); },
            [p = parameters, choice](std::int64_t value) {
                RequireRange(value, 0, choice.count - 1);
                (*p).*choice.field = value;
            });
    }
    for (const Amount& amount : kAmounts) {
        registers.AddInteger(
            amount.address, amount.length,
            [p = parameters, field = amount.field] { return ((*p).*field).load(); },
            [p = parameters, field = amount.field](std::int64_t value) { (*p).*field = value; });
    }
}

}  // namespace

void AddFileRegisters(RegisterSpace& registers, const std::shared_ptr<Camera>& camera) {
    const auto parameters = std::make_shared<FileParameters>();
    AddParameters(registers, parameters);
    registers.AddCommand(kExecute,
                         [camera, parameters] { camera->Files().Execute(parameters->Request()); });
    registers.AddInteger(kStatus, 4, [camera] {
        return static_cast<std::int64_t>(camera->Files().Outcome().status);
    });
    registers.AddInteger(kResult, 4, [camera] { return camera->Files().Outcome().count; });
    registers.AddInteger(kSize, 4, [camera, parameters] {
        return static_cast<std::int64_t>(camera->Files().Size(parameters->Request().file));
    });
    registers.Add(kBuffer, std::make_unique<FileBuffer>(camera));
}

}  // namespace OvVirtual
