#include "framework/BufferCard.h"

namespace OvProducer {

struct BufferCard::Rows {
    static const Frame& FrameOf(const BufferCard& card) {
        if (!card.HasFrame()) {
            ThrowNotAvailable();
        }
        return card.m_frame;
    }

    template <Cell<size_t> Frame::*field>
    static InfoValue FrameSize(const BufferCard& card) {
        return InfoValue::Size(FrameOf(card).*field);
    }

    template <Cell<uint64_t> Frame::*field>
    static InfoValue FrameNumber(const BufferCard& card) {
        return InfoValue::Uint64(FrameOf(card).*field);
    }

    template <Cell<bool> Frame::*field>
    static InfoValue FrameFlag(const BufferCard& card) {
        return InfoValue::Bool(FrameOf(card).*field);
    }

    static bool IsQueued(const BufferCard& card) {
        const BufferState state = card.State();
        return state == BufferState::Input || state == BufferState::Output;
    }

    static constexpr InfoRow<BufferCard> kAll[] = {
        {GenTL::BUFFER_INFO_BASE,
         [](const BufferCard& b) { return InfoValue::Pointer(b.m_base.load()); }},
        {GenTL::BUFFER_INFO_SIZE, [](const BufferCard& b) { return InfoValue::Size(b.m_size); }},
        {GenTL::BUFFER_INFO_USER_PTR,
         [](const BufferCard& b) { return InfoValue::Pointer(b.m_userPointer.load()); }},
        {GenTL::BUFFER_INFO_TIMESTAMP, FrameNumber<&Frame::timestamp>},
        {GenTL::BUFFER_INFO_NEW_DATA,
         [](const BufferCard& b) { return InfoValue::Bool(b.NewData()); }},
        {GenTL::BUFFER_INFO_IS_QUEUED,
         [](const BufferCard& b) { return InfoValue::Bool(IsQueued(b)); }},
        {GenTL::BUFFER_INFO_IS_ACQUIRING,
         [](const BufferCard& b) { return InfoValue::Bool(b.State() == BufferState::Filling); }},
        {GenTL::BUFFER_INFO_IS_INCOMPLETE, FrameFlag<&Frame::incomplete>},
        {GenTL::BUFFER_INFO_TLTYPE,
         [](const BufferCard& b) { return InfoValue::Text(*b.m_tlType); }},
        {GenTL::BUFFER_INFO_SIZE_FILLED, FrameSize<&Frame::sizeFilled>},
        {GenTL::BUFFER_INFO_WIDTH, FrameSize<&Frame::width>},
        {GenTL::BUFFER_INFO_HEIGHT, FrameSize<&Frame::height>},
        {GenTL::BUFFER_INFO_XOFFSET, FrameSize<&Frame::offsetX>},
        {GenTL::BUFFER_INFO_YOFFSET, FrameSize<&Frame::offsetY>},
        {GenTL::BUFFER_INFO_XPADDING, FrameSize<&Frame::paddingX>},
        {GenTL::BUFFER_INFO_YPADDING, FrameSize<&Frame::paddingY>},
        {GenTL::BUFFER_INFO_FRAMEID, FrameNumber<&Frame::frameId>},
        {GenTL::BUFFER_INFO_IMAGEPRESENT, FrameFlag<&Frame::imagePresent>},
        {GenTL::BUFFER_INFO_IMAGEOFFSET, FrameSize<&Frame::imageOffset>},
        {GenTL::BUFFER_INFO_PAYLOADTYPE, FrameSize<&Frame::payloadType>},
        {GenTL::BUFFER_INFO_PIXELFORMAT, FrameNumber<&Frame::pixelFormat>},
        {GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE,
         [](const BufferCard& b) {
             static_cast<void>(FrameOf(b));
             return InfoValue::Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT);
         }},
        {GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT, FrameSize<&Frame::deliveredHeight>},
        {GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, FrameSize<&Frame::chunkPayloadSize>},
        {GenTL::BUFFER_INFO_CHUNKLAYOUTID, FrameNumber<&Frame::chunkLayoutId>},
        {GenTL::BUFFER_INFO_FILENAME, [](const BufferCard&) -> InfoValue { ThrowNotAvailable(); }},
        {GenTL::BUFFER_INFO_PIXEL_ENDIANNESS,
         [](const BufferCard& b) {
             static_cast<void>(FrameOf(b));
             return InfoValue::Int32(GenTL::PIXELENDIANNESS_LITTLE);
         }},
        {GenTL::BUFFER_INFO_DATA_SIZE, FrameSize<&Frame::sizeFilled>},
        {GenTL::BUFFER_INFO_TIMESTAMP_NS, FrameNumber<&Frame::timestampNs>},
        {GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER, FrameFlag<&Frame::largerThanBuffer>},
        {GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA,
         [](const BufferCard& b) { return InfoValue::Bool(FrameOf(b).hasChunks); }},
    };
};

InfoValue BufferCard::Answer(GenTL::BUFFER_INFO_CMD command) const {
    return AnswerFrom(Rows::kAll, command, *this);
}

std::optional<InfoValue> BufferCard::TryAnswer(const void* stream, const void* handle,
                                               GenTL::BUFFER_INFO_CMD command) const {
    const uint64_t showing = m_showing;
    if (!ShowsFrameOf(stream, handle)) {
        return std::nullopt;
    }
    InfoValue answer = Answer(command);
    if (m_showing != showing) {
        return std::nullopt;
    }
    return answer;
}

}  // namespace OvProducer
