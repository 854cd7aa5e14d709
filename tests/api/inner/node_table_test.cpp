#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "camera/NodeTable.h"

namespace {

/// The table never looks at a record.
const CNodeRecord& RecordAt(const int& place) {
    return reinterpret_cast<const CNodeRecord&>(place);
}

class NodeTable : public testing::Test {
protected:
    CNodeTable& table = CNodeTable::GetInstance();
    int first = 0;
    int second = 0;
};

TEST_F(NodeTable, FindsARecordUntilItIsRemoved) {
    const OV_NODE_HANDLE handle = table.Add(RecordAt(first));
    EXPECT_EQ(table.Find(handle), &RecordAt(first));
    table.Remove(handle);
    EXPECT_EQ(table.Find(handle), nullptr);
}

TEST_F(NodeTable, TellsTheUsesOfASlotApart) {
    const OV_NODE_HANDLE before = table.Add(RecordAt(first));
    table.Remove(before);
    const OV_NODE_HANDLE after = table.Add(RecordAt(second));
    EXPECT_EQ(static_cast<uint32_t>(before), static_cast<uint32_t>(after));
    EXPECT_NE(before, after);
    EXPECT_EQ(table.Find(before), nullptr);
    EXPECT_EQ(table.Find(after), &RecordAt(second));
    table.Remove(after);
}

TEST_F(NodeTable, GrowsAndKeepsItsHandles) {
    constexpr size_t kMany = 10000;
    std::vector<OV_NODE_HANDLE> handles;
    for (size_t i = 0; i < kMany; ++i) {
        handles.push_back(table.Add(RecordAt(i % 2 == 0 ? first : second)));
    }
    for (size_t i = 0; i < kMany; ++i) {
        EXPECT_EQ(table.Find(handles[i]), &RecordAt(i % 2 == 0 ? first : second));
        table.Remove(handles[i]);
    }
}

TEST_F(NodeTable, NeverFindsTheRecordOfAnotherHandle) {
    std::atomic<OV_NODE_HANDLE> shown{0};
    std::atomic<bool> isOver{false};
    std::thread reader([&] {
        while (!isOver) {
            // The handle of `first` is shown only after it was removed.
            EXPECT_NE(table.Find(shown), &RecordAt(second));
        }
    });
    for (unsigned round = 0; round < 20000; ++round) {
        const OV_NODE_HANDLE old = table.Add(RecordAt(first));
        shown = old;
        table.Remove(old);
        table.Remove(table.Add(RecordAt(second)));
    }
    isOver = true;
    reader.join();
}

}  // namespace
