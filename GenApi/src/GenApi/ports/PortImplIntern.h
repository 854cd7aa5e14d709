#pragma once

#include "GenApi/IChunkPort.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/IPortRecorder.h"
#include "GenApi/IPortWriteList.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "ports/ValueCache.h"

namespace GenApi_3_0_ORVANE {

/// The node through which registers reach a client's transport.
class CPortImplIntern : public CNodeImpl,
                        virtual public IPortConstruct,
                        virtual public IChunkPort,
                        virtual public IPortRecorder {
public:
    void SetProperty(const CProperty& property) override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIPort; }
    CPortImplIntern* AsPort() override { return this; }
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;

    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;
    void SetPortImpl(IPort* port) override;
    EYesNo GetSwapEndianess() override { return m_SwapEndianess; }
    gcstring GetChunkID() override;
    EYesNo CacheChunkData() override { return m_CacheChunkData; }
    void StartRecording(IPortWriteList* list) override;
    void StopRecording() override { StartRecording(nullptr); }
    void Replay(IPortWriteList* list, bool invalidate) override;

    /// Writes the bytes of the entry, or the first of them.
    void WriteEntry(CValueCache::Entry& entry, const uint8_t* bytes, int64_t length);
    /// Has the entry and all that overlap with it read again, and sets invalid what was made of
    /// them.
    void Forget(CValueCache::Entry& entry);
    /// The same for all entries that have a byte of the range.
    void ForgetRange(int64_t address, int64_t length);

    /// Returns the bytes known of this port.
    CValueCache& GetValueCache() { return m_ValueCache; }
    /// Whether the description makes this the port of a chunk, which another node may identify.
    bool IsChunkPort() const {
        return m_ChunkID.IsPointer() || (m_ChunkID.IsConstant() && !m_ChunkID.GetValue().empty());
    }
    /// The same after asking that node, which may have no identifier at present.
    bool HasChunkID() const {
        return IsChunkPort() && !(m_ChunkID.IsReadable() && m_ChunkID.GetValue().empty());
    }

protected:
    /// All bytes.
    void ForgetBeneath() override { m_ValueCache.InvalidateAll(); }

private:
    class Forgetting;

    void RequireWritable(const void* buffer);
    void WriteToDevice(const void* buffer, int64_t address, int64_t length);

    IPort* m_pPort = nullptr;
    IPortWriteList* m_pRecordedList = nullptr;
    CStringPolyRef m_ChunkID;
    CValueCache m_ValueCache;
    EYesNo m_SwapEndianess = No;
    EYesNo m_CacheChunkData = No;
};

class CPort : public BaseT<NodeT<CPortImplIntern>> {};

}  // namespace GenApi_3_0_ORVANE
