#pragma once

#include <vector>

#include "GenApi/IPort.h"
#include "GenApi/IPortWriteList.h"

namespace GenApi_3_0_ORVANE {

/// Writes in the order in which they were made.
class CPortWriteList : public IPortWriteList {
public:
    void Write(const void* buffer, int64_t address, int64_t length) override;
    void Replay(IPort* port) override;
    void SetCookie(int64_t cookie) override { m_Cookie = cookie; }
    int64_t GetCookie() override { return m_Cookie; }

private:
    struct Record {
        int64_t address;
        std::vector<uint8_t> bytes;
    };

    std::vector<Record> m_Records;
    int64_t m_Cookie = 0;
};

}  // namespace GenApi_3_0_ORVANE
