/// @file
/// Several questions about a buffer in one call.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "TestProducerFixture.h"

namespace {

/// Asks about a buffer that holds a delivered frame.
class StackedQuery : public TestProducerTest {
protected:
    StackedQuery() {
        control.OfferStack(1);
        camera.OpenStream();
        camera.Start(1, kFrameSize);
        control.Trigger(0, 0, 1);
        buffer = camera.NextFrame();
    }

    /// A question for a number of 64 bits.
    static GenTL::DS_BUFFER_INFO_STACKED Question(GenTL::BUFFER_INFO_CMD command,
                                                  std::uint64_t& answer) {
        return {command, GenTL::INFO_DATATYPE_UNKNOWN, &answer, sizeof answer, 1};
    }

    GenTL::GC_ERROR Ask(std::vector<GenTL::DS_BUFFER_INFO_STACKED>& questions) const {
        return api.DSGetBufferInfoStacked(camera.stream, buffer, questions.data(),
                                          questions.size());
    }

    std::string LastText() const {
        std::array<char, 512> text{};
        std::size_t size = text.size();
        EXPECT_EQ(api.GCGetLastError(nullptr, text.data(), &size), 0);
        return text.data();
    }

    GenTL::BUFFER_HANDLE buffer = nullptr;
    std::uint64_t first = 99;
    std::uint64_t second = 99;
};

TEST_F(StackedQuery, AnswersEachQuestionWithItsTypeAndSize) {
    std::uint8_t flag = 99;
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_WIDTH, first),
        Question(GenTL::BUFFER_INFO_FRAMEID, second),
        {GenTL::BUFFER_INFO_IS_INCOMPLETE, GenTL::INFO_DATATYPE_UNKNOWN, &flag, 8, 1}};
    ASSERT_EQ(Ask(questions), 0);
    EXPECT_EQ(first, 64U);
    EXPECT_EQ(second, 0U);
    EXPECT_EQ(flag, 0);
    const std::vector<GenTL::INFO_DATATYPE> types = {questions[0].iType, questions[1].iType,
                                                     questions[2].iType};
    EXPECT_EQ(types, (std::vector<GenTL::INFO_DATATYPE>{GenTL::INFO_DATATYPE_SIZET,
                                                        GenTL::INFO_DATATYPE_UINT64,
                                                        GenTL::INFO_DATATYPE_BOOL8}));
    const std::vector<std::size_t> sizes = {questions[0].iSize, questions[1].iSize,
                                            questions[2].iSize};
    EXPECT_EQ(sizes, (std::vector<std::size_t>{8, 8, 1}));
    for (const auto& question : questions) {
        EXPECT_EQ(static_cast<int>(question.iResult), 0);
    }
}

TEST_F(StackedQuery, GivesAQuestionThatIsRefusedAResultOfItsOwn) {
    control.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_HEIGHT, GenTL::GC_ERR_IO);
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_HEIGHT, first), Question(-7, first),
        Question(GenTL::BUFFER_INFO_WIDTH, second)};
    questions[1].iSize = 4;
    ASSERT_EQ(Ask(questions), 0);
    EXPECT_EQ(static_cast<int>(questions[0].iResult), GenTL::GC_ERR_IO);
    EXPECT_EQ(static_cast<int>(questions[1].iResult), GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(first, 99U);
    EXPECT_EQ(static_cast<int>(questions[2].iResult), 0);
    EXPECT_EQ(second, 64U);
}

TEST_F(StackedQuery, RefusesAnAnswerThatNeedsMoreRoom) {
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_WIDTH, first)};
    questions[0].iSize = 4;
    ASSERT_EQ(Ask(questions), 0);
    EXPECT_EQ(static_cast<int>(questions[0].iResult), GenTL::GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(first, 99U);
}

TEST_F(StackedQuery, AnswersWhatNeedsNoFrameOfABufferWithoutOne) {
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_WIDTH, first), Question(GenTL::BUFFER_INFO_SIZE, second)};
    ASSERT_EQ(Ask(questions), 0);
    EXPECT_EQ(static_cast<int>(questions[0].iResult), GenTL::GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(static_cast<int>(questions[1].iResult), 0);
    EXPECT_EQ(second, kFrameSize);
}

TEST_F(StackedQuery, FailsAsAWholeForWhatIsNoBufferOfTheStream) {
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_WIDTH, first)};
    const auto ask = [&](GenTL::DS_HANDLE stream, GenTL::BUFFER_HANDLE of) {
        return api.DSGetBufferInfoStacked(stream, of, questions.data(), questions.size());
    };
    EXPECT_EQ(ask(camera.device, buffer), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(ask(camera.stream, camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
    ASSERT_EQ(api.GCCloseLib(), 0);
    camera.library = false;
    EXPECT_EQ(ask(camera.stream, buffer), GenTL::GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(first, 99U);
}

TEST_F(StackedQuery, NeedsTheQuestions) {
    EXPECT_EQ(api.DSGetBufferInfoStacked(camera.stream, buffer, nullptr, 1),
              GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(LastText(), "The questions must not be null");
}

TEST_F(StackedQuery, LeavesNoTraceWhereItIsNotOffered) {
    control.OfferStack(0);
    std::vector<GenTL::DS_BUFFER_INFO_STACKED> questions = {
        Question(GenTL::BUFFER_INFO_WIDTH, first)};
    ASSERT_EQ(api.DSQueueBuffer(nullptr, nullptr), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(Ask(questions), GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(static_cast<int>(questions[0].iResult), 1);
    EXPECT_EQ(control.CallCount("DSGetBufferInfoStacked"), 0U);
    EXPECT_EQ(LastText(), "The handle is invalid");
}

}  // namespace
