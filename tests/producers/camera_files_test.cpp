/// @file
/// The files of a virtual camera, operation by operation.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "virtual/CameraFiles.h"

using namespace OvVirtual;

namespace OvVirtual {

inline bool operator==(const FileOutcome& a, const FileOutcome& b) {
    return a.status == b.status && a.count == b.count;
}

inline void PrintTo(const FileOutcome& outcome, std::ostream* out) {
    *out << (outcome.status == FileStatus::Success ? "Success " : "Failure ") << outcome.count;
}

}  // namespace OvVirtual

namespace {

constexpr auto kRead = FileOpenMode::Read;
constexpr auto kWrite = FileOpenMode::Write;
constexpr auto kReadWrite = FileOpenMode::ReadWrite;

constexpr auto kUser = FileName::UserFile;
constexpr auto kFactory = FileName::FactoryCalibration;
constexpr FileOutcome kDone{FileStatus::Success, 0};
constexpr FileOutcome kFailed{FileStatus::Failure, 0};
constexpr auto kBuffer = static_cast<std::int64_t>(CameraFiles::kBufferLength);
constexpr auto kMax = static_cast<std::int64_t>(CameraFiles::kUserFileMax);
constexpr std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();

FileOutcome Moved(std::int64_t count) {
    return {FileStatus::Success, count};
}

class CameraFilesTest : public testing::Test {
protected:
    FileOutcome Run(const FileRequest& request) {
        files.Execute(request);
        return files.Outcome();
    }
    FileOutcome Open(FileOpenMode mode, FileName file = kUser) {
        return Run({.file = file, .operation = FileOperation::Open, .mode = mode});
    }
    FileOutcome Close(FileName file = kUser) {
        return Run({.file = file, .operation = FileOperation::Close});
    }
    FileOutcome Delete(FileName file = kUser) {
        return Run({.file = file, .operation = FileOperation::Delete});
    }
    FileOutcome Read(std::int64_t offset, std::int64_t length, FileName file = kUser) {
        return Run({file, FileOperation::Read, kRead, offset, length});
    }
    FileOutcome Write(std::int64_t offset, std::int64_t length, FileName file = kUser) {
        return Run({file, FileOperation::Write, kRead, offset, length});
    }

    void Fill(const std::string& text) { files.WriteBuffer(0, std::as_bytes(std::span(text))); }
    /// The first bytes of the buffer.
    std::string Buffer(std::size_t length) const {
        std::string text(length, '?');
        files.ReadBuffer(0, std::as_writable_bytes(std::span(text)));
        return text;
    }
    /// All that the user's file holds, "none" when it isn't there.
    std::string UserFile() const {
        const auto content = files.UserFile();
        return content
                   ? std::string(reinterpret_cast<const char*>(content->data()), content->size())
                   : "none";
    }
    void SetUserFile(const std::string& text) {
        const auto bytes = std::as_bytes(std::span(text));
        files.SetUserFile(CameraFiles::Content(bytes.begin(), bytes.end()));
    }

    CameraFiles files{"Gain=1\n"};
};

TEST_F(CameraFilesTest, StartsWithTheFactorysFileAlone) {
    EXPECT_EQ(files.Outcome(), kDone);
    EXPECT_EQ(UserFile(), "none");
    EXPECT_EQ(files.Size(kUser), 0U);
    EXPECT_EQ(files.Size(kFactory), 7U);
    EXPECT_EQ(Buffer(4), std::string(4, '\0'));
}

// Opening and closing.

TEST_F(CameraFilesTest, OpensForReadingWhatIsThere) {
    EXPECT_EQ(Open(kRead), kFailed);
    EXPECT_EQ(Close(), kFailed) << "a failed opening leaves nothing open";
    SetUserFile("text");
    EXPECT_EQ(Open(kRead), kDone);
    EXPECT_EQ(UserFile(), "text");
}

TEST_F(CameraFilesTest, OpensForWritingWhatIsThereOrNot) {
    for (const FileOpenMode mode : {kWrite, kReadWrite}) {
        EXPECT_EQ(Open(mode), kDone);
        EXPECT_EQ(UserFile(), "");
        EXPECT_EQ(Close(), kDone);
        EXPECT_EQ(Delete(), kDone);
    }
}

TEST_F(CameraFilesTest, OpeningForWritingAloneEmptiesTheFile) {
    SetUserFile("text");
    EXPECT_EQ(Open(kReadWrite), kDone);
    EXPECT_EQ(Close(), kDone);
    EXPECT_EQ(UserFile(), "text");
    EXPECT_EQ(Open(kWrite), kDone);
    EXPECT_EQ(UserFile(), "");
}

TEST_F(CameraFilesTest, AnOpenFileDoesNotOpenAgain) {
    SetUserFile("text");
    EXPECT_EQ(Open(kRead), kDone);
    for (const FileOpenMode mode : {kRead, kWrite, kReadWrite}) {
        EXPECT_EQ(Open(mode), kFailed);
    }
    EXPECT_EQ(UserFile(), "text");
    EXPECT_EQ(Write(0, 1), kFailed) << "the first mode holds";
}

TEST_F(CameraFilesTest, ClosesOnce) {
    EXPECT_EQ(Close(), kFailed);
    EXPECT_EQ(Open(kWrite), kDone);
    EXPECT_EQ(Close(kFactory), kFailed) << "each file on its own";
    EXPECT_EQ(Close(), kDone);
    EXPECT_EQ(Close(), kFailed);
}

TEST_F(CameraFilesTest, FilesAreOpenSideBySide) {
    EXPECT_EQ(Open(kWrite), kDone);
    EXPECT_EQ(Open(kRead, kFactory), kDone);
    EXPECT_EQ(Read(0, 4, kFactory), Moved(4));
    EXPECT_EQ(Write(0, 4), Moved(4));
    EXPECT_EQ(UserFile(), "Gain");
}

// The mode.

struct ModeCase {
    const char* name;
    std::optional<FileOpenMode> mode;
    bool reads;
    bool writes;
};

class CameraFileMode : public CameraFilesTest, public testing::WithParamInterface<ModeCase> {};

TEST_P(CameraFileMode, TellsWhatMayBeDone) {
    SetUserFile("text");
    if (GetParam().mode) {
        ASSERT_EQ(Open(*GetParam().mode), kDone);
    }
    Fill("TEXT");
    EXPECT_EQ(Write(0, 4), GetParam().writes ? Moved(4) : kFailed);
    EXPECT_EQ(UserFile(), GetParam().writes ? "TEXT" : "text");
    EXPECT_EQ(Read(0, 4), GetParam().reads ? Moved(4) : kFailed);
    EXPECT_EQ(Buffer(4), GetParam().reads && !GetParam().writes ? "text" : "TEXT");
}

INSTANTIATE_TEST_SUITE_P(Of, CameraFileMode,
                         testing::Values(ModeCase{"AClosedFile", {}, false, false},
                                         ModeCase{"Read", kRead, true, false},
                                         ModeCase{"Write", kWrite, false, true},
                                         ModeCase{"ReadWrite", kReadWrite, true, true}),
                         [](const auto& mode) { return mode.param.name; });

// Amounts.

struct AmountCase {
    std::int64_t offset;
    std::int64_t length;
    FileOutcome outcome;
};

void PrintTo(const AmountCase& amount, std::ostream* out) {
    *out << amount.offset << '+' << amount.length;
}

class CameraFileRead : public CameraFilesTest, public testing::WithParamInterface<AmountCase> {};

TEST_P(CameraFileRead, MovesWhatTheFileHas) {
    SetUserFile(std::string(6000, 'f'));
    ASSERT_EQ(Open(kRead), kDone);
    Fill(std::string(CameraFiles::kBufferLength, 'b'));
    const auto& [offset, length, outcome] = GetParam();
    EXPECT_EQ(Read(offset, length), outcome);
    const auto count = static_cast<std::size_t>(outcome.count);
    EXPECT_EQ(Buffer(CameraFiles::kBufferLength),
              std::string(count, 'f') + std::string(CameraFiles::kBufferLength - count, 'b'));
}

INSTANTIATE_TEST_SUITE_P(
    Amounts, CameraFileRead,
    testing::Values(AmountCase{0, 0, Moved(0)}, AmountCase{0, 1, Moved(1)},
                    AmountCase{0, kBuffer, Moved(kBuffer)},
                    AmountCase{0, kBuffer + 1, Moved(kBuffer)},
                    AmountCase{0, kHuge, Moved(kBuffer)}, AmountCase{5990, 10, Moved(10)},
                    AmountCase{5990, 11, Moved(10)}, AmountCase{5999, kHuge, Moved(1)},
                    AmountCase{6000, 1, Moved(0)}, AmountCase{6001, 1, Moved(0)},
                    AmountCase{kHuge, 1, Moved(0)}, AmountCase{kHuge, kHuge, Moved(0)},
                    AmountCase{-1, 1, kFailed}, AmountCase{0, -1, kFailed},
                    AmountCase{kLowest, kHuge, kFailed}, AmountCase{kHuge, kLowest, kFailed}));

class CameraFileWrite : public CameraFilesTest, public testing::WithParamInterface<AmountCase> {};

TEST_P(CameraFileWrite, MovesWhatTheFileHasRoomFor) {
    ASSERT_EQ(Open(kWrite), kDone);
    Fill(std::string(CameraFiles::kBufferLength, 'b'));
    const auto& [offset, length, outcome] = GetParam();
    EXPECT_EQ(Write(offset, length), outcome);
    const auto count = static_cast<std::size_t>(outcome.count);
    EXPECT_EQ(UserFile(), count == 0 ? std::string()
                                     : std::string(static_cast<std::size_t>(offset), '\0') +
                                           std::string(count, 'b'));
    EXPECT_EQ(files.Size(kUser), UserFile().size());
}

INSTANTIATE_TEST_SUITE_P(
    Amounts, CameraFileWrite,
    testing::Values(AmountCase{0, 0, Moved(0)}, AmountCase{0, 1, Moved(1)},
                    AmountCase{0, kBuffer, Moved(kBuffer)},
                    AmountCase{0, kBuffer + 1, Moved(kBuffer)},
                    AmountCase{0, kHuge, Moved(kBuffer)}, AmountCase{7, 3, Moved(3)},
                    AmountCase{kMax - 10, 10, Moved(10)}, AmountCase{kMax - 10, 11, Moved(10)},
                    AmountCase{kMax - 1, kHuge, Moved(1)}, AmountCase{kMax, 1, kFailed},
                    AmountCase{kMax + 1, 1, kFailed}, AmountCase{kHuge, kHuge, kFailed},
                    AmountCase{kHuge, 0, Moved(0)}, AmountCase{-1, 1, kFailed},
                    AmountCase{0, -1, kFailed}, AmountCase{kLowest, kHuge, kFailed},
                    AmountCase{kHuge, kLowest, kFailed}));

TEST_F(CameraFilesTest, WritingLeavesTheRestOfTheFile) {
    SetUserFile("0123456789");
    ASSERT_EQ(Open(kReadWrite), kDone);
    Fill("abc");
    EXPECT_EQ(Write(2, 3), Moved(3));
    EXPECT_EQ(UserFile(), "01abc56789");
    EXPECT_EQ(Write(9, 3), Moved(3));
    EXPECT_EQ(UserFile(), "01abc5678abc");
}

TEST_F(CameraFilesTest, AFailureFollowsACountWithNone) {
    ASSERT_EQ(Open(kWrite), kDone);
    EXPECT_EQ(Write(0, 5), Moved(5));
    EXPECT_EQ(Read(0, 5), kFailed);
    EXPECT_EQ(Close(), kDone);
}

// The factory's file.

TEST_F(CameraFilesTest, TheFactorysFileIsForReadingAlone) {
    EXPECT_EQ(Open(kWrite, kFactory), kFailed);
    EXPECT_EQ(Open(kReadWrite, kFactory), kFailed);
    EXPECT_EQ(Delete(kFactory), kFailed);
    EXPECT_EQ(Open(kRead, kFactory), kDone);
    EXPECT_EQ(Write(0, 1, kFactory), kFailed);
    EXPECT_EQ(Delete(kFactory), kFailed);
    EXPECT_EQ(Read(0, 100, kFactory), Moved(7));
    EXPECT_EQ(Buffer(7), "Gain=1\n");
}

// Deleting.

TEST_F(CameraFilesTest, DeletesWhatIsThereAndNotOpen) {
    EXPECT_EQ(Delete(), kFailed);
    SetUserFile("text");
    EXPECT_EQ(Open(kRead), kDone);
    EXPECT_EQ(Delete(), kFailed);
    EXPECT_EQ(UserFile(), "text");
    EXPECT_EQ(Close(), kDone);
    EXPECT_EQ(Delete(), kDone);
    EXPECT_EQ(UserFile(), "none");
    EXPECT_EQ(files.Size(kUser), 0U);
    EXPECT_EQ(Open(kRead), kFailed);
}

// The rest.

TEST_F(CameraFilesTest, AnUnknownOperationFails) {
    EXPECT_EQ(Run({.operation = FileOperation::Count}), kFailed);
    EXPECT_THROW(files.Execute({.file = FileName::Count}), std::out_of_range);
    EXPECT_THROW(files.Size(static_cast<FileName>(-1)), std::out_of_range);
}

TEST_F(CameraFilesTest, TheBufferIsReachedInPartButNotLeft) {
    Fill("0123456789");
    std::array<std::byte, 2> two{};
    files.ReadBuffer(3, two);
    EXPECT_EQ(std::memcmp(two.data(), "34", 2), 0);
    files.WriteBuffer(0, two);
    EXPECT_EQ(Buffer(4), "3423");
    for (const std::size_t offset : {CameraFiles::kBufferLength - 1, CameraFiles::kBufferLength,
                                     CameraFiles::kBufferLength + 1, SIZE_MAX}) {
        EXPECT_THROW(files.ReadBuffer(offset, two), std::out_of_range) << offset;
        EXPECT_THROW(files.WriteBuffer(offset, two), std::out_of_range) << offset;
    }
    EXPECT_NO_THROW(files.ReadBuffer(CameraFiles::kBufferLength - 2, two));
}

TEST_F(CameraFilesTest, ResetClosesAndKeepsTheFiles) {
    EXPECT_EQ(Open(kWrite), kDone);
    Fill("text");
    EXPECT_EQ(Write(0, 4), Moved(4));
    EXPECT_EQ(Open(kWrite), kFailed);
    files.Reset();
    EXPECT_EQ(files.Outcome(), kDone);
    EXPECT_EQ(Buffer(4), std::string(4, '\0'));
    EXPECT_EQ(UserFile(), "text");
    EXPECT_EQ(Close(), kFailed);
}

TEST_F(CameraFilesTest, ServesSeveralThreads) {
    SetUserFile(std::string(100, 'a'));
    ASSERT_EQ(Open(kReadWrite), kDone);
    ASSERT_EQ(Read(0, 100), Moved(100));
    std::atomic<int> looks = 0;
    const std::jthread other([&] {
        for (; looks < 200; ++looks) {
            EXPECT_EQ(files.Outcome(), Moved(100));
            EXPECT_EQ(files.Size(kUser), 100U);
            const std::string seen = Buffer(100);
            EXPECT_EQ(seen, std::string(100, seen[0])) << "a part of another content";
        }
    });
    for (int round = 0; looks < 200; ++round) {
        Fill(std::string(100, static_cast<char>('b' + round % 20)));
        EXPECT_EQ(Write(0, 100), Moved(100));
        EXPECT_EQ(Read(0, 100), Moved(100));
    }
}

}  // namespace
