// Named files in a device. Each operation is a sequence of the same steps: select the file and the
// operation, set offset and length, execute, wait, and look at status and result. Bytes go
// through a buffer register, piece by piece.

#include "GenApi/FileProtocolAdapter.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <thread>
#include <vector>

#include "Base/GCException.h"
#include "Base/Log.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IRegister.h"
#include "GenApi/Pointer.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;
using GenICam_3_0_ORVANE::GenericException;

namespace {

constexpr char kLogCategory[] = "FileStream";
/// The names of the device's operations and of their outcome.
constexpr char kOpen[] = "Open";
constexpr char kClose[] = "Close";
constexpr char kRead[] = "Read";
constexpr char kWrite[] = "Write";
constexpr char kDelete[] = "Delete";
constexpr char kSuccess[] = "Success";

/// A pause between two questions whether an operation is done. Devices take far longer for each
/// question.
constexpr std::chrono::microseconds kPollInterval(2);

/// A device may take nothing once while it is busy with its memory. One that takes nothing so often
/// in a row is full.
constexpr int kMostIdleSteps = 3;

const char* DirectionOf(std::ios_base::openmode mode) {
    return (mode & std::ios_base::out) != 0 ? kWrite : kRead;
}

/// Devices accept whole words of four bytes in the buffer.
int64_t RoundUpToWord(int64_t length) {
    return (length + 3) & ~int64_t{3};
}

/// A null buffer is fine for no bytes.
void RequireBuffer(const char* buffer, int64_t length) {
    if (buffer == nullptr && length > 0) {
        INVALID_ARGUMENT_EXCEPTION("Buffer pointer is NULL");
    }
}

}  // namespace

/// The nodes of a device and the steps that operations consist of.
struct FileProtocolAdapter::FileAccess {
    bool Attach(INodeMap& map);
    bool IsAttached() const { return m_IsComplete; }

    void SelectFile(const char* name) const { m_ptrFileSelector->FromString(name, true); }
    void SetOpenMode(const char* mode) const { m_ptrOpenMode->FromString(mode, true); }
    void SetOperation(const char* operation) const {
        m_ptrOperationSelector->FromString(operation, true);
    }
    void Execute() const;
    bool IsSuccess() const { return m_ptrStatus->ToString() == kSuccess; }
    int64_t GetBufferLength() const { return m_ptrBuffer->GetLength(); }

    /// Selects a file and runs an operation that moves no bytes.
    bool Run(const char* operation, const char* name) const;
    /// These work on the file that is selected.
    int64_t Read(uint8_t* buffer, int64_t offset, int64_t length) const;
    int64_t Write(const uint8_t* buffer, int64_t offset, int64_t length) const;
    /// Selects a file and moves bytes. A failure is logged and passed on.
    template <class Transfer>
    int64_t Move(const char* operation, const char* name, const Transfer& transfer) const;

private:
    template <class Interface>
    void LookUp(CPointer<Interface>& pointer, const char* nodeName);
    int64_t ChunkLength(int64_t remaining, int64_t bufferLength) const;
    int64_t ExecuteChunk(int64_t offset, int64_t chunk) const;
    void FillBuffer(const uint8_t* source, int64_t chunk) const;
    template <class MovePiece>
    int64_t MovePieces(int64_t length, const MovePiece& movePiece) const;
    void WaitUntilFileOperationExecuteDone(bool verify) const;

    INodeMap* m_pNodeMap = nullptr;
    void* m_pLog = nullptr;
    bool m_IsComplete = false;
    CPointer<IEnumeration> m_ptrFileSelector;
    CPointer<IEnumeration> m_ptrOperationSelector;
    CPointer<ICommand> m_ptrExecute;
    CPointer<IEnumeration> m_ptrOpenMode;
    CPointer<IInteger> m_ptrOffset;
    CPointer<IInteger> m_ptrLength;
    CPointer<IRegister> m_ptrBuffer;
    CPointer<IEnumeration> m_ptrStatus;
    CPointer<IInteger> m_ptrResult;
};

/// Looks up all nodes even after one is missing, so that the log names every one that a device
/// lacks.
bool FileProtocolAdapter::FileAccess::Attach(INodeMap& map) {
    m_pNodeMap = &map;
    m_pLog = nullptr;
    if (CLog::Exist(kLogCategory)) {
        const gcstring deviceName = map.GetDeviceName();
        m_pLog = CLog::GetLogger(gcstring(kLogCategory) + "." +
                                 (deviceName.empty() ? gcstring("NO_DEVICE") : deviceName) +
                                 ".Misc.FileProtocolAdapter");
    }
    m_IsComplete = true;
    LookUp(m_ptrFileSelector, "FileSelector");
    LookUp(m_ptrOperationSelector, "FileOperationSelector");
    LookUp(m_ptrExecute, "FileOperationExecute");
    LookUp(m_ptrOpenMode, "FileOpenMode");
    LookUp(m_ptrOffset, "FileAccessOffset");
    LookUp(m_ptrLength, "FileAccessLength");
    LookUp(m_ptrBuffer, "FileAccessBuffer");
    LookUp(m_ptrStatus, "FileOperationStatus");
    LookUp(m_ptrResult, "FileOperationResult");
    return m_IsComplete;
}

template <class Interface>
void FileProtocolAdapter::FileAccess::LookUp(CPointer<Interface>& pointer, const char* nodeName) {
    pointer = CPointer<Interface>(m_pNodeMap->GetNode(nodeName));
    if (!pointer.IsValid()) {
        GCLOGWARN(m_pLog, "%s invalid\n", nodeName);
        m_IsComplete = false;
    }
}

void FileProtocolAdapter::FileAccess::Execute() const {
    m_ptrExecute->Execute(true);
    WaitUntilFileOperationExecuteDone(true);
}

/// There is no time-out: deleting a large file may take a device minutes, and only the device
/// knows whether it is still at it.
void FileProtocolAdapter::FileAccess::WaitUntilFileOperationExecuteDone(bool verify) const {
    while (!m_ptrExecute->IsDone(verify)) {
        std::this_thread::sleep_for(kPollInterval);
    }
}

bool FileProtocolAdapter::FileAccess::Run(const char* operation, const char* name) const {
    if (!IsAttached()) {
        return false;
    }
    SelectFile(name);
    SetOperation(operation);
    Execute();
    return IsSuccess();
}

/// The device may allow less in one step than its buffer has.
int64_t FileProtocolAdapter::FileAccess::ChunkLength(int64_t remaining,
                                                     int64_t bufferLength) const {
    return std::min({remaining, bufferLength, m_ptrLength->GetMax()});
}

/// The number of bytes that the device has moved. Never more than were asked for: the rest would
/// be outside the caller's memory.
int64_t FileProtocolAdapter::FileAccess::ExecuteChunk(int64_t offset, int64_t chunk) const {
    m_ptrOffset->SetValue(offset, true);
    m_ptrLength->SetValue(chunk, true);
    Execute();
    const int64_t result = m_ptrResult->GetValue();
    if (result < 0) {
        OUT_OF_RANGE_EXCEPTION("The device claims to have moved %ld bytes", result);
    }
    return std::min(result, chunk);
}

/// Goes through `length` bytes piece by piece. `movePiece` takes the position and length of a
/// piece, adds to the position what was moved, and returns whether to continue.
template <class MovePiece>
int64_t FileProtocolAdapter::FileAccess::MovePieces(int64_t length,
                                                    const MovePiece& movePiece) const {
    const int64_t bufferLength = GetBufferLength();
    int64_t position = 0;
    while (position < length) {
        const int64_t chunk = ChunkLength(length - position, bufferLength);
        // A device whose buffer or maximum is 0 would keep the loop going for ever.
        if (chunk <= 0 || !movePiece(position, chunk)) {
            break;
        }
    }
    return position;
}

/// A step that moves nothing ends the file; a device that fails may have moved some bytes, which
/// don't count.
int64_t FileProtocolAdapter::FileAccess::Read(uint8_t* buffer, int64_t offset,
                                              int64_t length) const {
    return MovePieces(length, [&](int64_t& position, int64_t chunk) {
        const int64_t moved = ExecuteChunk(offset + position, chunk);
        if (moved > 0) {
            m_ptrBuffer->Get(buffer + position, moved);
        }
        if (!IsSuccess() || moved == 0) {
            return false;
        }
        position += moved;
        return true;
    });
}

/// What the device doesn't take of a piece without failing is offered again with the next one.
int64_t FileProtocolAdapter::FileAccess::Write(const uint8_t* buffer, int64_t offset,
                                               int64_t length) const {
    int idleSteps = 0;
    return MovePieces(length, [&](int64_t& position, int64_t chunk) {
        FillBuffer(buffer + position, chunk);
        const int64_t moved = ExecuteChunk(offset + position, chunk);
        position += moved;
        idleSteps = moved == 0 ? idleSteps + 1 : 0;
        return IsSuccess() && idleSteps < kMostIdleSteps;
    });
}

/// The last word may go beyond the caller's data, so it is completed here with zeros.
void FileProtocolAdapter::FileAccess::FillBuffer(const uint8_t* source, int64_t chunk) const {
    const int64_t rounded = std::min(RoundUpToWord(chunk), GetBufferLength());
    if (rounded == chunk) {
        m_ptrBuffer->Set(source, chunk);
        return;
    }
    std::vector<uint8_t> words(source, source + chunk);
    words.resize(static_cast<size_t>(rounded));
    m_ptrBuffer->Set(words.data(), rounded);
}

/// Failures are logged here because a client that copies a file sees only that it came out short.
/// Nodes throw the engine's exceptions, transports standard ones.
template <class Transfer>
int64_t FileProtocolAdapter::FileAccess::Move(const char* operation, const char* name,
                                              const Transfer& transfer) const {
    if (!IsAttached()) {
        return 0;
    }
    const auto log = [&](const char* what) {
        GCLOG_AT(Log, m_pLog, GenICam_3_0_ORVANE::LogError, "%s of '%s' failed: %s", operation,
                 gcstring(name).c_str(), what);
    };
    try {
        SelectFile(name);
        SetOperation(operation);
        return transfer();
    } catch (const GenericException& failure) {
        log(failure.what());
        throw;
    } catch (const std::exception& failure) {
        log(failure.what());
        throw;
    }
}

FileProtocolAdapter::FileProtocolAdapter() : m_pAccess(std::make_unique<FileAccess>()) {}

FileProtocolAdapter::~FileProtocolAdapter() = default;

bool FileProtocolAdapter::attach(INodeMap* map) {
    if (map == nullptr) {
        RUNTIME_EXCEPTION("Called FileProtocolAdapter::attach with pInterface == NULL");
    }
    return m_pAccess->Attach(*map);
}

bool FileProtocolAdapter::openFile(const char* name, std::ios_base::openmode mode) {
    if (!m_pAccess->IsAttached()) {
        return false;
    }
    m_pAccess->SelectFile(name);
    m_pAccess->SetOpenMode(DirectionOf(mode));
    m_pAccess->SetOperation(kOpen);
    m_pAccess->Execute();
    return m_pAccess->IsSuccess();
}

bool FileProtocolAdapter::closeFile(const char* name) {
    return m_pAccess->Run(kClose, name);
}

bool FileProtocolAdapter::deleteFile(const char* name) {
    return m_pAccess->Run(kDelete, name);
}

int64_t FileProtocolAdapter::read(char* buffer, int64_t offset, int64_t length, const char* name) {
    return m_pAccess->Move(kRead, name, [&] {
        RequireBuffer(buffer, length);
        return m_pAccess->Read(reinterpret_cast<uint8_t*>(buffer), offset, length);
    });
}

int64_t FileProtocolAdapter::write(const char* buffer, int64_t offset, int64_t length,
                                   const char* name) {
    return m_pAccess->Move(kWrite, name, [&] {
        RequireBuffer(buffer, length);
        return m_pAccess->Write(reinterpret_cast<const uint8_t*>(buffer), offset, length);
    });
}

/// The operation is selected first, as the size of the buffer may depend on it.
int64_t FileProtocolAdapter::getBufSize(const char* name, std::ios_base::openmode mode) {
    if (!m_pAccess->IsAttached()) {
        return 0;
    }
    m_pAccess->SelectFile(name);
    m_pAccess->SetOperation(DirectionOf(mode));
    return m_pAccess->GetBufferLength();
}

}  // namespace GenApi_3_0_ORVANE
