// Mirrors and turns.

#include <gtest/gtest.h>

#include "Bytes.h"
#include "GeometryReference.h"
#include "Refusals.h"

namespace {

using BayerReference::Raw;

struct Move {
    const char* name;
    QY_STATUS (*run)(const void* src, void* dst, int32_t width, int32_t height);
    Raw (*reference)(const Raw& raw);
};

const Move kMoves[] = {
    {"MirrorHorizontally",
     [](const void* src, void* dst, int32_t width, int32_t height) {
         return QyImageMirror(src, dst, width, height, QY_MIRROR_HORIZONTAL);
     },
     GeometryReference::MirrorHorizontally},
    {"MirrorVertically",
     [](const void* src, void* dst, int32_t width, int32_t height) {
         return QyImageMirror(src, dst, width, height, QY_MIRROR_VERTICAL);
     },
     GeometryReference::MirrorVertically},
    {"TurnClockwise", QyRotate90CW8B, GeometryReference::TurnClockwise},
    {"TurnCounterClockwise", QyRotate90CCW8B, GeometryReference::TurnCounterClockwise},
};

class Geometry : public testing::TestWithParam<Move> {
protected:
    static void ExpectSame(int width, int height, Content content, size_t offset) {
        const Raw raw = MakeRaw(width, height, content, 255);
        const SourceBytes<uint8_t> src(raw, SourceOffset(offset));
        const Raw turned = GetParam().reference(raw);
        const std::vector<uint8_t> expected(turned.samples.begin(), turned.samples.end());
        WithEachInstructionSet([&] {
            GuardedBytes out(expected.size(), offset);
            CountCase();
            ASSERT_EQ(GetParam().run(src.Data(), out.Data(), width, height), QY_OK);
            EXPECT_EQ(Difference(out, expected), "")
                << width << " x " << height << " at " << offset;
        });
    }
};

TEST_P(Geometry, EverySmallSize) {
    for (int width = 1; width <= 36; ++width) {
        for (int height = 1; height <= 36; ++height) {
            ExpectSame(width, height, Content::Random, 0);
        }
    }
}

TEST_P(Geometry, SizesAroundVectorsAndSquares) {
    for (int size = 1; size <= 140; ++size) {
        ExpectSame(size, 141 - size, Content::Random, static_cast<size_t>(size % 3));
        ExpectSame(size, 17, Content::Random, 1);
        ExpectSame(17, size, Content::Ramp, 1);
    }
    ExpectSame(150, 260, Content::Edges, 0);
}

TEST_P(Geometry, LargeFramesAtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(133, 130, Content::Random, offset);
    }
    ExpectSame(2100, 1030, Content::Ramp, 5);
}

TEST_P(Geometry, StructuredFrames) {
    for (const Content content : kContents) {
        ExpectSame(75, 67, content, 0);
    }
}

TEST_P(Geometry, AnyAlignmentOfSourceAndDestination) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSame(70, 38, Content::Random, offset);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Geometry, testing::ValuesIn(kMoves),
                         [](const auto& test) { return std::string(test.param.name); });

/// A call that succeeds.
struct MoveCall {
    uint8_t source[16] = {};
    GuardedBytes destination{16, 0};
    const void* src = source;
    void* dst = destination.Data();
    int32_t width = 4;
    int32_t height = 4;
    int32_t mode = QY_MIRROR_VERTICAL;

    bool IsUntouched() const { return destination.IsUntouched(); }
};

const std::vector<Refusal<MoveCall>> kMoveRefusals = {
    {"source", [](MoveCall& c) { c.src = nullptr; }, QY_PARAMETER_INVALID},
    {"destination", [](MoveCall& c) { c.dst = nullptr; }, QY_PARAMETER_INVALID},
    {"no width", [](MoveCall& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"no height", [](MoveCall& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative width", [](MoveCall& c) { c.width = -4; }, QY_PARAMETER_OUT_OF_BOUND},
    {"negative height", [](MoveCall& c) { c.height = -4; }, QY_PARAMETER_OUT_OF_BOUND},
    {"in place", [](MoveCall& c) { c.src != nullptr&& c.dst != nullptr ? c.src = c.dst : nullptr; },
     QY_PARAMETER_INVALID},
};

TEST(GeometryChecks, ComeInOrderForMirrors) {
    auto refusals = kMoveRefusals;
    refusals.push_back({"mode", [](MoveCall& c) { c.mode = 2; }, QY_NOT_SUPPORTED});
    refusals.push_back({"negative mode", [](MoveCall& c) { c.mode = -1; }, QY_NOT_SUPPORTED});
    ExpectFirstRefusalDecides(refusals, [](const MoveCall& c) {
        return QyImageMirror(c.src, c.dst, c.width, c.height, c.mode);
    });
}

TEST(GeometryChecks, ComeInOrderForTurns) {
    ExpectFirstRefusalDecides(kMoveRefusals, [](const MoveCall& c) {
        return QyRotate90CW8B(c.src, c.dst, c.width, c.height);
    });
    ExpectFirstRefusalDecides(kMoveRefusals, [](const MoveCall& c) {
        return QyRotate90CCW8B(c.src, c.dst, c.width, c.height);
    });
}

TEST(GeometryChecks, MirroringInPlaceIsRefusedEvenWhereItCouldWork) {
    std::vector<uint8_t> image = {1, 2, 3, 4};
    for (const int mode : {QY_MIRROR_HORIZONTAL, QY_MIRROR_VERTICAL}) {
        EXPECT_EQ(QyImageMirror(image.data(), image.data(), 2, 2, mode), QY_PARAMETER_INVALID);
        EXPECT_EQ(image, (std::vector<uint8_t>{1, 2, 3, 4}));
    }
}

TEST(GeometryResults, ATurnGivesRowsOfTheHeight) {
    const std::vector<uint8_t> image = {1, 2, 3, 4, 5, 6};
    std::vector<uint8_t> out(image.size());
    ASSERT_EQ(QyRotate90CW8B(image.data(), out.data(), 3, 2), QY_OK);
    EXPECT_EQ(out, (std::vector<uint8_t>{4, 1, 5, 2, 6, 3}));
    ASSERT_EQ(QyRotate90CCW8B(image.data(), out.data(), 3, 2), QY_OK);
    EXPECT_EQ(out, (std::vector<uint8_t>{3, 6, 2, 5, 1, 4}));
}

}  // namespace
