// The node through which registers reach a client's transport. It is also where bytes are
// forgotten: each write passes here, whichever node or client made it, and so does each replay.

#include "ports/PortImplIntern.h"

#include <string>

#include "GenApi/IPortReplay.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;
using GenICam_3_0_ORVANE::LogDebug;

namespace {

/// A frame-sized register would otherwise fill the log with one line.
constexpr size_t kMaxLoggedText = 256;

std::string UpperHex(const void* buffer, int64_t length) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    std::string text;
    for (int64_t i = 0; i < length && text.size() < kMaxLoggedText; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
    return text;
}

}  // namespace

void CPortImplIntern::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::ChunkID_ID:
            m_ChunkID = TextOf(property.String());
            break;
        case CPropertyID::pChunkID_ID:
            m_ChunkID = LinkChild(property, ReadRole);
            break;
        case CPropertyID::SwapEndianess_ID:
            m_SwapEndianess = property.EYesNo();
            break;
        case CPropertyID::CacheChunkData_ID:
            m_CacheChunkData = property.EYesNo();
            break;
        default:
            CNodeImpl::SetProperty(property);
            break;
    }
}

/// Without a transport, the registers of a device don't exist for anybody. Those of a chunk do:
/// they wait for a frame that has it.
EAccessMode CPortImplIntern::InternalGetAccessMode() {
    return CachedAccessMode([this] {
        const EAccessMode mode = ComputeAccessMode(nullptr);
        if (m_pPort != nullptr) {
            return Combine(m_pPort->GetAccessMode(), mode);
        }
        return mode != NI && HasChunkID() ? NA : NI;
    });
}

/// The lock is the map's, and recursive: registers hold it already, while a client may call a
/// port directly.
void CPortImplIntern::Read(void* buffer, int64_t address, int64_t length) {
    const AutoLock lock(GetLock());
    if (m_pPort == nullptr) {
        ACCESS_EXCEPTION_NODE("CPortImplIntern::Read : port not set");
    }
    if (buffer == nullptr) {
        LOGICAL_ERROR_EXCEPTION_NODE("CPortImplIntern::Read : pBuffer must not be NULL");
    }
    m_pPort->Read(buffer, address, length);
    // The text of the bytes is made only for a log that wants it: this is the innermost step of
    // every access.
    if (CLog::IsEnabled(m_pPortLog, LogDebug)) {
        CLog::Log(m_pPortLog, LogDebug, "Read( 0x%016lX, %ld ) = 0x%s )",
                  static_cast<unsigned long>(address), length, UpperHex(buffer, length).c_str());
    }
}

/// The users are called through the queue, after the cache is consistent again.
void CPortImplIntern::Forget(CValueCache::Entry& entry) {
    CInvalidationQueue& queue = GetCallState().GetInvalidations();
    m_ValueCache.Forget(entry, queue);
    queue.Run();
}

void CPortImplIntern::ForgetRange(int64_t address, int64_t length) {
    CInvalidationQueue& queue = GetCallState().GetInvalidations();
    m_ValueCache.ForgetRange(address, length, queue);
    queue.Run();
}

/// Bytes are forgotten before they are written: a write that fails may have changed some of them.
void CPortImplIntern::Write(const void* buffer, int64_t address, int64_t length) {
    const AutoLock lock(GetLock());
    RequireWritable(buffer);
    ForgetRange(address, length);
    WriteToDevice(buffer, address, length);
}

/// The same for a register, which knows its entry: the entry has a list of those that it overlaps
/// with, so that no search is needed.
void CPortImplIntern::WriteEntry(CValueCache::Entry& entry, const uint8_t* bytes, int64_t length) {
    const AutoLock lock(GetLock());
    RequireWritable(bytes);
    Forget(entry);
    WriteToDevice(bytes, entry.GetAddress(), length);
}

/// Called before anything is forgotten: a write that can't even begin changes nothing.
void CPortImplIntern::RequireWritable(const void* buffer) {
    if (m_pPort == nullptr) {
        ACCESS_EXCEPTION_NODE("CPortImplIntern::Write : port not set");
    }
    if (buffer == nullptr) {
        LOGICAL_ERROR_EXCEPTION_NODE("CPortImplIntern::Write : pBuffer must not be NULL");
    }
}

/// Records only what the device has accepted, so that a replay doesn't repeat a failure.
void CPortImplIntern::WriteToDevice(const void* buffer, int64_t address, int64_t length) {
    if (CLog::IsEnabled(m_pPortLog, LogDebug)) {
        CLog::Log(m_pPortLog, LogDebug, "Write( 0x%016lX, %ld, 0x%s )",
                  static_cast<unsigned long>(address), length, UpperHex(buffer, length).c_str());
    }
    m_pPort->Write(buffer, address, length);
    if (m_pRecordedList != nullptr) {
        m_pRecordedList->Write(buffer, address, length);
    }
}

/// Another transport means other bytes, so everything is invalid afterwards. That happens after
/// the lock is released, because callbacks may need locks of their own. A port that passes
/// accesses on, such as a chunk port, learns which node it serves.
void CPortImplIntern::SetPortImpl(IPort* port) {
    {
        const AutoLock lock(GetLock());
        GCLOGINFO(m_pPortLog, "SetPortImpl");
        m_pPort = port;
        if (auto* const construct = dynamic_cast<IPortConstruct*>(port)) {
            construct->SetPortImpl(this);
        }
    }
    InvalidateNode();
}

gcstring CPortImplIntern::GetChunkID() {
    const AutoLock lock(GetLock());
    return m_ChunkID.IsInitialized() ? m_ChunkID.GetValue() : gcstring();
}

void CPortImplIntern::StartRecording(IPortWriteList* list) {
    const AutoLock lock(GetLock());
    m_pRecordedList = list;
}

/// A list of writes can only be replayed to a port. This one takes the writes to forget the bytes
/// that they will change.
class CPortImplIntern::Forgetting : public IPort {
public:
    explicit Forgetting(CPortImplIntern& port) : m_Port(port) {}
    EAccessMode GetAccessMode() override { return WO; }
    void Read(void* /*buffer*/, int64_t /*address*/, int64_t /*length*/) override {}
    void Write(const void* /*buffer*/, int64_t address, int64_t length) override {
        m_Port.ForgetRange(address, length);
    }

private:
    CPortImplIntern& m_Port;
};

/// Bytes are forgotten before the device sees any write of the list, for the same reason as in
/// Write. A transport that replays by itself may do so in one transaction.
void CPortImplIntern::Replay(IPortWriteList* list, bool invalidate) {
    if (list == nullptr) {
        return;
    }
    {
        const AutoLock lock(GetLock());
        if (m_pPort == nullptr) {
            ACCESS_EXCEPTION_NODE("CPortImplIntern::Replay : port not set");
        }
        Forgetting forgetting(*this);
        list->Replay(&forgetting);
        if (auto* const replay = dynamic_cast<IPortReplay*>(m_pPort)) {
            replay->Replay(list, true);
        } else {
            list->Replay(m_pPort);
        }
    }
    if (invalidate) {
        InvalidateNode();
    }
}

}  // namespace GenApi_3_0_ORVANE
