#ifndef QY_IMAGE_PROC_H
#define QY_IMAGE_PROC_H

/**
 * @file
 * Image functions of liboviapi.so: from raw sensor data to pictures.
 *
 * - Functions are plain: they work on the caller's memory, keep nothing between calls
 *   and start no threads. Any thread may call any of them at any time, as long as no two
 *   calls at a time use the same memory and one of them writes it. A call takes up to
 *   128 kB of its thread's stack.
 * - Every function returns a QY_STATUS. Its checks run in a fixed order, and the first
 *   that fails decides. A function that returns a failure has written nothing, except
 *   where it says otherwise. Besides what a function lists, all of them return
 *   QY_PARAMETER_INVALID for a null pointer, unless the pointer may be null, and
 *   QY_PARAMETER_OUT_OF_BOUND for a size or value outside its range.
 * - Images are dense: row after row without gaps. Widths and heights are in pixels, from
 *   1 to 2,147,483,647 unless a function says otherwise. A size whose bytes no memory
 *   can hold is out of range as well.
 * - Samples of more than 8 bits are little-endian words of 16 bits. Images may begin at
 *   any address; tables of words and records have the alignment of their type.
 * - "In place" means that dst may be src. Otherwise the two must not overlap, and partial
 *   overlaps are never allowed. Only the functions that say so refuse a dst that is src;
 *   no function detects other overlaps.
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

/** Result of every function: QY_OK, or a negative value for a failure. */
typedef int32_t QY_STATUS;
enum {
    QY_OK = 0,                        /**< done */
    QY_PARAMETER_INVALID = -101,      /**< a null pointer, or a wrong size of a table */
    QY_PARAMETER_OUT_OF_BOUND = -102, /**< a width, height or value outside its range */
    QY_NOT_ENOUGH_MEMORY = -103,      /**< an allocation failed */
    QY_NOT_SUPPORTED = -105,          /**< a method or mode that doesn't exist */
    QY_ACCELERATE_UNAVAILABLE = -106  /**< the Accelerate flag of a record was set */
};

/** How the two colours that a sample of a mosaic lacks are computed. */
typedef int32_t QyInterpolationMethod;
enum {
    QY_RAW2RGB_NEIGHBOUR = 0, /**< from two by two samples: the fastest */
    QY_RAW2RGB_ADAPTIVE = 1,  /**< along edges: the best, and the slowest */
    QY_RAW2RGB_NEIGHBOUR3 = 2 /**< from three by three samples */
};

/** Layout of a mosaic: the colours of the first two samples of the first two rows. */
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
enum {
    QY_ORDER_RGB = 0, /**< byte 0 is red, byte 2 is blue */
    QY_ORDER_BGR = 1  /**< byte 0 is blue, byte 2 is red */
};

/** Which eight bits of a 16-bit sample become a byte: the first and the last are in the
 *  name. QY_BIT_4_11 suits samples of 12 bits. */
typedef int32_t QyValidBit;
enum { QY_BIT_0_7 = 0, QY_BIT_1_8 = 1, QY_BIT_2_9 = 2, QY_BIT_3_10 = 3, QY_BIT_4_11 = 4 };

/** How an image is mirrored. */
typedef int32_t QyImageMirrorMode;
enum {
    QY_MIRROR_HORIZONTAL = 0, /**< reverses every row */
    QY_MIRROR_VERTICAL = 1    /**< reverses the order of the rows */
};

/** Size of a tone record in bytes. It is an array of 4097 words of 32 bits: a table that
 *  maps values of 12 bits to values of 12 bits, and the record's kind: 0 for gamma, 1 for
 *  contrast. */
#define QY_TONE_RECORD_SIZE 16388

/** Colour correction of a camera model: a 3x3 matrix that is applied to pixels R, G, B.
 *  Belongs to the caller. Another thread may change it at any time if it holds the lock
 *  while it does; the functions that read it hold the lock for as long as they read. */
typedef struct QyColorCorrectionRecord {
    uint8_t header[4];     /**< ignored */
    int16_t table[9][256]; /**< for each coefficient, by rows of the matrix, its products
                                with all values of a byte. A coefficient of 1 is 16: sums
                                have 12 bits */
    void* lock;            /**< a pthread_mutex_t. If it is null or locking it fails, the
                                call throws std::system_error, which ends a program in C */
} QyColorCorrectionRecord;

/** What QyRaw8ImgProcess() does to a frame, in the order of its stages. A flag is
 *  set if it isn't 0. Memory belongs to the caller. */
typedef struct QyRawImgRecord {
    uint8_t DefectivePixelCorrect; /**< flag: repair src first, as
                                        QyAutoRawDefectivePixelCorrect() does */
    uint8_t Denoise;               /**< flag: reduce noise after the colours are made */
    uint8_t Sharpness;             /**< flag: sharpen last, as QySharpen24B() does */
    uint8_t Accelerate;            /**< must be 0 */
    uint16_t* CCParam;             /**< nine coefficients of QyCalcCCParam() that the colours
                                        are multiplied by, or null */
    uint32_t CCParamSize;          /**< bytes of CCParam, 18; ignored without it */
    float SharpFactor;             /**< strength of Sharpness, 0.1 to 5.0 */
    uint8_t* Lut;                  /**< table of 256 bytes that every byte of the picture is
                                        mapped by, after CCParam, or null */
    uint32_t LutSize;              /**< bytes of Lut, 256; ignored without it */
    QyInterpolationMethod Method;  /**< how the colours are made */
    QyColorFilter Filter;          /**< layout of the mosaic. With QY_FILTER_NONE, CCParam and
                                        Lut are ignored */
    uint8_t Flip;                  /**< flag: write the picture bottom-up */
} QyRawImgRecord;

/** What QyMono8ImgProcess() does to a frame, in the order of its stages. A flag is
 *  set if it isn't 0. Memory belongs to the caller. */
typedef struct QyMonoImgRecord {
    uint8_t DefectivePixelCorrect; /**< flag: repair src first, as
                                        QyAutoRawDefectivePixelCorrect() does */
    uint8_t Sharpness;             /**< flag: sharpen last */
    uint8_t Accelerate;            /**< must be 0 */
    float SharpFactor;             /**< strength of Sharpness, 0.1 to 5.0 */
    uint8_t* Lut;                  /**< table of 256 bytes that every byte is mapped by, or
                                        null */
    uint32_t LutSize;              /**< bytes of Lut, 256; ignored without it */
} QyMonoImgRecord;

/** @name Raw formats
 *
 * N is width * height, the number of samples.
 */
/** @{ */

/** Unpacks samples of 12 bits: each three bytes hold two of them, the first in the lower
 *  bits. If N is odd, the last sample isn't unpacked, and its word in dst isn't changed.
 *  @param src  N / 2 * 3 bytes
 *  @param dst  N words
 *  @return QY_PARAMETER_INVALID also if dst is src */
QY_API QY_STATUS QyRaw12PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height);
/** Unpacks samples of 10 bits: each little-endian word of 32 bits holds three of them, the
 *  first in the lowest bits, and two bits that are ignored.
 *  @param src  4 * (N / 3 + 1) bytes: the word after the last whole three samples may be
 *              read even if N is a multiple of 3
 *  @param dst  N words
 *  @return QY_PARAMETER_INVALID also if dst is src */
QY_API QY_STATUS QyRaw10PackedToRaw16(const void* src, void* dst, int32_t width, int32_t height);
/** Keeps eight bits of each sample. A sample with higher bits becomes 255; nothing is
 *  rounded. In place allowed.
 *  @param src  N words
 *  @param dst  N bytes */
QY_API QY_STATUS QyRaw16toRaw8(const void* src, void* dst, int32_t width, int32_t height,
                               QyValidBit validBit);
/** Like QyRaw16toRaw8(), for pixels of three samples, whatever their order. In place
 *  allowed.
 *  @param src  N * 3 words
 *  @param dst  N * 3 bytes */
QY_API QY_STATUS QyRGB48toRGB24(const void* src, void* dst, int32_t width, int32_t height,
                                QyValidBit validBit);

/** @} */
/** @name Mosaic to colours
 *
 * Width and height are even and at least 4, for QY_RAW2RGB_ADAPTIVE at least 6. A method
 * that doesn't exist returns QY_NOT_SUPPORTED. If `flip` isn't 0, the first
 * row of src becomes the last row of dst. Not in place.
 *
 * QY_FILTER_NONE copies each sample to all three colours. For a filter that doesn't exist,
 * the functions return QY_OK without making a picture: dst keeps its content, of which
 * QY_RAW2RGB_ADAPTIVE overwrites a border of three pixels all the same.
 */
/** @{ */

/** Makes pixels of three bytes, R, G, B, from samples of 8 bits.
 *  @param src  width * height bytes
 *  @param dst  width * height * 3 bytes */
QY_API QY_STATUS QyRaw8toRGB24(const void* src, void* dst, uint32_t width, uint32_t height,
                               QyInterpolationMethod method, QyColorFilter filter, uint8_t flip);
/** Like QyRaw8toRGB24(), with a choice of the order.
 *  @return QY_NOT_SUPPORTED, before any other check, for an order that doesn't exist */
QY_API QY_STATUS QyRaw8toRGB24Ex(const void* src, void* dst, uint32_t width, uint32_t height,
                                 QyInterpolationMethod method, QyColorFilter filter, uint8_t flip,
                                 QyChannelOrder order);
/** Makes pixels of four bytes, R, G, B, alpha, from samples of 8 bits.
 *  @param src     width * height bytes
 *  @param dst     stride * height * 4 bytes; those between the width and the stride aren't
 *                 changed
 *  @param stride  pixels from one row of dst to the next, at least width. It must be width
 *                 if filter is QY_FILTER_NONE and flip isn't 0: rows would begin before dst
 *                 otherwise, which the function doesn't check
 *  @param alpha   the fourth byte of every pixel
 *  @return QY_PARAMETER_INVALID also for a width or height below 2 or a stride below the
 *          width */
QY_API QY_STATUS QyRaw8toARGB32(const void* src, void* dst, uint32_t width, uint32_t height,
                                int32_t stride, QyInterpolationMethod method, QyColorFilter filter,
                                uint8_t flip, uint8_t alpha);
/** Makes pixels of three words, R, G, B, from samples in words.
 *  @param src   width * height words
 *  @param dst   width * height * 3 words
 *  @param bits  significant bits of a sample; values outside 0 to 16 mean the nearest of
 *               the two. QY_RAW2RGB_ADAPTIVE limits its results to them, and the other
 *               methods ignore them */
QY_API QY_STATUS QyRaw16toRGB48(const void* src, void* dst, uint32_t width, uint32_t height,
                                int32_t bits, QyInterpolationMethod method, QyColorFilter filter,
                                uint8_t flip);

/** @} */
/** @name Tone
 *
 * The three functions that make a table have a `size`, in bytes: in, that of the caller's
 * memory; out, that of the table. If `lut` is null, they only set `size`, whatever the
 * other arguments are. If the size isn't right, they set it and return
 * QY_PARAMETER_INVALID.
 *
 * A contrast or lightness of 0 changes next to nothing, but isn't exact: a byte may change
 * by 1, with lightness by up to 3.
 */
/** @{ */

/** Makes a gamma record for QyImageImprovment() and its variants.
 *  @param lut    receives the record, QY_TONE_RECORD_SIZE bytes
 *  @param size   at least QY_TONE_RECORD_SIZE
 *  @param gamma  0.1 to 10. Above 1 the picture becomes brighter, below 1 darker */
QY_API QY_STATUS QyGetGammatLut(uint32_t* lut, int32_t* size, double gamma);
/** Makes a contrast record for QyImageImprovment() and its variants.
 *  @param contrast  -50 (flatter) to 100 (stronger)
 *  @param lut       receives the record, QY_TONE_RECORD_SIZE bytes
 *  @param size      at least QY_TONE_RECORD_SIZE
 *  @return QY_NOT_ENOUGH_MEMORY */
QY_API QY_STATUS QyGetContrastLut(int32_t contrast, uint32_t* lut, int32_t* size);
/** Makes a table from byte to byte: gamma first, then lightness, then contrast. It suits
 *  the records of QyRaw8ImgProcess() and QyMono8ImgProcess().
 *  @param contrast   -50 (flatter) to 100 (stronger)
 *  @param lightness  -150 (darker) to 150 (lighter)
 *  @param lut        receives the table, 256 bytes
 *  @param size       exactly 256
 *  @param gamma      0.1 to 10; above 1 brighter, below 1 darker
 *  @return QY_NOT_ENOUGH_MEMORY */
QY_API QY_STATUS QyGetLut(int32_t contrast, int32_t lightness, uint8_t* lut, uint16_t* size,
                          double gamma);
/** Changes the lightness of bytes, whatever they belong to. In place allowed.
 *  @param count   bytes of src and of dst, at least 1
 *  @param factor  -150 (darker) to 150 (lighter)
 *  @return QY_NOT_ENOUGH_MEMORY */
QY_API QY_STATUS QyBrightness(const void* src, void* dst, int32_t count, int32_t factor);
/** Changes the contrast of bytes, whatever they belong to. In place allowed.
 *  @param count   bytes of src and of dst, at least 1
 *  @param factor  -50 (flatter) to 100 (stronger)
 *  @return QY_NOT_ENOUGH_MEMORY */
QY_API QY_STATUS QyContrast(const void* src, void* dst, int32_t count, int32_t factor);
/** Changes the saturation of pixels of three bytes, R, G, B. In place allowed.
 *  @param pixelCount  pixels of src and of dst, at least 1
 *  @param factor      0 (grey) to 128; 64 leaves the colours as they are */
QY_API QY_STATUS QySaturation(const void* src, void* dst, int32_t pixelCount, int32_t factor);
/** Sharpens pixels of three bytes: computes the change of the second byte, and changes
 *  all three by it. A border of two pixels is copied, and an image with a side below 5
 *  altogether. In place allowed.
 *  @param src, dst  width * height * 3 bytes
 *  @param factor    0.1 (weak) to 5.0 (strong)
 *  @return QY_NOT_ENOUGH_MEMORY */
QY_API QY_STATUS QySharpen24B(const void* src, void* dst, int32_t width, int32_t height,
                              float factor);

/** @} */
/** @name Colour and pipelines */
/** @{ */

/** Computes the gains of the three channels that make an image grey on average. They are
 *  scaled so that none is below 1, which would darken its channel. A channel without light
 *  has a gain of 0: then the other gains aren't scaled, and without light in byte 1 all
 *  are 0.
 *  @param src            pixels of three bytes, width * height * 3 bytes. A border of two
 *                        pixels doesn't count
 *  @param width, height  at least 5
 *  @param ratio0         receives the gain of byte 0 of a pixel
 *  @param ratio1         receives the gain of byte 1
 *  @param ratio2         receives the gain of byte 2 */
QY_API QY_STATUS QyGetWhiteBalanceRatio(const void* src, int32_t width, int32_t height,
                                        double* ratio0, double* ratio1, double* ratio2);
/** Computes the coefficients that QyRawImgRecord takes, from a record and a saturation.
 *  @param record        its lock is held while it is read
 *  @param saturation    0 (grey) to 128; 64 is that of the record
 *  @param coefficients  receives nine words: the diagonal of the matrix in 256ths, then
 *                       the others with 256 added
 *  @param size          size of coefficients in bytes, exactly 18
 *  @return QY_PARAMETER_INVALID also for another size */
QY_API QY_STATUS QyCalcCCParam(const QyColorCorrectionRecord* record, int16_t saturation,
                               uint16_t* coefficients, uint8_t size);
/** Corrects colour and tone of pixels of three bytes, R, G, B: multiplies them by the
 *  matrix, then maps them by gamma and contrast. Each of the last three arguments may be
 *  null, but not all of them. In place allowed.
 *  @param src, dst     width * height * 3 bytes
 *  @param colorRecord  its lock is held for the whole image
 *  @param contrastLut  a record of QyGetContrastLut()
 *  @param gammaLut     a record of QyGetGammatLut()
 *  @return QY_PARAMETER_INVALID also for a tone record of the wrong kind */
QY_API QY_STATUS QyImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                                   const QyColorCorrectionRecord* colorRecord,
                                   const uint32_t* contrastLut, const uint32_t* gammaLut);
/** Like QyImageImprovment(), for pixels of either order. In place allowed.
 *  @return QY_NOT_SUPPORTED, before any other check, for an order that doesn't exist */
QY_API QY_STATUS QyImageImprovmentEx(const void* src, void* dst, int32_t width, int32_t height,
                                     const QyColorCorrectionRecord* colorRecord,
                                     const uint32_t* contrastLut, const uint32_t* gammaLut,
                                     QyChannelOrder order);
/** Like QyImageImprovment(), for pixels of four bytes, of which the fourth is copied. In
 *  place allowed.
 *  @param src, dst  width * height * 4 bytes */
QY_API QY_STATUS QyARGBImageImprovment(const void* src, void* dst, int32_t width, int32_t height,
                                       const QyColorCorrectionRecord* colorRecord,
                                       const uint32_t* contrastLut, const uint32_t* gammaLut);
/** Makes a picture of three bytes a pixel, R, G, B, from a raw frame of 8 bits. Not in
 *  place. A stage that can't run is left out, and the call still returns QY_OK: a stage
 *  whose own function refuses the frame's size, for instance an odd width when colours are
 *  made, a SharpFactor outside its range, or too little memory.
 *  @param src  width * height bytes, changed by the repair of defects
 *  @param dst  width * height * 3 bytes
 *  @return QY_ACCELERATE_UNAVAILABLE, before all checks of the other arguments, if
 *          Accelerate isn't 0; QY_PARAMETER_INVALID also for a wrong CCParamSize or
 *          LutSize; QY_NOT_SUPPORTED for a Method or Filter that doesn't exist */
QY_API QY_STATUS QyRaw8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                                  const QyRawImgRecord* record);
/** Makes a picture of one byte a pixel from a monochrome frame of 8 bits. In place
 *  allowed. A stage that can't run is left out, as in QyRaw8ImgProcess().
 *  @param src  width * height bytes, changed by the repair of defects
 *  @param dst  width * height bytes
 *  @return QY_ACCELERATE_UNAVAILABLE, before all checks of the other arguments, if
 *          Accelerate isn't 0; QY_PARAMETER_INVALID also for a wrong LutSize */
QY_API QY_STATUS QyMono8ImgProcess(void* src, void* dst, int32_t width, int32_t height,
                                   const QyMonoImgRecord* record);

/** @} */
/** @name Geometry and defects
 *
 * The first three functions move samples of 8 bits. They aren't in place and return
 * QY_PARAMETER_INVALID if dst is src, after the checks of width and height.
 */
/** @{ */

/** Mirrors an image.
 *  @param src, dst  width * height bytes
 *  @return QY_NOT_SUPPORTED for a mode that doesn't exist */
QY_API QY_STATUS QyImageMirror(const void* src, void* dst, int32_t width, int32_t height,
                               QyImageMirrorMode mode);
/** Turns an image clockwise by a quarter.
 *  @param src  width * height bytes
 *  @param dst  width rows of height bytes */
QY_API QY_STATUS QyRotate90CW8B(const void* src, void* dst, int32_t width, int32_t height);
/** Turns an image counter-clockwise by a quarter.
 *  @param src  width * height bytes
 *  @param dst  width rows of height bytes */
QY_API QY_STATUS QyRotate90CCW8B(const void* src, void* dst, int32_t width, int32_t height);
/** Repairs pixels of a raw frame that are too bright, in place: a sample that exceeds the
 *  four nearest samples of its colour in its row and column by more than 10 of 255, or as
 *  much of a larger range, becomes their mean. A border of two samples isn't examined.
 *  @param buffer         width * height bytes, or words if bits is above 8
 *  @param width, height  at least 5
 *  @param bits           significant bits of a sample, 8 to 16 */
QY_API QY_STATUS QyAutoRawDefectivePixelCorrect(void* buffer, int32_t width, int32_t height,
                                                int32_t bits);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
