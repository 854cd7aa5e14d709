// Tone tables: their values, and the queries of their sizes.

#include <algorithm>
#include <array>
#include <limits>

#include "QyImageProc.h"
#include "Refusals.h"
#include "ToneReference.h"
#include "tone/Curve.h"
#include "tone/ToneCurve.h"

namespace {

/// A table, followed by memory for one more entry.
template <class Word, size_t Count>
class Entries {
public:
    static constexpr Word kOld = static_cast<Word>(0xA5A5A5A5);

    Entries() { m_words.fill(kOld); }

    Word* Data() { return m_words.data(); }
    Word operator[](size_t i) const { return m_words[i]; }
    bool IsUntouched() const {
        return std::all_of(m_words.begin(), m_words.end(), [](Word word) { return word == kOld; });
    }
    bool EndsInTime() const { return m_words.back() == kOld; }
    std::vector<Word> Table() const { return {m_words.begin(), m_words.end() - 1}; }

private:
    std::array<Word, Count + 1> m_words;
};

struct RecordCall {
    Entries<uint32_t, 4097> entries;
    int32_t given = QY_TONE_RECORD_SIZE;
    uint32_t* lut = entries.Data();
    int32_t* size = &given;
    double gamma = 2.2;
    int32_t contrast = 30;

    bool IsUntouched() const { return entries.IsUntouched(); }
};

QY_STATUS GetGamma(RecordCall& call) {
    return QyGetGammatLut(call.lut, call.size, call.gamma);
}

QY_STATUS GetContrast(RecordCall& call) {
    return QyGetContrastLut(call.contrast, call.lut, call.size);
}

struct LutCall {
    Entries<uint8_t, 256> entries;
    uint16_t given = 256;
    uint8_t* lut = entries.Data();
    uint16_t* size = &given;
    int32_t contrast = 30;
    int32_t lightness = -20;
    double gamma = 2.2;

    bool IsUntouched() const { return entries.IsUntouched(); }
};

QY_STATUS GetLut(LutCall& call) {
    return QyGetLut(call.contrast, call.lightness, call.lut, call.size, call.gamma);
}

template <class Call>
Refusal<Call> NoSize() {
    return {"no size", [](Call& c) { c.size = nullptr; }, QY_PARAMETER_INVALID};
}

template <class Call>
std::vector<Refusal<Call>> BadGammas() {
    return {
        {"gamma too small", [](Call& c) { c.gamma = 0.0999; }, QY_PARAMETER_OUT_OF_BOUND},
        {"gamma too large", [](Call& c) { c.gamma = 10.001; }, QY_PARAMETER_OUT_OF_BOUND},
        {"gamma of no value", [](Call& c) { c.gamma = std::numeric_limits<double>::quiet_NaN(); },
         QY_PARAMETER_OUT_OF_BOUND}};
}

template <class Call>
std::vector<Refusal<Call>> BadContrasts() {
    return {{"contrast too small", [](Call& c) { c.contrast = -51; }, QY_PARAMETER_OUT_OF_BOUND},
            {"contrast too large", [](Call& c) { c.contrast = 101; }, QY_PARAMETER_OUT_OF_BOUND}};
}

template <class T>
std::vector<T> operator+(std::vector<T> first, const std::vector<T>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const std::vector<Refusal<RecordCall>> kBadRecordSizes = {
    NoSize<RecordCall>(),
    {"size too small", [](RecordCall& c) { c.given = QY_TONE_RECORD_SIZE - 1; },
     QY_PARAMETER_INVALID},
    {"negative size", [](RecordCall& c) { c.given = -1; }, QY_PARAMETER_INVALID}};

TEST(LutRefusals, OfAGammaRecordComeInOrder) {
    ExpectFirstRefusalDecides(kBadRecordSizes + BadGammas<RecordCall>(), GetGamma);
}

TEST(LutRefusals, OfAContrastRecordComeInOrder) {
    ExpectFirstRefusalDecides(kBadRecordSizes + BadContrasts<RecordCall>(), GetContrast);
}

TEST(LutRefusals, OfACombinedTableComeInOrder) {
    const std::vector<Refusal<LutCall>> sizes = {
        NoSize<LutCall>(),
        {"size too small", [](LutCall& c) { c.given = 255; }, QY_PARAMETER_INVALID},
        {"size too large", [](LutCall& c) { c.given = 257; }, QY_PARAMETER_INVALID}};
    const std::vector<Refusal<LutCall>> lightness = {
        {"lightness too small", [](LutCall& c) { c.lightness = -151; }, QY_PARAMETER_OUT_OF_BOUND},
        {"lightness too large", [](LutCall& c) { c.lightness = 151; }, QY_PARAMETER_OUT_OF_BOUND}};
    ExpectFirstRefusalDecides(sizes + BadContrasts<LutCall>() + lightness + BadGammas<LutCall>(),
                              GetLut);
}

TEST(LutSize, IsAskedForWithoutATableWhateverTheValuesAre) {
    int32_t size = 5;
    EXPECT_EQ(QyGetGammatLut(nullptr, &size, -7), QY_OK);
    EXPECT_EQ(size, 16388);
    size = -5;
    EXPECT_EQ(QyGetContrastLut(1000, nullptr, &size), QY_OK);
    EXPECT_EQ(size, 16388);
    uint16_t lutSize = 5;
    EXPECT_EQ(QyGetLut(1000, 1000, nullptr, &lutSize, -7), QY_OK);
    EXPECT_EQ(lutSize, 256);
}

TEST(LutSize, OfARecordMayBeLargerAndIsReported) {
    RecordCall call;
    call.given = 20000;
    EXPECT_EQ(GetGamma(call), QY_OK);
    EXPECT_EQ(call.given, 16388);
    EXPECT_TRUE(call.entries.EndsInTime());
    call.given = 20000;
    EXPECT_EQ(GetContrast(call), QY_OK);
    EXPECT_EQ(call.given, 16388);
    EXPECT_TRUE(call.entries.EndsInTime());
}

TEST(LutSize, IsReportedWhenItIsRefused) {
    RecordCall record;
    record.given = 16387;
    EXPECT_EQ(GetGamma(record), QY_PARAMETER_INVALID);
    EXPECT_EQ(record.given, 16388);
    record.given = -1;
    EXPECT_EQ(GetContrast(record), QY_PARAMETER_INVALID);
    EXPECT_EQ(record.given, 16388);
    for (const uint16_t size : {uint16_t{0}, uint16_t{255}, uint16_t{257}, uint16_t{16388}}) {
        LutCall lut;
        lut.given = size;
        EXPECT_EQ(GetLut(lut), QY_PARAMETER_INVALID);
        EXPECT_EQ(lut.given, 256);
    }
}

TEST(LutSize, StaysWhenAValueIsRefused) {
    RecordCall record;
    record.given = 20000;
    record.gamma = 11;
    record.contrast = 101;
    EXPECT_EQ(GetGamma(record), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(record.given, 20000);
    EXPECT_EQ(GetContrast(record), QY_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(record.given, 20000);
}

TEST(LutValues, OfGammaRecordsFollowThePower) {
    for (const double gamma : {0.1, 0.45, 0.999, 1.0, 1.8, 2.2, 10.0}) {
        RecordCall call;
        call.gamma = gamma;
        EXPECT_EQ(GetGamma(call), QY_OK);
        EXPECT_EQ(call.entries.Table(), ToneReference::GammaRecord(gamma)) << gamma;
    }
}

TEST(LutValues, OfGammaOneAreTheInput) {
    RecordCall call;
    call.gamma = 1;
    EXPECT_EQ(GetGamma(call), QY_OK);
    for (uint32_t i = 0; i < 4096; ++i) {
        EXPECT_EQ(call.entries[i], i);
    }
    EXPECT_EQ(call.entries[4096], 0U);
}

TEST(LutValues, OfContrastRecordsFollowTheCurve) {
    for (int contrast = -50; contrast <= 100; ++contrast) {
        RecordCall call;
        call.contrast = contrast;
        EXPECT_EQ(GetContrast(call), QY_OK);
        EXPECT_EQ(call.entries.Table(), ToneReference::ContrastRecord(contrast)) << contrast;
    }
}

TEST(LutValues, OfContrastZeroAreTheInputUpToRounding) {
    RecordCall call;
    call.contrast = 0;
    EXPECT_EQ(GetContrast(call), QY_OK);
    EXPECT_EQ(call.entries[1008], 1008U);
    EXPECT_EQ(call.entries[3056], 3056U);
    for (uint32_t i = 0; i < 4096; ++i) {
        EXPECT_NEAR(call.entries[i], i, 1);
    }
    EXPECT_EQ(call.entries[4096], 1U);
}

TEST(LutValues, OfContrastPullTheQuartersApart) {
    RecordCall call;
    call.contrast = 100;
    EXPECT_EQ(GetContrast(call), QY_OK);
    EXPECT_EQ(call.entries[1008], 208U);
    EXPECT_EQ(call.entries[3056], 3856U);
}

TEST(LutValues, OfCombinedTablesGoThroughAllThree) {
    for (const int contrast : {-50, -1, 0, 40, 100}) {
        for (const int lightness : {-150, -33, 0, 1, 150}) {
            for (const double gamma : {0.1, 1.0, 2.2, 10.0}) {
                LutCall call;
                call.contrast = contrast;
                call.lightness = lightness;
                call.gamma = gamma;
                EXPECT_EQ(GetLut(call), QY_OK);
                EXPECT_EQ(call.entries.Table(), ToneReference::Lut(contrast, lightness, gamma))
                    << contrast << " " << lightness << " " << gamma;
                EXPECT_TRUE(call.entries.EndsInTime());
            }
        }
    }
}

/// Bits.
class LutBits : public testing::TestWithParam<int> {
protected:
    int Bits() const { return GetParam(); }
    template <class Make>
    ToneReference::Table Made(const Make& make) const {
        ToneReference::Table table(size_t{1} << Bits(), 7);
        EXPECT_EQ(make(table.data()), QY_OK);
        return table;
    }
};

TEST_P(LutBits, ScaleTheContrast) {
    for (int contrast = -50; contrast <= 100; contrast += 5) {
        EXPECT_EQ(Made([&](uint32_t* table) {
                      return QyTone::MakeContrastTable(contrast, Bits(), table);
                  }),
                  ToneReference::Contrast(contrast, Bits()));
    }
}

TEST_P(LutBits, ScaleTheLightness) {
    for (int lightness = -150; lightness <= 150; lightness += 10) {
        EXPECT_EQ(Made([&](uint32_t* table) {
                      return QyTone::MakeLightnessTable(lightness, Bits(), table);
                  }),
                  ToneReference::Lightness(lightness, Bits()));
    }
}

TEST_P(LutBits, ScaleTheGamma) {
    for (const double gamma : {0.1, 0.7, 1.0, 2.2, 10.0}) {
        EXPECT_EQ(
            Made([&](uint32_t* table) { return QyTone::MakeGammaTable(Bits(), table, gamma); }),
            ToneReference::Gamma(Bits(), gamma));
    }
}

INSTANTIATE_TEST_SUITE_P(All, LutBits, testing::Range(8, 17));

TEST(LutMakers, RefuseOtherBitsAndNoTable) {
    uint32_t word = 7;
    for (const int bits : {7, 17, -1}) {
        EXPECT_EQ(QyTone::MakeContrastTable(0, bits, &word), QY_PARAMETER_OUT_OF_BOUND);
        EXPECT_EQ(QyTone::MakeLightnessTable(0, bits, &word), QY_PARAMETER_OUT_OF_BOUND);
        EXPECT_EQ(QyTone::MakeGammaTable(bits, &word, 1), QY_PARAMETER_OUT_OF_BOUND);
    }
    EXPECT_EQ(word, 7U);
    EXPECT_EQ(QyTone::MakeContrastTable(0, 8, nullptr), QY_PARAMETER_INVALID);
    EXPECT_EQ(QyTone::MakeLightnessTable(0, 8, nullptr), QY_PARAMETER_INVALID);
    EXPECT_EQ(QyTone::MakeGammaTable(8, nullptr, 1), QY_PARAMETER_INVALID);
}

TEST(LutCurve, IsStraightBetweenTwoPointsAlone) {
    QyTone::Curve curve(101, {{0, 0}, {1, 1}});
    EXPECT_EQ(curve.Build(0, 0, 1, 1), 101U);
    for (size_t i = 0; i <= 100; ++i) {
        EXPECT_NEAR(curve.Table()[i], static_cast<double>(i) / 100, 1e-12);
    }
}

TEST(LutCurve, LeavesEntriesOutsideItsSegmentAtZero) {
    QyTone::Curve curve(11, {{0.5, 1}, {0.8, 1}});
    EXPECT_EQ(curve.Build(0, 0, 1, 1), 4U);
    const std::vector<double> expected = {0, 0, 0, 0, 0, 1, 1, 1, 1, 0, 0};
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(curve.Table()[i], expected[i], 1e-12) << i;
    }
}

TEST(LutCurve, EndsWithItsTable) {
    QyTone::Curve curve(11, {{0.5, 0.5}, {1.5, 1.5}});
    EXPECT_EQ(curve.Build(0, 0, 1, 1), 11U);
    EXPECT_NEAR(curve.Table().back(), 1, 1e-12);
}

}  // namespace
