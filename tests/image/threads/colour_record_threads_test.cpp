// Image functions on many threads, and a colour record that is written meanwhile.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

#include "QyImageProc.h"
#include "image/Frames.h"
#include "image/TestColourRecord.h"

namespace {

using Bytes = std::vector<uint8_t>;

/// Threads that are waited for.
class Threads {
public:
    Threads() = default;
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;
    ~Threads() {
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }
    void Start(std::function<void()> run) { m_threads.emplace_back(std::move(run)); }

private:
    std::vector<std::thread> m_threads;
};

void Lock(TestRecord& record) {
    EXPECT_EQ(pthread_mutex_lock(record.Mutex()), 0);
}

void Unlock(TestRecord& record) {
    EXPECT_EQ(pthread_mutex_unlock(record.Mutex()), 0);
}

/// A matrix that leaves an image as it is, or halves it.
void SetGain(TestRecord& record, bool isWhole) {
    const int gain = isWhole ? 16 : 8;
    record.SetMatrix({gain, 0, 0, 0, gain, 0, 0, 0, gain});
}

constexpr int kWidth = 37;
constexpr int kHeight = 11;
constexpr size_t kPixels = size_t{kWidth} * kHeight;
constexpr uint8_t kLevel = 100;

/// Writes the record again and again while readers run, until all of them are done.
void WithWriter(TestRecord& record, const std::vector<std::function<void()>>& readers) {
    std::atomic<size_t> running = readers.size();
    Threads threads;
    for (const auto& reader : readers) {
        threads.Start([&running, &reader] {
            reader();
            --running;
        });
    }
    for (bool isWhole = false; running != 0; isWhole = !isWhole) {
        Lock(record);
        SetGain(record, isWhole);
        Unlock(record);
    }
}

/// Corrects an image many times; each must be all of one state of the record.
template <class Correct>
std::function<void()> Reader(size_t pixelBytes, Correct correct) {
    return [pixelBytes, correct] {
        constexpr int kRounds = 200;
        const Bytes image(kPixels * pixelBytes, kLevel);
        for (int round = 0; round < kRounds; ++round) {
            Bytes out(image.size());
            ASSERT_EQ(correct(image.data(), out.data()), QY_OK);
            Bytes expected(image.size(), out[0]);
            for (size_t i = 3; i < expected.size() && pixelBytes == 4; i += 4) {
                expected[i] = kLevel;
            }
            ASSERT_TRUE(out[0] == kLevel || out[0] == kLevel / 2) << int{out[0]};
            ASSERT_EQ(out, expected);
        }
    };
}

TEST(ColourRecordThreads, SeeNoRecordThatIsHalfWritten) {
    TestRecord record;
    SetGain(record, true);
    const auto* const read = &record.record;
    const auto rgb = [read](const void* src, void* dst) {
        return QyImageImprovment(src, dst, kWidth, kHeight, read, nullptr, nullptr);
    };
    const auto bgr = [read](const void* src, void* dst) {
        return QyImageImprovmentEx(src, dst, kWidth, kHeight, read, nullptr, nullptr, QY_ORDER_BGR);
    };
    const auto argb = [read](const void* src, void* dst) {
        return QyARGBImageImprovment(src, dst, kWidth, kHeight, read, nullptr, nullptr);
    };
    WithWriter(record, {Reader(3, rgb), Reader(3, bgr), Reader(4, argb)});
}

TEST(ColourRecordThreads, CalculateCoefficientsOfOneState) {
    TestRecord record;
    SetGain(record, true);
    const auto reader = [&record] {
        constexpr int kRounds = 2000;
        for (int round = 0; round < kRounds; ++round) {
            std::array<uint16_t, 9> words{};
            ASSERT_EQ(QyCalcCCParam(&record.record, 64, words.data(), 18), QY_OK);
            ASSERT_TRUE(words[0] == 256 || words[0] == 128) << words[0];
            ASSERT_EQ(words, (std::array<uint16_t, 9>{words[0], words[0], words[0], 256, 256, 256,
                                                      256, 256, 256}));
        }
    };
    WithWriter(record, {reader, reader});
}

TEST(ColourRecordThreads, WaitForAWriterThatHoldsTheLock) {
    TestRecord record;
    SetGain(record, true);
    const Bytes image(kPixels * 3, kLevel);
    Bytes out(image.size());
    Lock(record);
    {
        Threads threads;
        threads.Start([&] {
            EXPECT_EQ(QyImageImprovment(image.data(), out.data(), kWidth, kHeight, &record.record,
                                        nullptr, nullptr),
                      QY_OK);
        });
        SetGain(record, false);
        Unlock(record);
    }
    EXPECT_EQ(out, Bytes(image.size(), kLevel / 2));
    Lock(record);
    Unlock(record);
}

int CodeOfCalculation(const TestRecord& record) {
    std::array<uint16_t, 9> words{};
    try {
        QyCalcCCParam(&record.record, 64, words.data(), 18);
        return 0;
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

TEST(ColourRecordThreads, WaitForNoneThatDiedOverTheRecord) {
    TestRecord record(PTHREAD_MUTEX_ROBUST);
    {
        Threads threads;
        threads.Start([&record] { Lock(record); });
    }
    EXPECT_EQ(CodeOfCalculation(record), EOWNERDEAD);
    Threads threads;
    threads.Start([&record] { EXPECT_EQ(CodeOfCalculation(record), ENOTRECOVERABLE); });
}

/// A frame through all stages, and a table made for it.
Bytes Processed(int method) {
    const auto raw = MakeRaw(64, 48, Content::Random, 255);
    Bytes source(raw.samples.begin(), raw.samples.end());
    Bytes lut(256);
    uint16_t lutSize = 256;
    EXPECT_EQ(QyGetLut(30, 10, lut.data(), &lutSize, 1.8), QY_OK);
    std::array<uint16_t, 9> coefficients = {300, 290, 310, 200, 230, 250, 240, 236, 244};
    QyRawImgRecord record{};
    record.DefectivePixelCorrect = 1;
    record.Denoise = 1;
    record.Sharpness = 1;
    record.SharpFactor = 1.5F;
    record.Lut = lut.data();
    record.LutSize = lutSize;
    record.CCParam = coefficients.data();
    record.CCParamSize = 18;
    record.Method = method;
    record.Filter = QY_BAYER_GR;
    Bytes image(source.size() * 3);
    EXPECT_EQ(QyRaw8ImgProcess(source.data(), image.data(), 64, 48, &record), QY_OK);
    Bytes turned(source.size());
    EXPECT_EQ(QyRotate90CW8B(source.data(), turned.data(), 64, 48), QY_OK);
    image.insert(image.end(), turned.begin(), turned.end());
    return image;
}

TEST(ImageThreads, ShareNothing) {
    constexpr size_t kThreads = 4;
    std::array<Bytes, kThreads> images;
    {
        Threads threads;
        for (size_t i = 0; i < kThreads; ++i) {
            threads.Start([&images, i] { images[i] = Processed(static_cast<int>(i % 2)); });
        }
    }
    for (size_t i = 0; i < kThreads; ++i) {
        EXPECT_EQ(images[i], Processed(static_cast<int>(i % 2)));
    }
}

}  // namespace
