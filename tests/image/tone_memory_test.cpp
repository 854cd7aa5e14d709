// What the functions say when there is no memory.

#include <gtest/gtest.h>

#include <string>

#include "FailingMemory.h"
#include "Frames.h"
#include "QyImageProc.h"

namespace {

/// A function, and memory that is larger than what any of them writes.
struct ToneFunction {
    const char* name;
    QY_STATUS (*run)(const void* src, uint8_t* dst);
};

uint32_t* AsWords(uint8_t* bytes) {
    return static_cast<uint32_t*>(static_cast<void*>(bytes));
}

const ToneFunction kToneFunctions[] = {
    {"Brightness", [](const void* src, uint8_t* dst) { return QyBrightness(src, dst, 300, 10); }},
    {"Contrast", [](const void* src, uint8_t* dst) { return QyContrast(src, dst, 300, 10); }},
    {"Sharpening", [](const void* src, uint8_t* dst) { return QySharpen24B(src, dst, 10, 10, 1); }},
    {"ContrastRecord",
     [](const void* /*src*/, uint8_t* dst) {
         int32_t size = QY_TONE_RECORD_SIZE;
         return QyGetContrastLut(10, AsWords(dst), &size);
     }},
    {"CombinedTable",
     [](const void* /*src*/, uint8_t* dst) {
         uint16_t size = 256;
         return QyGetLut(10, 10, dst, &size, 2);
     }},
};

class ToneMemory : public testing::TestWithParam<ToneFunction> {};

TEST_P(ToneMemory, IsReportedAndNothingWritten) {
    const std::vector<uint8_t> source(300, 9);
    GuardedBytes out(QY_TONE_RECORD_SIZE, 0);
    for (size_t before = 0;; ++before) {
        QY_STATUS status = QY_OK;
        const MemoryUse use;
        {
            const FailingMemory failing(before);
            status = GetParam().run(source.data(), out.Data());
        }
        EXPECT_EQ(use.Left(), 0U) << before;
        if (!FailingMemory::HasFailed()) {
            EXPECT_EQ(status, QY_OK);
            EXPECT_NE(before, 0U) << "the function allocates nothing";
            break;
        }
        EXPECT_EQ(status, QY_NOT_ENOUGH_MEMORY) << before;
        EXPECT_TRUE(out.IsUntouched()) << before;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ToneMemory, testing::ValuesIn(kToneFunctions),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ToneMemorySize, OfARefusedRecordLeavesItsSize) {
    std::vector<uint32_t> record(QY_TONE_RECORD_SIZE / sizeof(uint32_t));
    int32_t size = 20000;
    const FailingMemory failing(0);
    EXPECT_EQ(QyGetContrastLut(10, record.data(), &size), QY_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(size, 20000);
}

}  // namespace
