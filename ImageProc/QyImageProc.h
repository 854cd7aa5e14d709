#ifndef QY_IMAGE_PROC_H
#define QY_IMAGE_PROC_H

/**
 * @file
 * Image functions of liboviapi.so: from raw sensor data to pictures.
 *
 * Plain functions over memory of the caller. They keep nothing between calls,
 * start no thread, and run on any thread at the same time as others on other
 * memory. Each gives a QY_STATUS; the checks run in a fixed order, and the
 * first that fails decides. A failed check writes nothing.
 *
 * Images are dense, row after row, with no gaps, where nothing else is said.
 * Widths and heights are in pixels, from 1 to 2,147,483,647; an image whose bytes
 * no memory holds is refused like a width of 0. 16-bit samples are little-endian
 * words.
 *
 * "In place allowed" means that dst may be src. Nowhere else may the two overlap;
 * a function that refuses equal pointers says so, and none looks for other overlaps.
 */

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#define QY_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/** Result of every function. */
typedef int32_t QY_STATUS;
enum {
    QY_OK = 0,
    QY_PARAMETER_INVALID = -101,      /**< a null pointer, or a wrong size field */
    QY_PARAMETER_OUT_OF_BOUND = -102, /**< a width, height or value outside its range */
    QY_NOT_ENOUGH_MEMORY = -103,      /**< an allocation failed */
    QY_NOT_SUPPORTED = -105,          /**< a method or mode that doesn't exist */
    QY_ACCELERATE_UNAVAILABLE = -106  /**< the Accelerate flag of a record was set */
};

/** How the colours between the samples of a mosaic are found. */
typedef int32_t QyInterpolationMethod;
enum {
    QY_RAW2RGB_NEIGHBOUR = 0, /**< two by two samples: fastest */
    QY_RAW2RGB_ADAPTIVE = 1,  /**< along edges: best */
    QY_RAW2RGB_NEIGHBOUR3 = 2 /**< three by three samples */
};

/** The colours of the first two samples of the first two rows. */
typedef int32_t QyColorFilter;
enum {
    QY_FILTER_NONE = 0, /**< no mosaic: the frame is monochrome */
    QY_BAYER_RG = 1,    /**< R G, then G B */
    QY_BAYER_GB = 2,    /**< G B, then R G */
    QY_BAYER_GR = 3,    /**< G R, then B G */
    QY_BAYER_BG = 4     /**< B G, then G R */
};

/** The order of the three bytes of a pixel. */
typedef int32_t QyChannelOrder;
enum { QY_ORDER_RGB = 0, QY_ORDER_BGR = 1 };

/** Which eight bits of a 16-bit sample are kept. */
typedef int32_t QyValidBit;
enum { QY_BIT_0_7 = 0, QY_BIT_1_8 = 1, QY_BIT_2_9 = 2, QY_BIT_3_10 = 3, QY_BIT_4_11 = 4 };

/** How an image is mirrored. */
typedef int32_t QyImageMirrorMode;
enum {
    QY_MIRROR_HORIZONTAL = 0, /**< reverses every row */
    QY_MIRROR_VERTICAL = 1    /**< reverses the order of the rows */
};

/** Bytes of a tone record: 4096 words of a table from 12 to 12 bits, and a word
 *  that tells its kind. */
#define QY_TONE_RECORD_SIZE 16388

/** Colour correction, as a camera's side hands it out: nine tables, each a
 *  coefficient of the 3x3 matrix times every 8-bit value, in 12-bit units. */
typedef struct QyColorCorrectionRecord {
    uint8_t header[4];
    int16_t table[9][256]; /**< by rows of the matrix */
    void* lock;            /**< a POSIX mutex, held while the tables are read; if it
                                can't be had, the call leaves by std::system_error */
} QyColorCorrectionRecord;

/** What QyRaw8ImgProcess() does to a frame. */
typedef struct QyRawImgRecord {
    uint8_t DefectivePixelCorrect; /**< repair bright outliers in the source first */
    uint8_t Denoise;               /**< reduce noise after the interpolation */
    uint8_t Sharpness;             /**< sharpen last */
    uint8_t Accelerate;            /**< must be 0 */
    uint16_t* CCParam;             /**< coefficients of QyCalcCCParam(), or null */
    uint32_t CCParamSize;          /**< 18 when CCParam is set */
    float SharpFactor;             /**< 0.1 to 5.0 */
    uint8_t* Lut;                  /**< 256 bytes, or null */
    uint32_t LutSize;              /**< 256 when Lut is set */
    QyInterpolationMethod Method;
    QyColorFilter Filter;
    uint8_t Flip; /**< write the image bottom-up */
} QyRawImgRecord;

/** What QyMono8ImgProcess() does to a frame. */
typedef struct QyMonoImgRecord {
    uint8_t DefectivePixelCorrect; /**< repair bright outliers in the source first */
    uint8_t Sharpness;             /**< sharpen last */
    uint8_t Accelerate;            /**< must be 0 */
    float SharpFactor;             /**< 0.1 to 5.0 */
    uint8_t* Lut;                  /**< 256 bytes, or null */
    uint32_t LutSize;              /**< 256 when Lut is set */
} QyMonoImgRecord;

/** @name Raw formats */
/** @{ */

/** Unpacks two 12-bit samples of three bytes into two words. An odd last sample
 *  is not unpacked: its word of dst stays.
 *  @param src  3 bytes for every two samples; width * height / 2 * 3 bytes
 *  @param dst  width * height words; QY_PARAMETER_INVALID when it is src */
QY_API QY_STATUS QyRaw12PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height);
/** Unpacks three 10-bit samples of a 32-bit word into three words. The last source
 *  word may serve fewer.
 *  @param src  4 * (width * height / 3 + 1) bytes: the word after the last whole
 *              three samples may be read also where it serves none
 *  @param dst  width * height words; QY_PARAMETER_INVALID when it is src */
QY_API QY_STATUS QyRaw10PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height);
/** Keeps eight bits of each 16-bit sample; a sample with bits above them becomes
 *  255. In place allowed.
 *  @param src  width * height words
 *  @param dst  width * height bytes */
QY_API QY_STATUS QyRaw16toRaw8(const void* src, void* dst, int32_t width, int32_t height,
                               QyValidBit validBit);
/** The same for three words a pixel. In place allowed.
 *  @param src  width * height * 3 words
 *  @param dst  width * height * 3 bytes */
QY_API QY_STATUS QyRGB48toRGB24(const void* src, void* dst, int32_t width, int32_t height,
                                QyValidBit validBit);

/** @} */
/** @name Mosaic to colours
 *
 * Width and height are even and at least 4, for QY_RAW2RGB_ADAPTIVE at least 6;
 * otherwise QY_PARAMETER_OUT_OF_BOUND. A filter above 4 returns QY_OK and writes no
 * image. A `flip` other than 0 writes the image bottom-up. Not in place.
 */
/** @{ */

/** 8-bit samples to three bytes: R, G, B.
 *  @param src  width * height bytes
 *  @param dst  width * height * 3 bytes */
QY_API QY_STATUS QyRaw8toRGB24(const void* src, void* dst, uint32_t width, uint32_t height,
                               QyInterpolationMethod method, QyColorFilter filter, uint8_t flip);
/** The same with a choice of order. */
QY_API QY_STATUS QyRaw8toRGB24Ex(const void* src, void* dst, uint32_t width, uint32_t height,
                                 QyInterpolationMethod method, QyColorFilter filter, uint8_t flip,
                                 QyChannelOrder order);
/** 8-bit samples to four bytes: R, G, B, alpha.
 *  @param src     width * height bytes
 *  @param dst     stride * height * 4 bytes
 *  @param stride  pixels from one row of dst to the next, at least width. Bytes
 *                 after the width stay. With QY_FILTER_NONE and a flip, a
 *                 stride above the width makes the rows begin before dst: such
 *                 a call is outside what the function can serve. */
QY_API QY_STATUS QyRaw8toARGB32(const void* src, void* dst, uint32_t width, uint32_t height,
                                int32_t stride, QyInterpolationMethod method, QyColorFilter filter,
                                uint8_t flip, uint8_t alpha);
/** 16-bit samples to three words: R, G, B.
 *  @param src   width * height words
 *  @param dst   width * height * 3 words
 *  @param bits  significant bits of a sample; QY_RAW2RGB_ADAPTIVE limits to them */
QY_API QY_STATUS QyRaw16toRGB48(const void* src, void* dst, uint32_t width, uint32_t height,
                                int32_t bits, QyInterpolationMethod method, QyColorFilter filter,
                                uint8_t flip);

/** @} */
/** @name Tone */
/** @{ */

/** Gamma table of 12 bits. A null lut asks for the size.
 *  @param lut    QY_TONE_RECORD_SIZE bytes
 *  @param size   in and out, bytes
 *  @param gamma  0.1 to 10 */
QY_API QY_STATUS QyGetGammatLut(uint32_t* lut, int32_t* size, double gamma);
/** Contrast table of 12 bits; contrast from -50 to 100. */
QY_API QY_STATUS QyGetContrastLut(int32_t contrast, uint32_t* lut, int32_t* size);
/** Table of 8 bits for contrast (-50 to 100), lightness (-150 to 150) and gamma
 *  (0.1 to 10) together.
 *  @param size  in and out, exactly 256 */
QY_API QY_STATUS QyGetLut(int32_t contrast, int32_t lightness, uint8_t* lut, uint16_t* size,
                          double gamma);
/** Lightness of `count` bytes, factor from -150 to 150. In place allowed. */
QY_API QY_STATUS QyBrightness(const void* src, void* dst, int32_t count, int32_t factor);
/** Contrast of `count` bytes, factor from -50 to 100. In place allowed. */
QY_API QY_STATUS QyContrast(const void* src, void* dst, int32_t count, int32_t factor);
/** Saturation of pixels of three bytes, factor from 0 (grey) over 64 (as it is)
 *  to 128. In place allowed. */
QY_API QY_STATUS QySaturation(const void* src, void* dst, int32_t pixelCount, int32_t factor);
/** Sharpens pixels of three bytes, factor from 0.1 to 5.0. In place allowed. */
QY_API QY_STATUS QySharpen24B(const void* src, void* dst, int32_t width, int32_t height,
                              float factor);

/** @} */
/** @name Colour and pipelines */
/** @{ */

/** Gains that make an image of three bytes a pixel grey on average. The smallest is
 *  1, but for a channel without light, which has 0. A border of two pixels stays
 *  out, so that width and height are at least 5. */
QY_API QY_STATUS QyGetWhiteBalanceRatio(const void* src, int32_t width, int32_t height,
                                        double* ratio0, double* ratio1, double* ratio2);
/** The nine coefficients of a record at a saturation from 0 to 128.
 *  @param size  bytes of coefficients, 18 */
QY_API QY_STATUS QyCalcCCParam(const QyColorCorrectionRecord* record, int16_t saturation,
                               uint16_t* coefficients, uint8_t size);
/** Colour correction and tone of pixels R, G, B. One of the last three
 *  arguments must be given. In place allowed. */
QY_API QY_STATUS QyImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                                   const QyColorCorrectionRecord* colorRecord,
                                   const uint32_t* contrastLut, const uint32_t* gammaLut);
/** The same with a choice of order. In place allowed. */
QY_API QY_STATUS QyImageImprovmentEx(const void* src, void* dst, int32_t width, int32_t height,
                                     const QyColorCorrectionRecord* colorRecord,
                                     const uint32_t* contrastLut, const uint32_t* gammaLut,
                                     QyChannelOrder order);
/** The same for four bytes a pixel, the fourth copied. In place allowed. */
QY_API QY_STATUS QyARGBImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                                       const QyColorCorrectionRecord* colorRecord,
                                       const uint32_t* contrastLut, const uint32_t* gammaLut);
/** A raw frame of 8 bits to three bytes a pixel, in one call. Changes src when
 *  it repairs defects. Not in place. */
QY_API QY_STATUS QyRaw8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                                  const QyRawImgRecord* record);
/** A monochrome frame of 8 bits, in one call. Changes src when it repairs
 *  defects. In place allowed. */
QY_API QY_STATUS QyMono8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                                   const QyMonoImgRecord* record);

/** @} */
/** @name Geometry and defects, 8 bits a sample. The first three refuse a dst that
 *  is src with QY_PARAMETER_INVALID; the last works in place. */
/** @{ */

/** Mirrors an image. */
QY_API QY_STATUS QyImageMirror(const void* src, void* dst, int32_t width, int32_t height,
                               QyImageMirrorMode mode);
/** Turns an image clockwise: rows become `height` samples wide. */
QY_API QY_STATUS QyRotate90CW8B(const void* src, void* dst, int32_t width, int32_t height);
/** Turns an image counter-clockwise. */
QY_API QY_STATUS QyRotate90CCW8B(const void* src, void* dst, int32_t width, int32_t height);
/** Repairs bright outliers of a raw frame in place. Width and height are at least
 *  5: a border of two samples isn't looked at.
 *  @param bits  8, or 9 to 16 for words */
QY_API QY_STATUS QyAutoRawDefectivePixelCorrect(void* buffer, int32_t width, int32_t height,
                                                int32_t bits);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
