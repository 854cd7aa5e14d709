// Functions of the header that this version doesn't serve say so, whatever they
// are given.

#include <gtest/gtest.h>

#include "QyImageProc.h"

TEST(ImageFunctionsToCome, AnswerNotSupported) {
    const QY_STATUS answers[] = {
        QyImageImprovment(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr),
        QyImageImprovmentEx(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr, QY_ORDER_RGB),
        QyARGBImageImprovment(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr),
        QyRaw8ImgProcess(nullptr, nullptr, 0, 0, nullptr),
        QyMono8ImgProcess(nullptr, nullptr, 0, 0, nullptr),
    };
    EXPECT_EQ(std::size(answers), 5U);
    for (const QY_STATUS answer : answers) {
        EXPECT_EQ(answer, QY_NOT_SUPPORTED);
    }
}
