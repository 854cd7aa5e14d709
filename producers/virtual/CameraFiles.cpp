#include "virtual/CameraFiles.h"

#include <algorithm>
#include <stdexcept>

namespace OvVirtual {
namespace {

constexpr FileOutcome kFailure{FileStatus::Failure, 0};

FileOutcome OutcomeOf(bool success) {
    return success ? FileOutcome{} : kFailure;
}

FileOutcome Moved(size_t count) {
    return {FileStatus::Success, static_cast<int64_t>(count)};
}

bool MakesSense(const FileRequest& request) {
    return request.offset >= 0 && request.length >= 0;
}

/// How many bytes a transfer moves at `offset` of a file that ends at `end`: no more than
/// requested, than there are, and than the buffer holds.
size_t Count(const FileRequest& request, size_t offset, size_t end) {
    return std::min(
        {static_cast<size_t>(request.length), end - offset, CameraFiles::kBufferLength});
}

template <typename Buffer>
auto Part(Buffer& buffer, size_t offset, size_t length) {
    if (offset > buffer.size() || length > buffer.size() - offset) {
        throw std::out_of_range("The access leaves the buffer");
    }
    return std::span(buffer).subspan(offset, length);
}

template <typename File>
bool Open(File& file, FileOpenMode mode) {
    const bool reads = mode == FileOpenMode::Read;
    if (file.opened || (reads ? !file.content : file.readOnly)) {
        return false;
    }
    if (mode == FileOpenMode::Write || !file.content) {
        file.content.emplace();
    }
    file.opened = mode;
    return true;
}

template <typename File>
bool Close(File& file) {
    const bool wasOpen = file.opened.has_value();
    file.opened.reset();
    return wasOpen;
}

template <typename File>
bool Delete(File& file) {
    if (file.readOnly || file.opened || !file.content) {
        return false;
    }
    file.content.reset();
    return true;
}

}  // namespace

CameraFiles::CameraFiles(std::string_view factoryCalibration) {
    const auto bytes = std::as_bytes(std::span(factoryCalibration));
    File& file = At(FileName::FactoryCalibration);
    file.content.emplace(bytes.begin(), bytes.end());
    file.readOnly = true;
}

CameraFiles::File& CameraFiles::At(FileName file) {
    return m_files.at(static_cast<size_t>(file));
}

const CameraFiles::File& CameraFiles::At(FileName file) const {
    return m_files.at(static_cast<size_t>(file));
}

void CameraFiles::Execute(const FileRequest& request) {
    const std::lock_guard lock(m_mutex);
    m_outcome = Run(request);
}

FileOutcome CameraFiles::Run(const FileRequest& request) {
    File& file = At(request.file);
    switch (request.operation) {
        case FileOperation::Open:
            return OutcomeOf(Open(file, request.mode));
        case FileOperation::Close:
            return OutcomeOf(Close(file));
        case FileOperation::Read:
            return Read(file, request);
        case FileOperation::Write:
            return Write(file, request);
        case FileOperation::Delete:
            return OutcomeOf(Delete(file));
        default:
            return kFailure;
    }
}

FileOutcome CameraFiles::Read(const File& file, const FileRequest& request) {
    const bool readable = file.opened && *file.opened != FileOpenMode::Write;
    if (!readable || !MakesSense(request)) {
        return kFailure;
    }
    const Content& content = *file.content;
    const size_t offset = std::min(static_cast<size_t>(request.offset), content.size());
    const size_t count = Count(request, offset, content.size());
    std::ranges::copy(std::span(content).subspan(offset, count), m_buffer.begin());
    return Moved(count);
}

FileOutcome CameraFiles::Write(File& file, const FileRequest& request) const {
    const bool writable = file.opened && *file.opened != FileOpenMode::Read;
    if (!writable || !MakesSense(request)) {
        return kFailure;
    }
    if (request.length == 0) {
        return Moved(0);
    }
    const auto offset = static_cast<size_t>(request.offset);
    if (offset >= kUserFileMax) {
        return kFailure;
    }
    const size_t count = Count(request, offset, kUserFileMax);
    Content& content = *file.content;
    content.resize(std::max(content.size(), offset + count));
    std::ranges::copy(std::span(m_buffer).first(count), std::span(content).subspan(offset).begin());
    return Moved(count);
}

FileOutcome CameraFiles::Outcome() const {
    const std::lock_guard lock(m_mutex);
    return m_outcome;
}

size_t CameraFiles::Size(FileName file) const {
    const std::lock_guard lock(m_mutex);
    const std::optional<Content>& content = At(file).content;
    return content ? content->size() : 0;
}

void CameraFiles::ReadBuffer(size_t offset, std::span<std::byte> out) const {
    const std::lock_guard lock(m_mutex);
    std::ranges::copy(Part(m_buffer, offset, out.size()), out.begin());
}

void CameraFiles::WriteBuffer(size_t offset, std::span<const std::byte> in) {
    const std::lock_guard lock(m_mutex);
    std::ranges::copy(in, Part(m_buffer, offset, in.size()).begin());
}

void CameraFiles::Reset() {
    const std::lock_guard lock(m_mutex);
    for (File& file : m_files) {
        file.opened.reset();
    }
    m_buffer.fill({});
    m_outcome = {};
}

std::optional<CameraFiles::Content> CameraFiles::UserFile() const {
    const std::lock_guard lock(m_mutex);
    return At(FileName::UserFile).content;
}

void CameraFiles::SetUserFile(std::optional<Content> content) {
    const std::lock_guard lock(m_mutex);
    At(FileName::UserFile).content = std::move(content);
}

}  // namespace OvVirtual
