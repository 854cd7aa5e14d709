#pragma once
/// A camera that appends chunks to its frames.

#include "NodeTest.h"
#include "support/StartableCamera.h"

/// Byte x of the first line of frame n is x + n. Chunk 0xA1 begins with byte 5 and chunk 0xA2
/// with byte 20; "LUTIndex" and "Second" are their first bytes.
class ChunkNodeTest : public NodeTest {
protected:
    static constexpr uint64_t kFirst = 0xA1;
    static constexpr uint64_t kSecond = 0xA2;
    static constexpr uint32_t kFrameTimeOut = 10000;

    void SetUp() override {
        const std::string text =
            DescribeStartable(DescriptionXml::ChunkByteXml("LUTIndex", "000000A1", "No") +
                              DescriptionXml::ChunkByteXml("Second", "A2", "Yes"));
        producer.SetDescription("Remote", "Chunks.xml", text.data(), text.size());
        AddChunk(kFirst, 5, 4);
        AddChunk(kSecond, 20, 4);
        NodeTest::SetUp();
    }

    void AddChunk(uint64_t id, int64_t offset, size_t length) const {
        producer.AddChunk(0, 0, id, offset, length);
    }
    void Start() const { ASSERT_OV_OK(OVStreamOn(camera)); }
    /// Lets the camera take a frame, and borrows it.
    OV_FRAME_BUFFER* Borrow() const {
        producer.Trigger(0, 0, 1);
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, kFrameTimeOut));
        return frame;
    }
    OV_FRAME_BUFFER* Attach() const {
        OV_FRAME_BUFFER* const frame = Borrow();
        EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
        return frame;
    }

    void ExpectValues(const std::string& first, const std::string& second) const {
        EXPECT_EQ(Value(Node("LUTIndex")), first);
        EXPECT_EQ(Value(Node("Second")), second);
    }
    void ExpectNotAvailable(const std::string& name) const {
        OV_NODE_ACCESS access = -1;
        EXPECT_OV_OK(OvNodeGetAccess(Node(name), &access));
        EXPECT_EQ(access, OV_NODE_ACCESS_NOT_AVAILABLE) << name;
        int64_t value = 7;
        EXPECT_EQ(OvNodeGetInteger(Node(name), &value), OV_STATUS_INVALID_ACCESS) << name;
        EXPECT_EQ(value, 7);
    }
    void ExpectNothingAttached() const {
        ExpectNotAvailable("LUTIndex");
        ExpectNotAvailable("Second");
    }
};
