#pragma once
/// Fills the frame records of the flat interface from the producer's facts on a frame.

#include "OvIDef.h"
#include "TLClassInfo/InfoRecords.h"

/// The value, or all bits set if the producer doesn't know it.
template <class Target>
Target FrameValue(const OVTLClass::InfoUint64& info) {
    return info.valid ? static_cast<Target>(info.value) : static_cast<Target>(-1);
}

/// 0 for a complete frame, -1 for an incomplete one and if the producer doesn't know.
inline OV_FRAME_STATUS FrameStatus(const OVTLClass::BUFFER_INFO& info) {
    return info.incomplete.valid && !info.incomplete.value ? OV_FRAME_STATUS_SUCCESS
                                                           : OV_FRAME_STATUS_INCOMPLETE;
}

/// Fills the fields that all three records have under the same name.
template <class Record>
void FillFrameValues(Record& record, const OVTLClass::BUFFER_INFO& info) {
    record.nWidth = FrameValue<int32_t>(info.width);
    record.nHeight = FrameValue<int32_t>(info.height);
    record.nPixelFormat = FrameValue<int32_t>(info.pixelFormat);
    record.nImgSize = FrameValue<int32_t>(info.sizeFilled);
    record.nFrameID = FrameValue<uint64_t>(info.frameId);
    record.nTimestamp = FrameValue<uint64_t>(info.timestamp);
    record.nOffsetX = FrameValue<int32_t>(info.xOffset);
    record.nOffsetY = FrameValue<int32_t>(info.yOffset);
}

/// Fills all fields of an OV_FRAME_DATA or OV_FRAME_BUFFER except its pointers.
template <class Record>
void FillFrame(Record& record, const OVTLClass::BUFFER_INFO& info) {
    record.nStatus = FrameStatus(info);
    FillFrameValues(record, info);
}
