// Functions of the header that this version doesn't serve say so, whatever they
// are given.

#include <gtest/gtest.h>

#include "QyImageProc.h"

TEST(ImageFunctionsToCome, AnswerNotSupported) {
    const QY_STATUS answers[] = {
        QyRaw12PackedToRaw16(nullptr, nullptr, 0, 0),
        QyRaw10PackedToRaw16(nullptr, nullptr, 0, 0),
        QyRaw16toRaw8(nullptr, nullptr, 0, 0, QY_BIT_0_7),
        QyRGB48toRGB24(nullptr, nullptr, 0, 0, QY_BIT_0_7),
        QyGetGammatLut(nullptr, nullptr, 1),
        QyGetContrastLut(0, nullptr, nullptr),
        QyGetLut(0, 0, nullptr, nullptr, 1),
        QyBrightness(nullptr, nullptr, 0, 0),
        QyContrast(nullptr, nullptr, 0, 0),
        QySaturation(nullptr, nullptr, 0, 0),
        QySharpen24B(nullptr, nullptr, 0, 0, 0),
        QyImageImprovment(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr),
        QyImageImprovmentEx(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr, QY_ORDER_RGB),
        QyARGBImageImprovment(nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr),
        QyRaw8ImgProcess(nullptr, nullptr, 0, 0, nullptr),
        QyMono8ImgProcess(nullptr, nullptr, 0, 0, nullptr),
    };
    EXPECT_EQ(std::size(answers), 16U);
    for (const QY_STATUS answer : answers) {
        EXPECT_EQ(answer, QY_NOT_SUPPORTED);
    }
}
