// Raw files to pictures: byte for byte what the image functions give.

#include <cmath>
#include <mutex>

#include "ConvertTest.h"
#include "QyImageProc.h"

namespace {

constexpr int kWidth = 16;
constexpr int kHeight = 12;
constexpr size_t kPixels = static_cast<size_t>(kWidth) * kHeight;

Bytes Colours(const Bytes& frame, QyInterpolationMethod method = QY_RAW2RGB_NEIGHBOUR3,
              QyColorFilter filter = QY_BAYER_RG, uint8_t flip = 0,
              QyChannelOrder order = QY_ORDER_RGB) {
    Bytes pixels(kPixels * 3);
    EXPECT_EQ(
        QyRaw8toRGB24Ex(frame.data(), pixels.data(), kWidth, kHeight, method, filter, flip, order),
        QY_OK);
    return pixels;
}

Bytes WordColours(const Bytes& words, int bits, QyInterpolationMethod method) {
    Bytes pixels(kPixels * 6);
    EXPECT_EQ(
        QyRaw16toRGB48(words.data(), pixels.data(), kWidth, kHeight, bits, method, QY_BAYER_RG, 0),
        QY_OK);
    return pixels;
}

Bytes Reduced(const Bytes& words, QyValidBit validBit) {
    Bytes bytes(words.size() / 2);
    EXPECT_EQ(QyRaw16toRaw8(words.data(), bytes.data(), kWidth, kHeight, validBit), QY_OK);
    return bytes;
}

/// Over the whole range of 16 bits.
Bytes Stretched(Bytes words, int bits) {
    for (size_t i = 0; i < words.size(); i += 2) {
        const unsigned word = (words[i] | static_cast<unsigned>(words[i + 1]) << 8) << (16 - bits);
        words[i] = static_cast<uint8_t>(word);
        words[i + 1] = static_cast<uint8_t>(word >> 8);
    }
    return words;
}

Bytes Table(int contrast, int lightness, double gamma) {
    Bytes table(256);
    uint16_t size = 256;
    EXPECT_EQ(QyGetLut(contrast, lightness, table.data(), &size, gamma), QY_OK);
    return table;
}

/// A record of a matrix, its columns times the gains.
struct Record {
    explicit Record(const std::vector<double>& matrix,
                    const std::vector<double>& gains = {1, 1, 1}) {
        record.lock = mutex.native_handle();
        for (size_t k = 0; k < 9; ++k) {
            for (int value = 0; value < 256; ++value) {
                record.table[k][value] =
                    static_cast<int16_t>(std::lround(matrix[k] * gains[k % 3] * 16 * value));
            }
        }
    }

    Bytes Improve(const Bytes& pixels, const uint32_t* contrast = nullptr,
                  const uint32_t* gamma = nullptr, QyChannelOrder order = QY_ORDER_RGB) const {
        Bytes result(pixels.size());
        EXPECT_EQ(QyImageImprovmentEx(pixels.data(), result.data(), kWidth, kHeight, &record,
                                      contrast, gamma, order),
                  QY_OK);
        return result;
    }

    std::mutex mutex;
    QyColorCorrectionRecord record{};
};

const std::vector<double> kMatrix{1.5, -0.4, -0.1, -0.2, 1.3, -0.1, 0, -0.5, 1.5};
const std::vector<double> kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};
const char* const kMatrixOption = "--matrix=1.5,-0.4,-0.1,-0.2,1.3,-0.1,0,-0.5,1.5";

std::vector<uint32_t> GammaRecord(double gamma) {
    std::vector<uint32_t> record(QY_TONE_RECORD_SIZE / 4);
    int32_t size = QY_TONE_RECORD_SIZE;
    EXPECT_EQ(QyGetGammatLut(record.data(), &size, gamma), QY_OK);
    return record;
}

std::vector<uint32_t> ContrastRecord(int contrast) {
    std::vector<uint32_t> record(QY_TONE_RECORD_SIZE / 4);
    int32_t size = QY_TONE_RECORD_SIZE;
    EXPECT_EQ(QyGetContrastLut(contrast, record.data(), &size), QY_OK);
    return record;
}

std::vector<double> Balance(const Bytes& pixels) {
    std::vector<double> gains(3);
    EXPECT_EQ(
        QyGetWhiteBalanceRatio(pixels.data(), kWidth, kHeight, &gains[0], &gains[1], &gains[2]),
        QY_OK);
    return gains;
}

Bytes OnePass(Bytes frame, QyRawImgRecord record) {
    record.Method = QY_RAW2RGB_NEIGHBOUR3;
    record.Filter = record.Filter == QY_FILTER_NONE ? QY_BAYER_RG : record.Filter;
    Bytes pixels(kPixels * 3);
    EXPECT_EQ(QyRaw8ImgProcess(frame.data(), pixels.data(), kWidth, kHeight, &record), QY_OK);
    return pixels;
}

class FrameOfBytes : public ConvertTest {
protected:
    FrameOfBytes() { WriteFrame(noise); }

    Bytes Pixels(const std::string& options, const std::string& format = "BayerRG8") const {
        return ConvertTest::Pixels(format, kWidth, kHeight, options);
    }

    const Bytes noise = Noise(kPixels);
};

// Colours of a mosaic.

TEST_F(FrameOfBytes, BecomesColoursByEachMethodAndLayout) {
    const std::pair<const char*, QyColorFilter> formats[] = {{"BayerRG8", QY_BAYER_RG},
                                                             {"BayerGB8", QY_BAYER_GB},
                                                             {"BayerGR8", QY_BAYER_GR},
                                                             {"BayerBG8", QY_BAYER_BG}};
    for (const auto& [format, filter] : formats) {
        for (const QyInterpolationMethod method : {0, 1, 2}) {
            SCOPED_TRACE(std::string(format) + " by " + std::to_string(method));
            EXPECT_EQ(Pixels("--method " + std::to_string(method), format),
                      Colours(noise, method, filter));
        }
    }
}

TEST_F(FrameOfBytes, IsInterpolatedByThreeByThreeSamplesByDefault) {
    EXPECT_EQ(Pixels(""), Colours(noise, QY_RAW2RGB_NEIGHBOUR3));
}

TEST_F(FrameOfBytes, TakesAnotherLayoutThanItsFormats) {
    EXPECT_EQ(Pixels("--layout gb"), Colours(noise, 2, QY_BAYER_GB));
    EXPECT_EQ(Pixels("--layout none"), Colours(noise, 2, QY_FILTER_NONE));
    EXPECT_EQ(Pixels("--layout bg", "Mono8"), Colours(noise, 2, QY_BAYER_BG));
}

TEST_F(FrameOfBytes, IsFlippedAndReordered) {
    EXPECT_EQ(Pixels("--flip --method 1"), Colours(noise, 1, QY_BAYER_RG, 1));
    EXPECT_EQ(Pixels("--order bgr"), Colours(noise, 2, QY_BAYER_RG, 0, QY_ORDER_BGR));
}

TEST_F(FrameOfBytes, TakesFourBytesAPixelWithAlpha) {
    Bytes pixels(kPixels * 4);
    ASSERT_EQ(
        QyRaw8toARGB32(noise.data(), pixels.data(), kWidth, kHeight, kWidth, 2, QY_BAYER_RG, 0, 77),
        QY_OK);
    EXPECT_EQ(Pixels("--alpha 77"), pixels);
    const std::vector<uint32_t> gamma = GammaRecord(2);
    Bytes improved(pixels.size());
    ASSERT_EQ(QyARGBImageImprovment(pixels.data(), improved.data(), kWidth, kHeight, nullptr,
                                    nullptr, gamma.data()),
              QY_OK);
    EXPECT_EQ(Pixels("--alpha 77 --gamma 2"), improved);
}

// Each step.

TEST_F(FrameOfBytes, HasItsDefectsRepairedFirst) {
    Bytes repaired = noise;
    ASSERT_EQ(QyAutoRawDefectivePixelCorrect(repaired.data(), kWidth, kHeight, 8), QY_OK);
    ASSERT_NE(repaired, noise);
    EXPECT_EQ(Pixels("--defects"), Colours(repaired));
    EXPECT_EQ(Pixels("--defects", "Mono8"), repaired);
}

TEST_F(FrameOfBytes, HasBrightnessContrastAndSaturationChangedInThisOrder) {
    Bytes pixels = Colours(noise);
    const auto size = static_cast<int32_t>(pixels.size());
    ASSERT_EQ(QyBrightness(pixels.data(), pixels.data(), size, 40), QY_OK);
    EXPECT_EQ(Pixels("--brightness 40"), pixels);
    ASSERT_EQ(QyContrast(pixels.data(), pixels.data(), size, -30), QY_OK);
    EXPECT_EQ(Pixels("--brightness 40 --contrast -30"), pixels);
    ASSERT_EQ(QySaturation(pixels.data(), pixels.data(), size / 3, 128), QY_OK);
    EXPECT_EQ(Pixels("--saturation 128 --contrast -30 --brightness 40"), pixels);
}

TEST_F(FrameOfBytes, IsSharpened) {
    Bytes pixels = Colours(noise);
    ASSERT_EQ(QySharpen24B(pixels.data(), pixels.data(), kWidth, kHeight, 0.1F), QY_OK);
    EXPECT_EQ(Pixels("--sharpen 0.1"), pixels);
}

TEST_F(FrameOfBytes, GoesThroughMatrixAndBothTables) {
    const Record record(kMatrix);
    EXPECT_EQ(Pixels(kMatrixOption), record.Improve(Colours(noise)));
    EXPECT_EQ(Pixels(std::string(kMatrixOption) + " --gamma 1.8 --contrast-table 50"),
              record.Improve(Colours(noise), ContrastRecord(50).data(), GammaRecord(1.8).data()));
    EXPECT_EQ(Pixels(std::string(kMatrixOption) + " --order bgr"),
              record.Improve(Colours(noise, 2, QY_BAYER_RG, 0, QY_ORDER_BGR), nullptr, nullptr,
                             QY_ORDER_BGR));
}

TEST_F(FrameOfBytes, IsBalancedByGainsGivenOrMeasured) {
    EXPECT_EQ(Pixels("--balance 1.5,1,2"), Record(kIdentity, {1.5, 1, 2}).Improve(Colours(noise)));
    const std::vector<double> gains = Balance(Colours(noise));
    EXPECT_EQ(Pixels("--auto-balance " + std::string(kMatrixOption)),
              Record(kMatrix, gains).Improve(Colours(noise)));
}

TEST_F(FrameOfBytes, IsMeasuredForTheColourWhateverTheOrder) {
    const Json rgb = Json::parse(Convert("BayerRG8", kWidth, kHeight, "--auto-balance --json").out);
    const std::vector<double> gains = Balance(Colours(noise));
    EXPECT_EQ(rgb["pictures"][0]["balance"], Json(gains));
    const Json bgr =
        Json::parse(Convert("BayerRG8", kWidth, kHeight, "--auto-balance --json --order bgr").out);
    EXPECT_EQ(bgr, rgb);
}

TEST_F(FrameOfBytes, HasItsNoiseReducedAlone) {
    QyRawImgRecord record{};
    record.Denoise = 1;
    EXPECT_EQ(Pixels("--denoise"), OnePass(noise, record));
    record.Flip = 1;
    record.Filter = QY_BAYER_GR;
    EXPECT_EQ(Pixels("--denoise --flip --layout gr"), OnePass(noise, record));
}

TEST_F(FrameOfBytes, IsMirroredAndTurnedByPlanes) {
    const Bytes pixels = Colours(noise);
    const Bytes mirrored = Pixels("--mirror horizontal");
    const Bytes upsideDown = Pixels("--mirror vertical");
    const Bytes clockwise = Pixels("--rotate cw");
    const Bytes counterClockwise = Pixels("--rotate ccw");
    ASSERT_EQ(clockwise.size(), pixels.size());
    for (size_t y = 0; y < kHeight; ++y) {
        for (size_t x = 0; x < kWidth; ++x) {
            const auto pixel = [](const Bytes& bytes, size_t at) {
                return Bytes(bytes.begin() + static_cast<ptrdiff_t>(at * 3),
                             bytes.begin() + static_cast<ptrdiff_t>(at * 3 + 3));
            };
            const Bytes expected = pixel(pixels, y * kWidth + x);
            EXPECT_EQ(pixel(mirrored, y * kWidth + kWidth - 1 - x), expected);
            EXPECT_EQ(pixel(upsideDown, (kHeight - 1 - y) * kWidth + x), expected);
            EXPECT_EQ(pixel(clockwise, x * kHeight + kHeight - 1 - y), expected);
            EXPECT_EQ(pixel(counterClockwise, (kWidth - 1 - x) * kHeight + y), expected);
        }
    }
}

TEST_F(FrameOfBytes, IsZoomedLast) {
    const Bytes pixels = Pixels("--rotate cw");
    const Bytes zoomed = Pixels("--zoom 3 --rotate cw");
    ASSERT_EQ(zoomed.size(), pixels.size() * 9);
    for (size_t i = 0; i < zoomed.size(); ++i) {
        const size_t row = static_cast<size_t>(kHeight) * 9;
        const size_t source = i / row / 3 * kHeight * 3 + i % row / 9 * 3 + i % 3;
        ASSERT_EQ(zoomed[i], pixels[source]) << i;
    }
}

// All in one pass.

TEST_F(FrameOfBytes, TakesOnePassWithCoefficientsAndATable) {
    QyRawImgRecord record{};
    EXPECT_EQ(Pixels("--one-pass"), OnePass(noise, record));
    std::vector<uint16_t> coefficients(9);
    const Record colours(kMatrix, {1.5, 1, 2});
    ASSERT_EQ(QyCalcCCParam(&colours.record, 100, coefficients.data(), 18), QY_OK);
    Bytes table = Table(20, -40, 1.5);
    record.DefectivePixelCorrect = 1;
    record.Denoise = 1;
    record.Sharpness = 1;
    record.SharpFactor = 2.5F;
    record.CCParam = coefficients.data();
    record.CCParamSize = 18;
    record.Lut = table.data();
    record.LutSize = 256;
    EXPECT_EQ(Pixels("--one-pass --defects --denoise --sharpen 2.5 --balance 1.5,1,2 "
                     "--saturation 100 --contrast 20 --brightness -40 --gamma 1.5 " +
                     std::string(kMatrixOption)),
              OnePass(noise, record));
}

TEST_F(FrameOfBytes, IsMeasuredBeforeTheOnePass) {
    const Record colours(kIdentity, Balance(Colours(noise)));
    std::vector<uint16_t> coefficients(9);
    ASSERT_EQ(QyCalcCCParam(&colours.record, 64, coefficients.data(), 18), QY_OK);
    QyRawImgRecord record{};
    record.CCParam = coefficients.data();
    record.CCParamSize = 18;
    EXPECT_EQ(Pixels("--one-pass --auto-balance"), OnePass(noise, record));
}

TEST_F(FrameOfBytes, OfGreyKeepsItsOneChannel) {
    EXPECT_EQ(Pixels("", "Mono8"), noise);
    Bytes table = Table(20, -40, 1.5);
    QyMonoImgRecord record{};
    record.Sharpness = 1;
    record.SharpFactor = 3;
    record.Lut = table.data();
    record.LutSize = 256;
    Bytes source = noise;
    Bytes expected(kPixels);
    ASSERT_EQ(QyMono8ImgProcess(source.data(), expected.data(), kWidth, kHeight, &record), QY_OK);
    EXPECT_EQ(Pixels("--contrast 20 --brightness -40 --gamma 1.5 --sharpen 3", "Mono8"), expected);
}

// Forms of frames.

class FrameOfWords : public ConvertTest {
protected:
    void Expect(const std::string& format, const Bytes& bytes, const Bytes& words, int bits) const {
        SCOPED_TRACE(format);
        WriteFrame(bytes);
        for (const QyInterpolationMethod method : {0, 1, 2}) {
            EXPECT_EQ(
                Pixels("Bayer" + format, kWidth, kHeight, "--method " + std::to_string(method)),
                Stretched(WordColours(words, bits, method), bits));
        }
        EXPECT_EQ(Pixels("Bayer" + format, kWidth, kHeight, "--valid-bit 1"),
                  Colours(Reduced(words, QY_BIT_1_8)));
    }
};

TEST_F(FrameOfWords, KeepsAllBitsUnlessEightAreAskedFor) {
    for (const int bits : {10, 12, 16}) {
        const Bytes words = NoiseWords(kPixels, static_cast<unsigned>(bits));
        Expect("RG" + std::to_string(bits), words, words, bits);
    }
}

TEST_F(FrameOfWords, IsUnpackedFirst) {
    Bytes words(kPixels * 2);
    const Bytes pairs = Noise(kPixels * 3 / 2);
    ASSERT_EQ(QyRaw12PackedToRaw16(pairs.data(), words.data(), kWidth, kHeight), QY_OK);
    Expect("RG12p", pairs, words, 12);
    Bytes triples = Noise(kPixels / 3 * 4);
    ASSERT_EQ(kPixels % 3, 0U);
    triples.resize(triples.size() + 4);
    ASSERT_EQ(QyRaw10PackedToRaw16(triples.data(), words.data(), kWidth, kHeight), QY_OK);
    triples.resize(triples.size() - 4);
    Expect("RG10c3a32", triples, words, 10);
}

TEST_F(FrameOfWords, OfGreyIsUnpackedWhateverTheRest) {
    for (const int width : {1, 2, 3}) {
        const Bytes packed = Noise(4);
        WriteFrame(packed);
        Bytes padded = packed;
        padded.resize(8);
        Bytes words(static_cast<size_t>(width) * 2);
        ASSERT_EQ(QyRaw10PackedToRaw16(padded.data(), words.data(), width, 1), QY_OK);
        EXPECT_EQ(Pixels("Mono10c3a32", width, 1, ""), Stretched(words, 10));
    }
}

TEST_F(FrameOfWords, IsReducedToItsUpperBitsForStepsOnBytes) {
    const Bytes words = NoiseWords(kPixels, 12);
    WriteFrame(words);
    Bytes pixels = Colours(Reduced(words, QY_BIT_4_11));
    ASSERT_EQ(QySharpen24B(pixels.data(), pixels.data(), kWidth, kHeight, 2), QY_OK);
    EXPECT_EQ(Pixels("BayerRG12", kWidth, kHeight, "--sharpen 2"), pixels);
}

TEST_F(FrameOfWords, HasItsDefectsRepairedAtFullDepth) {
    const Bytes words = NoiseWords(kPixels, 12);
    WriteFrame(words);
    Bytes repaired = words;
    ASSERT_EQ(QyAutoRawDefectivePixelCorrect(repaired.data(), kWidth, kHeight, 12), QY_OK);
    ASSERT_NE(repaired, words);
    EXPECT_EQ(Pixels("Mono12", kWidth, kHeight, "--defects"), Stretched(repaired, 12));
    EXPECT_EQ(Pixels("Mono12", kWidth, kHeight, "--defects --valid-bit 2"),
              Reduced(repaired, QY_BIT_2_9));
}

TEST_F(ConvertTest, ColoursOfEightBitsAreTakenAsTheyAre) {
    const Bytes pixels = Noise(kPixels * 3);
    WriteFrame(pixels);
    EXPECT_EQ(Pixels("RGB8", kWidth, kHeight, ""), pixels);
    EXPECT_EQ(Pixels("BGR8", kWidth, kHeight, kMatrixOption),
              Record(kMatrix).Improve(pixels, nullptr, nullptr, QY_ORDER_BGR));
}

TEST_F(ConvertTest, ColoursOfMoreBitsAreReduced) {
    const Bytes words = NoiseWords(kPixels * 3, 12);
    WriteFrame(words);
    Bytes pixels(kPixels * 3);
    ASSERT_EQ(QyRGB48toRGB24(words.data(), pixels.data(), kWidth, kHeight, QY_BIT_3_10), QY_OK);
    EXPECT_EQ(Pixels("RGB12", kWidth, kHeight, "--valid-bit 3"), pixels);
    EXPECT_EQ(Pixels("RGB12", kWidth, kHeight, ""), Stretched(words, 12));
}

// Files.

TEST_F(FrameOfBytes, GoesIntoAPictureBesideIt) {
    ExpectPrints(Convert("BayerRG8", kWidth, kHeight),
                 frame + " -> " + picture + ": 16x12, 3 channels of 8 bits\n");
    const PngFile png(picture);
    EXPECT_EQ(png.width, 16U);
    EXPECT_EQ(png.height, 12U);
    EXPECT_EQ(png.channels, 3);
    EXPECT_EQ(png.bitDepth, 8);
    EXPECT_EQ(png.bytes, Colours(noise));
}

TEST_F(FrameOfBytes, HasTrueColoursInAPictureWhateverTheOrder) {
    ASSERT_EQ(Convert("BayerRG8", kWidth, kHeight, "--order bgr").status, 0);
    EXPECT_EQ(PngFile(picture).bytes, Colours(noise));
}

TEST_F(FrameOfBytes, KeepsAlphaAndGreyInAPicture) {
    ASSERT_EQ(Convert("BayerRG8", kWidth, kHeight, "--alpha 9 --rotate cw").status, 0);
    const PngFile four(picture);
    EXPECT_EQ(four.channels, 4);
    EXPECT_EQ(four.width, 12U);
    EXPECT_EQ(four.bytes, Pixels("--alpha 9 --rotate cw"));
    ExpectPrints(Convert("Mono8", kWidth, kHeight),
                 frame + " -> " + picture + ": 16x12, 1 channel of 8 bits\n");
    EXPECT_EQ(PngFile(picture).bytes, noise);
}

TEST_F(ConvertTest, WordsKeepTheirOrderInAPicture) {
    const Bytes words = NoiseWords(kPixels, 12);
    WriteFrame(words);
    ASSERT_EQ(Convert("BayerRG12", kWidth, kHeight).status, 0);
    const PngFile png(picture);
    EXPECT_EQ(png.bitDepth, 16);
    EXPECT_EQ(png.bytes, Stretched(WordColours(words, 12, 2), 12));
}

TEST_F(FrameOfBytes, IsADocumentForMachines) {
    Json described = {{"file", frame}, {"output", picture}, {"width", 16},       {"height", 12},
                      {"channels", 3}, {"bits", 8},         {"balance", nullptr}};
    ExpectDocument(Convert("BayerRG8", kWidth, kHeight, "--json"),
                   {{"pictures", Json::array({described})}});
}

TEST_F(FrameOfBytes, IsOneOfSeveral) {
    const std::string other = (folder / "other.raw").string();
    std::filesystem::copy(frame, other);
    const ToolRun run = Convert("BayerRG8", kWidth, kHeight, other);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(PngFile(picture).bytes, Colours(noise));
    EXPECT_EQ(PngFile((folder / "other.png").string()).bytes, Colours(noise));
    ExpectRefused("BayerRG8", kWidth, kHeight, other + " -o x.png",
                  "-o names the picture of one file; there are 2", Exit::kUsage);
}

// Live frames.

TEST_F(ConvertTest, GrabProcessesFramesAsConvertDoesTheirFiles) {
    state = (folder / "state").string();
    Set("Width=64 Height=32 OffsetY=1000 PixelFormat=BayerRG12p");
    const std::string options =
        "--method 1 --defects --denoise --auto-balance --gamma 1.5 --saturation 90 --sharpen 1 "
        "--rotate ccw ";
    const std::string output = folder.string();
    const std::string live = output + "/frame-0001";
    ExpectPrints(
        Virtual("grab --raw --process " + options + " -o " + output),
        "frame 0: 64x32, 3072 bytes -> " + live + ".png -> " + live + ".raw\n1 frame, 0 lost\n");
    const std::string later = output + "/later.png";
    ASSERT_EQ(Run(OV_TOOL_BARE, "convert " + live + ".raw -f BayerRG12p --width 64 --height 32 " +
                                    options + "-o " + later)
                  .err,
              "");
    EXPECT_EQ(PngFile(live + ".png").width, 32U);
    EXPECT_EQ(PngFile(live + ".png").bytes, PngFile(later).bytes);
}

TEST_F(ConvertTest, GrabTakesTheStepsWithProcessAlone) {
    const ToolRun run = Virtual("grab --gamma 2 -o " + folder.string());
    EXPECT_NE(run.status, 0);
    EXPECT_TRUE(run.err.starts_with("--gamma requires --process\n")) << run.err;
}

}  // namespace
