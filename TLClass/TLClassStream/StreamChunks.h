#pragma once
/// The camera's chunk features, and the frame of a stream that they read from.

#include <memory>
#include <string>

#include "TLClassSupport/UnCopyable.h"

namespace GenApi_3_0_ORVANE {
class CChunkAdapter;
class CChunkAdapterGeneric;
struct INodeMap;
}  // namespace GenApi_3_0_ORVANE

namespace OVTLClass {

class CBuffer;
class CNativeNewBufferEvent;

/// Chunks lie where the producer lists them. A producer that lists none leaves them to the layout
/// of the transport, if that is known: the adapter of the layout then takes the place of the one
/// for lists. One thread at a time may use it.
class CStreamChunks : public CUnCopyable {
public:
    CStreamChunks();
    ~CStreamChunks();

    void AttachNodeMap(GenApi_3_0_ORVANE::INodeMap* map);
    void DetachNodeMap();
    /// Of lists.
    GenApi_3_0_ORVANE::CChunkAdapterGeneric* GetAdapter() const { return m_byList.get(); }
    /// Makes the features read the chunks of a frame. CUnexpectedError, or an exception of the
    /// engine, for chunks that can't be; call DetachFrame then.
    void AttachFrame(CNativeNewBufferEvent& event, CBuffer& buffer);
    /// The features have no values afterwards, also those of which the engine keeps a copy.
    void DetachFrame(CNativeNewBufferEvent& event);
    /// The features don't read from any buffer afterwards.
    void DetachBuffer();

private:
    GenApi_3_0_ORVANE::CChunkAdapter& __GetCurrent() const;
    bool __AttachByList(CNativeNewBufferEvent& event, CBuffer& buffer) const;
    void __AttachByLayout(CBuffer& buffer);
    void __UseLayoutOf(const std::string& transport);

    GenApi_3_0_ORVANE::INodeMap* m_map = nullptr;
    std::unique_ptr<GenApi_3_0_ORVANE::CChunkAdapterGeneric> m_byList;
    /// Null unless the producer has refused to list chunks.
    std::unique_ptr<GenApi_3_0_ORVANE::CChunkAdapter> m_byLayout;
};

}  // namespace OVTLClass
