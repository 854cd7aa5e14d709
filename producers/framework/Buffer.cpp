#include "framework/Buffer.h"

namespace OvProducer {
namespace {

const FrameInfo& FrameOf(const Buffer& buffer) {
    if (!buffer.hasFrame) {
        ThrowNotAvailable();
    }
    return buffer.frame;
}

template <std::size_t FrameInfo::*field>
InfoValue FrameSize(const Buffer& buffer) {
    return InfoValue::Size(FrameOf(buffer).*field);
}

template <std::uint64_t FrameInfo::*field>
InfoValue FrameNumber(const Buffer& buffer) {
    return InfoValue::Uint64(FrameOf(buffer).*field);
}

template <bool FrameInfo::*field>
InfoValue FrameFlag(const Buffer& buffer) {
    return InfoValue::Bool(FrameOf(buffer).*field);
}

bool IsQueued(const Buffer& buffer) {
    return buffer.state == BufferState::Input || buffer.state == BufferState::Output;
}

constexpr InfoRow<Buffer> kRows[] = {
    {GenTL::BUFFER_INFO_BASE, [](const Buffer& b) { return InfoValue::Pointer(b.base); }},
    {GenTL::BUFFER_INFO_SIZE, [](const Buffer& b) { return InfoValue::Size(b.size); }},
    {GenTL::BUFFER_INFO_USER_PTR,
     [](const Buffer& b) { return InfoValue::Pointer(b.userPointer); }},
    {GenTL::BUFFER_INFO_TIMESTAMP, FrameNumber<&FrameInfo::timestamp>},
    {GenTL::BUFFER_INFO_NEW_DATA, [](const Buffer& b) { return InfoValue::Bool(b.newData); }},
    {GenTL::BUFFER_INFO_IS_QUEUED, [](const Buffer& b) { return InfoValue::Bool(IsQueued(b)); }},
    {GenTL::BUFFER_INFO_IS_ACQUIRING,
     [](const Buffer& b) { return InfoValue::Bool(b.state == BufferState::Filling); }},
    {GenTL::BUFFER_INFO_IS_INCOMPLETE, FrameFlag<&FrameInfo::incomplete>},
    {GenTL::BUFFER_INFO_TLTYPE, [](const Buffer& b) { return InfoValue::Text(b.tlType); }},
    {GenTL::BUFFER_INFO_SIZE_FILLED, FrameSize<&FrameInfo::sizeFilled>},
    {GenTL::BUFFER_INFO_WIDTH, FrameSize<&FrameInfo::width>},
    {GenTL::BUFFER_INFO_HEIGHT, FrameSize<&FrameInfo::height>},
    {GenTL::BUFFER_INFO_XOFFSET, FrameSize<&FrameInfo::offsetX>},
    {GenTL::BUFFER_INFO_YOFFSET, FrameSize<&FrameInfo::offsetY>},
    {GenTL::BUFFER_INFO_XPADDING, FrameSize<&FrameInfo::paddingX>},
    {GenTL::BUFFER_INFO_YPADDING, FrameSize<&FrameInfo::paddingY>},
    {GenTL::BUFFER_INFO_FRAMEID, FrameNumber<&FrameInfo::frameId>},
    {GenTL::BUFFER_INFO_IMAGEPRESENT, FrameFlag<&FrameInfo::imagePresent>},
    {GenTL::BUFFER_INFO_IMAGEOFFSET, FrameSize<&FrameInfo::imageOffset>},
    {GenTL::BUFFER_INFO_PAYLOADTYPE, FrameSize<&FrameInfo::payloadType>},
    {GenTL::BUFFER_INFO_PIXELFORMAT, FrameNumber<&FrameInfo::pixelFormat>},
    {GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE,
     [](const Buffer& b) {
         static_cast<void>(FrameOf(b));
         return InfoValue::Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT);
     }},
    {GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT, FrameSize<&FrameInfo::deliveredHeight>},
    {GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, FrameSize<&FrameInfo::chunkPayloadSize>},
    {GenTL::BUFFER_INFO_CHUNKLAYOUTID, FrameNumber<&FrameInfo::chunkLayoutId>},
    {GenTL::BUFFER_INFO_FILENAME, [](const Buffer&) -> InfoValue { ThrowNotAvailable(); }},
    {GenTL::BUFFER_INFO_PIXEL_ENDIANNESS,
     [](const Buffer& b) {
         static_cast<void>(FrameOf(b));
         return InfoValue::Int32(GenTL::PIXELENDIANNESS_LITTLE);
     }},
    {GenTL::BUFFER_INFO_DATA_SIZE, FrameSize<&FrameInfo::sizeFilled>},
    {GenTL::BUFFER_INFO_TIMESTAMP_NS, FrameNumber<&FrameInfo::timestampNs>},
    {GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER, FrameFlag<&FrameInfo::largerThanBuffer>},
    {GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA,
     [](const Buffer& b) { return InfoValue::Bool(!FrameOf(b).chunks.empty()); }},
};

}  // namespace

InfoValue BufferInfo(const Buffer& buffer, GenTL::BUFFER_INFO_CMD command) {
    return AnswerFrom(kRows, command, buffer);
}

}  // namespace OvProducer
