#include "pipeline/Pipeline.h"

#include <utility>

#include "pipeline/Colour.h"
#include "pipeline/Geometry.h"
#include "pipeline/PipelinePlan.h"
#include "pipeline/Samples.h"
#include "support/Error.h"

namespace {

constexpr Matrix kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr Ratios kNoGains{1, 1, 1};

/// One frame on its way.
class Pipeline {
public:
    Pipeline(const RawFrame& frame, const PixelFormat& format, const PipelineOptions& options)
        : m_format(format),
          m_options(options),
          m_plan(PlanPipeline(options, format)),
          m_width(frame.width),
          m_height(frame.height) {
        CheckSize();
        m_samples = MakeSamples(frame, format, m_plan, options.defects && !options.onePass);
    }

    Picture Run() {
        MakePicture();
        if (m_plan.keepsWords) {
            StretchTo16Bits(m_picture.bytes, m_format.bits);
        } else if (m_picture.channels == 1) {
            WorkOnGrey();
        } else if (!m_options.onePass) {
            WorkOnColours();
        }
        if (m_options.mirror) {
            m_picture = Mirror(m_picture, *m_options.mirror);
        }
        if (m_options.turn) {
            m_picture = Rotate(m_picture, *m_options.turn);
        }
        if (m_options.zoom) {
            m_picture = Zoom(m_picture, *m_options.zoom);
        }
        return std::move(m_picture);
    }

private:
    QyInterpolationMethod Method() const {
        return m_options.method.value_or(QY_RAW2RGB_NEIGHBOUR3);
    }

    /// The pass that does all in one doesn't tell when a stage fails.
    void CheckSize() const {
        const int32_t least = Method() == QY_RAW2RGB_ADAPTIVE ? 6 : 4;
        if (m_plan.interpolates &&
            (m_width % 2 != 0 || m_height % 2 != 0 || m_width < least || m_height < least)) {
            throw ToolError("interpolation by method " + std::to_string(Method()) +
                            " needs an even width and height of at least " + std::to_string(least) +
                            ", not " + std::to_string(m_width) + "x" + std::to_string(m_height));
        }
    }

    size_t Pixels() const { return static_cast<size_t>(m_width) * static_cast<size_t>(m_height); }

    void MakePicture() {
        m_picture.width = static_cast<uint32_t>(m_width);
        m_picture.height = static_cast<uint32_t>(m_height);
        m_picture.bitDepth = m_plan.keepsWords ? 16 : 8;
        m_picture.order = m_options.order.value_or(m_format.order);
        m_picture.channels = m_format.channels;
        if (!m_plan.interpolates) {
            m_picture.bytes = std::move(m_samples);
            return;
        }
        m_picture.channels = m_options.alpha ? 4 : 3;
        m_picture.bytes.resize(Pixels() * m_picture.PixelBytes());
        if (m_options.onePass || m_options.denoise) {
            RunOnePass();
        } else {
            CheckImage(Interpolate(m_picture.bytes.data()), "interpolate");
        }
    }

    QY_STATUS Interpolate(uint8_t* target) const {
        const uint8_t* const source = m_samples.data();
        const auto flip = static_cast<uint8_t>(m_options.flip);
        if (m_plan.keepsWords) {
            return QyRaw16toRGB48(source, target, m_picture.width, m_picture.height, m_format.bits,
                                  Method(), m_plan.filter, flip);
        }
        if (m_options.alpha) {
            return QyRaw8toARGB32(source, target, m_picture.width, m_picture.height, m_width,
                                  Method(), m_plan.filter, flip,
                                  static_cast<uint8_t>(*m_options.alpha));
        }
        return QyRaw8toRGB24Ex(source, target, m_picture.width, m_picture.height, Method(),
                               m_plan.filter, flip, m_picture.order);
    }

    /// Without --one-pass only what no function of its own does: noise.
    void RunOnePass() {
        QyRawImgRecord record{};
        record.Method = Method();
        record.Filter = m_plan.filter;
        record.Flip = static_cast<uint8_t>(m_options.flip);
        record.Denoise = static_cast<uint8_t>(m_options.denoise);
        std::vector<uint16_t> coefficients;
        std::vector<uint8_t> table;
        if (m_options.onePass) {
            record.DefectivePixelCorrect = static_cast<uint8_t>(m_options.defects);
            record.Sharpness = static_cast<uint8_t>(m_options.sharpen.has_value());
            record.SharpFactor = m_options.sharpen.value_or(0);
            coefficients = Coefficients();
            table = ToneTable(m_options);
        }
        record.CCParam = coefficients.empty() ? nullptr : coefficients.data();
        record.CCParamSize = static_cast<uint32_t>(coefficients.size() * sizeof(uint16_t));
        record.Lut = table.empty() ? nullptr : table.data();
        record.LutSize = static_cast<uint32_t>(table.size());
        CheckImage(
            QyRaw8ImgProcess(m_samples.data(), m_picture.bytes.data(), m_width, m_height, &record),
            "process the frame");
    }

    std::vector<uint16_t> Coefficients() {
        if (!ChangesColours() && !m_options.saturation) {
            return {};
        }
        if (m_options.autoBalance) {
            CheckImage(Interpolate(m_picture.bytes.data()), "interpolate");
        }
        const ColourRecord record(m_options.matrix.value_or(kIdentity), Gains());
        std::vector<uint16_t> coefficients(9);
        CheckImage(
            QyCalcCCParam(record.Get(), static_cast<int16_t>(m_options.saturation.value_or(64)),
                          coefficients.data(),
                          static_cast<uint8_t>(coefficients.size() * sizeof(uint16_t))),
            "make colour coefficients");
        return coefficients;
    }

    bool ChangesColours() const {
        return m_options.matrix || m_options.balance || m_options.autoBalance;
    }

    /// The gains asked for, or measured on the picture as it is now.
    Ratios Gains() {
        if (m_options.autoBalance) {
            m_picture.balance = MeasureBalance(m_picture.bytes, m_width, m_height, m_picture.order);
            return *m_picture.balance;
        }
        return m_options.balance.value_or(kNoGains);
    }

    void WorkOnGrey() {
        std::vector<uint8_t> table = ToneTable(m_options);
        QyMonoImgRecord record{};
        record.Sharpness = static_cast<uint8_t>(m_options.sharpen.has_value());
        record.SharpFactor = m_options.sharpen.value_or(0);
        record.Lut = table.empty() ? nullptr : table.data();
        record.LutSize = static_cast<uint32_t>(table.size());
        std::vector<uint8_t> result(m_picture.bytes.size());
        CheckImage(
            QyMono8ImgProcess(m_picture.bytes.data(), result.data(), m_width, m_height, &record),
            "process the frame");
        m_picture.bytes = std::move(result);
    }

    void WorkOnColours() {
        Improve();
        uint8_t* const bytes = m_picture.bytes.data();
        const auto count = static_cast<int32_t>(m_picture.bytes.size());
        if (m_options.brightness) {
            CheckImage(QyBrightness(bytes, bytes, count, *m_options.brightness),
                       "change the brightness");
        }
        if (m_options.contrast) {
            CheckImage(QyContrast(bytes, bytes, count, *m_options.contrast), "change the contrast");
        }
        if (m_options.saturation) {
            CheckImage(QySaturation(bytes, bytes, count / 3, *m_options.saturation),
                       "change the saturation");
        }
        if (m_options.sharpen) {
            CheckImage(QySharpen24B(bytes, bytes, m_width, m_height, *m_options.sharpen),
                       "sharpen");
        }
    }

    /// Colours and tone at 12 bits.
    void Improve() {
        std::optional<ColourRecord> colours;
        if (ChangesColours()) {
            colours.emplace(m_options.matrix.value_or(kIdentity), Gains());
        }
        std::vector<uint32_t> gamma;
        std::vector<uint32_t> contrast;
        if (m_options.gamma) {
            gamma = GammaRecord(*m_options.gamma);
        }
        if (m_options.contrastTable) {
            contrast = ContrastRecord(*m_options.contrastTable);
        }
        if (colours || !gamma.empty() || !contrast.empty()) {
            Improve(colours ? colours->Get() : nullptr,
                    contrast.empty() ? nullptr : contrast.data(),
                    gamma.empty() ? nullptr : gamma.data());
        }
    }

    void Improve(const QyColorCorrectionRecord* colours, const uint32_t* contrast,
                 const uint32_t* gamma) {
        std::vector<uint8_t> result(m_picture.bytes.size());
        const QY_STATUS status =
            m_picture.channels == 4
                ? QyARGBImageImprovment(m_picture.bytes.data(), result.data(), m_width, m_height,
                                        colours, contrast, gamma)
                : QyImageImprovmentEx(m_picture.bytes.data(), result.data(), m_width, m_height,
                                      colours, contrast, gamma, m_picture.order);
        CheckImage(status, "improve colours and tone");
        m_picture.bytes = std::move(result);
    }

    const PixelFormat& m_format;
    const PipelineOptions& m_options;
    const PipelinePlan m_plan;
    const int32_t m_width;
    const int32_t m_height;
    std::vector<uint8_t> m_samples;
    Picture m_picture;
};

}  // namespace

Picture ProcessFrame(const RawFrame& frame, const PixelFormat& format,
                     const PipelineOptions& options) {
    return Pipeline(frame, format, options).Run();
}
