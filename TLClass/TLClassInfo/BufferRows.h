#pragma once
/// The facts on a buffer that a producer is asked for, in the order of the questions.

#include "TLClassInfo/Information.h"

namespace OVTLClass {

inline constexpr InfoRow<BUFFER_INFO> kBufferRows[] = {
    {GenTL::BUFFER_INFO_TLTYPE, GenTL::INFO_DATATYPE_STRING, &BUFFER_INFO::tlType,
     InfoUse::Announcement},
    {GenTL::BUFFER_INFO_SIZE, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::size,
     InfoUse::Announcement},
    {GenTL::BUFFER_INFO_SIZE_FILLED, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::sizeFilled,
     InfoUse::Frame},
    {GenTL::BUFFER_INFO_WIDTH, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::width, InfoUse::Frame},
    {GenTL::BUFFER_INFO_HEIGHT, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::height, InfoUse::Frame},
    {GenTL::BUFFER_INFO_XOFFSET, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::xOffset, InfoUse::Frame},
    {GenTL::BUFFER_INFO_YOFFSET, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::yOffset, InfoUse::Frame},
    {GenTL::BUFFER_INFO_XPADDING, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::xPadding},
    {GenTL::BUFFER_INFO_YPADDING, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::yPadding},
    {GenTL::BUFFER_INFO_IMAGEOFFSET, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::imageOffset},
    {GenTL::BUFFER_INFO_PAYLOADTYPE, GenTL::INFO_DATATYPE_SIZET, &BUFFER_INFO::payloadType},
    {GenTL::BUFFER_INFO_TIMESTAMP, GenTL::INFO_DATATYPE_UINT64, &BUFFER_INFO::timestamp,
     InfoUse::Frame},
    {GenTL::BUFFER_INFO_FRAMEID, GenTL::INFO_DATATYPE_UINT64, &BUFFER_INFO::frameId,
     InfoUse::Frame},
    {GenTL::BUFFER_INFO_PIXELFORMAT, GenTL::INFO_DATATYPE_UINT64, &BUFFER_INFO::pixelFormat,
     InfoUse::Frame},
    {GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE, GenTL::INFO_DATATYPE_UINT64,
     &BUFFER_INFO::pixelFormatNamespace},
    {GenTL::BUFFER_INFO_BASE, GenTL::INFO_DATATYPE_PTR, &BUFFER_INFO::base, InfoUse::Announcement},
    {GenTL::BUFFER_INFO_USER_PTR, GenTL::INFO_DATATYPE_PTR, &BUFFER_INFO::userPointer},
    {GenTL::BUFFER_INFO_IS_INCOMPLETE, GenTL::INFO_DATATYPE_BOOL8, &BUFFER_INFO::incomplete,
     InfoUse::Frame},
};

}  // namespace OVTLClass
