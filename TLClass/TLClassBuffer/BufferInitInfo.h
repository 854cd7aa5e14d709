#pragma once
/// What the camera says of the frames that a start will bring.

#include <cstdint>

namespace OVTLClass {

class IBufferInitInfo {
public:
    virtual ~IBufferInitInfo() = default;

    virtual int64_t GetWidth() const = 0;
    virtual void SetWidth(int64_t width) = 0;
    virtual int64_t GetHeight() const = 0;
    virtual void SetHeight(int64_t height) = 0;
    virtual int64_t GetOffsetX() const = 0;
    virtual void SetOffsetX(int64_t offset) = 0;
    virtual int64_t GetOffsetY() const = 0;
    virtual void SetOffsetY(int64_t offset) = 0;
    /// Bytes of one frame.
    virtual int64_t GetPayloadSize() const = 0;
    virtual void SetPayloadSize(int64_t size) = 0;
    virtual int64_t GetPixelFormat() const = 0;
    virtual void SetPixelFormat(int64_t format) = 0;
    /// Whether metadata comes with each frame.
    virtual bool GetChunkMode() const = 0;
    virtual void SetChunkMode(bool active) = 0;

protected:
    IBufferInitInfo() = default;
    IBufferInitInfo(const IBufferInitInfo&) = default;
    IBufferInitInfo& operator=(const IBufferInitInfo&) = default;
};

class CBufferInitInfo : public IBufferInitInfo {
public:
    CBufferInitInfo() = default;
    /// Copies the seven values one by one.
    explicit CBufferInitInfo(const IBufferInitInfo& other)
        : m_width(other.GetWidth()),
          m_height(other.GetHeight()),
          m_offsetX(other.GetOffsetX()),
          m_offsetY(other.GetOffsetY()),
          m_payloadSize(other.GetPayloadSize()),
          m_pixelFormat(other.GetPixelFormat()),
          m_chunkMode(other.GetChunkMode()) {}

    int64_t GetWidth() const override { return m_width; }
    void SetWidth(int64_t width) override { m_width = width; }
    int64_t GetHeight() const override { return m_height; }
    void SetHeight(int64_t height) override { m_height = height; }
    int64_t GetOffsetX() const override { return m_offsetX; }
    void SetOffsetX(int64_t offset) override { m_offsetX = offset; }
    int64_t GetOffsetY() const override { return m_offsetY; }
    void SetOffsetY(int64_t offset) override { m_offsetY = offset; }
    int64_t GetPayloadSize() const override { return m_payloadSize; }
    void SetPayloadSize(int64_t size) override { m_payloadSize = size; }
    int64_t GetPixelFormat() const override { return m_pixelFormat; }
    void SetPixelFormat(int64_t format) override { m_pixelFormat = format; }
    bool GetChunkMode() const override { return m_chunkMode; }
    void SetChunkMode(bool active) override { m_chunkMode = active; }

private:
    int64_t m_width = 0;
    int64_t m_height = 0;
    int64_t m_offsetX = 0;
    int64_t m_offsetY = 0;
    int64_t m_payloadSize = 0;
    int64_t m_pixelFormat = 0;
    bool m_chunkMode = false;
};

}  // namespace OVTLClass
