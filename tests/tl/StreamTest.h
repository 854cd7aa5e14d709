#pragma once
/// The first stream of an open camera.

#include "TLClassBuffer/BufferInitInfo.h"
#include "TLClassDevice/Device.h"
#include "TLClassStream/DataStream.h"
#include "TransportTest.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {

class StreamTest : public ProducerTest {
protected:
    explicit StreamTest(const char* fileName = "KwTL.cti") : ProducerTest(fileName) {
        info.SetWidth(32);
        info.SetHeight(24);
        info.SetOffsetX(4);
        info.SetOffsetY(2);
        info.SetPixelFormat(0x01100003);
        info.SetPayloadSize(64 * 48);
    }
    void SetUp() override {
        device = InitDevice();
        device->DoOpenDevice(3);
        stream = std::dynamic_pointer_cast<CDataStream>(device->DoGetDataStreamList().at(0));
        stream->DoOpenDataStream();
        producer.ClearLog();
    }

    /// No callback of a test outlives the test.
    void TearDown() override { Stop(); }

    void Start() { stream->DoStartDataStreamAcqusition(info); }
    void Stop() { stream->DoStopDataStreamAcquisition(); }

    /// Has the camera take a frame, and fetches it.
    BUFFER_INFO Pull() {
        producer.Trigger(0, 0, 1);
        return Fetch();
    }
    BUFFER_INFO Fetch() {
        BUFFER_INFO frame;
        stream->DoGetBuffer(frame, 60000);
        return frame;
    }
    static void GiveBack(const BUFFER_INFO& frame) {
        static_cast<CBuffer*>(frame.userPointer.value)->QueueBuffer();
    }

    std::shared_ptr<IDevice> device;
    std::shared_ptr<CDataStream> stream;
    CBufferInitInfo info;
};

}  // namespace OVTLClass
