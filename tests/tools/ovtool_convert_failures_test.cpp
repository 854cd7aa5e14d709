// What `ovtool convert` refuses, and how it says so.

#include "ConvertTest.h"

namespace {

/// Values outside the ranges of the options.
struct BadValue {
    const char* options;
    const char* text;
};

class BadValues : public ConvertTest, public ::testing::WithParamInterface<BadValue> {};

TEST_P(BadValues, AreNamedWithTheirLimits) {
    WriteFrame(Noise(64));
    ExpectRefused("BayerRG8", 8, 8, GetParam().options, GetParam().text, Exit::kUsage);
    EXPECT_FALSE(std::filesystem::exists(picture));
}

INSTANTIATE_TEST_SUITE_P(
    Convert, BadValues,
    ::testing::Values(
        BadValue{"--method 3", "--method 3 is outside 0 to 2"},
        BadValue{"--method -1", "--method -1 is outside 0 to 2"},
        BadValue{"--layout rb", "--layout 'rb' is none of: none, rg, gb, gr, bg"},
        BadValue{"--order gbr", "--order 'gbr' is none of: rgb, bgr"},
        BadValue{"--alpha 256", "--alpha 256 is outside 0 to 255"},
        BadValue{"--valid-bit 5", "--valid-bit 5 is outside 0 to 4"},
        BadValue{"--gamma 0.09", "--gamma 0.09 is outside 0.1 to 10"},
        BadValue{"--gamma nan", "--gamma nan is outside 0.1 to 10"},
        BadValue{"--contrast-table 101", "--contrast-table 101 is outside -50 to 100"},
        BadValue{"--contrast -51", "--contrast -51 is outside -50 to 100"},
        BadValue{"--brightness -151", "--brightness -151 is outside -150 to 150"},
        BadValue{"--saturation 129", "--saturation 129 is outside 0 to 128"},
        BadValue{"--sharpen 5.1", "--sharpen 5.1 is outside 0.1 to 5"},
        BadValue{"--balance 1,9,1", "--balance 9 is outside 0 to 8"},
        BadValue{"--balance 1,1", "--balance takes 3 numbers, not 2"},
        BadValue{"--balance 1,,1", "--balance takes numbers with commas between, not '1,,1'"},
        BadValue{"--matrix 1,0,0,0,1,0,0,0,x",
                 "--matrix takes numbers with commas between, not '1,0,0,0,1,0,0,0,x'"},
        BadValue{"--mirror both", "--mirror 'both' is none of: horizontal, vertical"},
        BadValue{"--zoom 17", "--zoom 17 is outside 1 to 16"},
        BadValue{"--rotate 90", "--rotate '90' is none of: cw, ccw"}));

/// Options that don't fit the frame or each other.
struct Misfit {
    const char* format;
    const char* options;
    const char* text;
};

class Misfits : public ConvertTest, public ::testing::WithParamInterface<Misfit> {};

TEST_P(Misfits, AreRefusedWithTheReason) {
    const std::string format = GetParam().format;
    const bool words = format.ends_with("16");
    const bool colours = format.starts_with("RGB") || format.starts_with("BGR");
    WriteFrame(Noise(64U * (words ? 2 : 1) * (colours ? 3 : 1)));
    ExpectRefused(format, 8, 8, GetParam().options, GetParam().text, Exit::kUsage);
    EXPECT_FALSE(std::filesystem::exists(picture));
}

INSTANTIATE_TEST_SUITE_P(
    Convert, Misfits,
    ::testing::Values(
        Misfit{"RGB8", "--method 1", "RGB8 has its colours already: --method is for raw samples"},
        Misfit{"BGR8", "--denoise", "BGR8 has its colours already: --denoise is for raw samples"},
        Misfit{"Mono8", "--saturation 0",
               "Mono8 has one channel: --saturation needs three, by --layout none"},
        Misfit{"Mono8", "--one-pass",
               "Mono8 has one channel: --one-pass needs three, by --layout none"},
        Misfit{"BayerRG8", "--valid-bit 0",
               "--valid-bit is for samples of more than 8 bits; BayerRG8 has 8"},
        Misfit{"BayerRG16", "--saturation 0",
               "say by --valid-bit which eight bits of BayerRG16 are kept; the options given work "
               "on 8 bits"},
        Misfit{"BayerRG8", "--balance 1,1,1 --auto-balance",
               "--balance and --auto-balance exclude each other"},
        Misfit{"BayerRG8", "--order bgr --denoise",
               "--denoise, --one-pass and --alpha give pixels in the order rgb alone"},
        Misfit{"BGR8", "--saturation 0", "--saturation takes pixels in the order rgb alone"},
        Misfit{"BayerRG8", "--one-pass --contrast-table 1",
               "--one-pass has one table; use --contrast"},
        Misfit{"BayerRG8", "--one-pass --layout none --gamma 2",
               "--one-pass changes neither colour nor tone with --layout none"},
        Misfit{"BayerRG8", "--alpha 1 --saturation 0",
               "--saturation doesn't work on four bytes a pixel"}));

// Frames and files.

TEST_F(ConvertTest, AFileOfAnotherSizeIsRefused) {
    WriteFrame(Noise(63));
    const std::string start = frame + " holds 63 bytes, but 8x8 of ";
    ExpectRefused("BayerRG8", 8, 8, "", start + "BayerRG8 takes 64");
    ExpectRefused("BayerRG12", 8, 8, "", start + "BayerRG12 takes 128");
    ExpectRefused("BayerRG12p", 8, 8, "", start + "BayerRG12p takes 96");
    ExpectRefused("BayerRG10c3a32", 8, 8, "", start + "BayerRG10c3a32 takes 88");
    ExpectRefused("RGB16", 8, 8, "", start + "RGB16 takes 384");
    ExpectRefused("RGBa8", 8, 8, "", start + "RGBa8 takes 256");
    WriteFrame(Noise(65));
    ExpectRefused("Mono8", 8, 8, "", frame + " holds 65 bytes, but 8x8 of Mono8 takes 64");
}

TEST_F(ConvertTest, AFileThatIsNotThereIsAFailure) {
    ExpectRefused("Mono8", 8, 8, "", "can't read " + frame + ": No such file or directory");
}

TEST_F(ConvertTest, AnUnknownFormatIsAnsweredWithAllThatAreKnown) {
    WriteFrame(Noise(64));
    for (const std::string format : {"BayerRG9", "0x01080002", "0", "''", "8x"}) {
        const ToolRun run = Convert(format, 8, 8);
        const std::string name = format == "''" ? "" : format;
        EXPECT_TRUE(run.err.starts_with("ovtool: there is no pixel format '" + name +
                                        "'; these are known:\nMono8 Mono10 "))
            << run.err;
        EXPECT_EQ(run.status, Exit::kUsage);
    }
    EXPECT_EQ(Convert("0x01080009", 8, 8).status, 0);
}

TEST_F(ConvertTest, SidesHaveLimits) {
    WriteFrame(Noise(64));
    ExpectRefused("Mono8", 0, 8, "", "--width 0 is outside 1 to 16384", Exit::kUsage);
    ExpectRefused("Mono8", 8, -1, "", "--height -1 is outside 1 to 16384", Exit::kUsage);
    ExpectRefused("Mono8", 16385, 8, "", "--width 16385 is outside 1 to 16384", Exit::kUsage);
}

TEST_F(ConvertTest, InterpolationNeedsEvenSidesOfAFewPixels) {
    const std::string start = "interpolation by method ";
    WriteFrame(Noise(20));
    ExpectRefused("BayerRG8", 5, 4, "",
                  start + "2 needs an even width and height of at least 4, not 5x4");
    ExpectRefused("BayerRG8", 10, 2, "--method 0",
                  start + "0 needs an even width and height of at least 4, not 10x2");
    ExpectRefused("Mono8", 5, 4, "--layout none --denoise",
                  start + "2 needs an even width and height of at least 4, not 5x4");
    WriteFrame(Noise(24));
    ExpectRefused("BayerRG8", 6, 4, "--method 1 --one-pass",
                  start + "1 needs an even width and height of at least 6, not 6x4");
    EXPECT_EQ(Convert("BayerRG8", 6, 4).status, 0);
}

TEST_F(ConvertTest, PairsOfSamplesMustBeWhole) {
    WriteFrame(Noise(23));
    ExpectRefused("Mono12p", 5, 3, "",
                  "Mono12p holds pairs of samples; 5x3 is an odd number of them");
}

TEST_F(ConvertTest, WhatAnImageFunctionRefusesHasItsStatus) {
    WriteFrame(Noise(16));
    ExpectRefused("BayerRG8", 4, 4, "--defects",
                  "can't repair defects: the width, the height or a value is out of bounds (status "
                  "-102)");
    ExpectRefused("BayerRG8", 4, 4, "--auto-balance",
                  "can't measure the white balance: the width, the height or a value is out of "
                  "bounds (status -102)");
}

TEST_F(ConvertTest, OutputsMustBeWritableAndNotTheInput) {
    WriteFrame(Noise(64));
    const std::string nowhere = (folder / "none" / "x.png").string();
    ExpectRefused(
        "Mono8", 8, 8, "-o " + nowhere,
        "can't write " + nowhere + ": No such file or directory; is there such a folder?");
    ExpectRefused("Mono8", 8, 8, "-o " + frame,
                  frame + " would be overwritten by its own picture; name another by -o",
                  Exit::kUsage);
}

}  // namespace
