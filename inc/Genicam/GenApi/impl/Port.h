#pragma once

#include <memory>

#include "GenApi/IPort.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueCache.h"

namespace GenApi_3_0_ORVANE {

/// The node through which registers reach a client's transport.
class CPortImplIntern : public CNodeImpl,
                        virtual public IPortConstruct,
                        virtual public IChunkPort,
                        virtual public IPortRecorder {
public:
    void SetProperty(const CProperty& property) override;
    /// What frames and events brought is forgotten with them; what a device told
    /// outlasts this, as only registers know when it changes.
    void SetInvalid(ESetInvalidMode mode) override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIPort; }
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

    /// The bytes known of this port; made at the first call.
    CValueCache& GetValueCache();
    bool IsChunkPort() const { return m_ChunkID.IsInitialized(); }

private:
    IPort* m_pPort = nullptr;
    IPortWriteList* m_pRecordedList = nullptr;
    CStringPolyRef m_ChunkID;
    std::unique_ptr<CValueCache> m_pValueCache;
    EYesNo m_SwapEndianess = No;
    EYesNo m_CacheChunkData = No;
};

class CPort : public BaseT<NodeT<CPortImplIntern>> {};

}  // namespace GenApi_3_0_ORVANE
