/*
 * QuillonBufferOperaU: pixel-buffer operations for multi-camera video.
 *
 * Plain C interface, usable from C and C++. Every export takes flat 32-bit
 * arguments (pointers, signed sizes and coordinates, flags tested for zero
 * or non-zero), works synchronously on the caller's thread and keeps no
 * state between calls; any export may run on several threads at once as
 * long as destinations are distinct and no source overlaps its destination.
 *
 * Pixel conventions
 *   32-bit pixel: four bytes, byte 0 at the lowest address (RGBA = R,G,B,A;
 *     BGRA = B,G,R,A). Blits and masks treat bytes 0..2 alike, byte 3 is alpha.
 *   YUYV: per pair of pixels the bytes Y0, U, Y1, V.
 *   Pitches, where taken, are signed byte distances between row starts.
 *   Blits, stretches, zooms, masks and the blur take no pitch: a buffer's
 *   width in pixels is also its row length.
 *
 * Result codes differ per export on purpose and are documented with each
 * family; QBO_E_FAIL is the generic failure code some of them return.
 *
 * Calling conventions (32-bit Windows only; empty elsewhere)
 *   QBO_CALLEE  the callee pops its arguments (__stdcall). Block transfers,
 *               stretches and, by this library's choice, every export that is
 *               not a resampling export.
 *   QBO_CALLER  the caller pops its arguments (__cdecl): the resampling
 *               exports.
 */
#ifndef QUILLON_BUFFER_OPERA_U_H_
#define QUILLON_BUFFER_OPERA_U_H_

#include <stdint.h>

#if defined(_WIN32) && !defined(_WIN64)
#define QBO_CALLEE __stdcall
#define QBO_CALLER __cdecl
#else
#define QBO_CALLEE
#define QBO_CALLER
#endif

/* On Windows the module-definition file decides what is exported; on ELF
 * platforms the library is built with hidden visibility and only names
 * declared here are made visible. */
#if defined(_WIN32)
#define QBO_API
#elif defined(QBO_BUILDING_LIBRARY)
#define QBO_API __attribute__((visibility("default")))
#else
#define QBO_API
#endif

#define QBO_E_FAIL ((int32_t)0x80004005)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Fills, copies and flips ------------------------------------------
 * QN_MemsetDWORD: stores `value` into `count` 32-bit words; returns 1.
 *   `count` must be 0 or positive.
 * QN_Memcpy: copies `size` bytes forward with cache-bypassing stores;
 *   returns dst, or NULL (copying nothing) when size is 0 or a pointer is
 *   NULL. Ranges must not overlap.
 * QN_Clear: fills rows `top` to `bottom` inclusive (row `top` always, even
 *   when bottom < top) with `width` pixels of `color` from column `left`;
 *   `bottom` is the index of the last row, not a height. Returns dst, or
 *   NULL when dst is NULL.
 * QN_AlphaMemSet: sets the alpha byte of width x height contiguous pixels
 *   to the low 8 bits of `alpha`; returns dst, or NULL when dst is NULL.
 * QN_OverTurnSelf: turns the image upside down in place, padding included;
 *   returns 0 when buffer is NULL, pitch < 0, height < 0 or the temporary
 *   row cannot be allocated (image untouched), 1 otherwise.
 * QN_CalMask, QN_ColorMixLine: placeholders kept for the interface; they
 *   touch nothing. QN_ColorMixLine returns 1.
 */
QBO_API int32_t QBO_CALLEE QN_MemsetDWORD(void* dst, uint32_t value, int32_t count);
QBO_API void* QBO_CALLEE QN_Memcpy(void* dst, const void* src, int32_t size);
QBO_API void* QBO_CALLEE QN_Clear(void* dst, int32_t pitch, int32_t left, int32_t top,
                                  int32_t width, int32_t bottom, uint32_t color);
QBO_API void* QBO_CALLEE QN_AlphaMemSet(void* dst, int32_t alpha, int32_t width,
                                        int32_t height);
QBO_API int32_t QBO_CALLEE QN_OverTurnSelf(void* buffer, int32_t pitch, int32_t height);
QBO_API void QBO_CALLEE QN_CalMask(int32_t a0, int32_t a1, int32_t a2, int32_t a3,
                                   int32_t a4, int32_t a5, int32_t a6, int32_t a7,
                                   int32_t a8, int32_t a9);
QBO_API int32_t QBO_CALLEE QN_ColorMixLine(int32_t a0, int32_t a1, int32_t a2);

/* ---- Masks ------------------------------------------------------------
 * An 8-bit mask is a plane of bytes, 0 transparent to 255 opaque, whose row
 * length is its width. Each export places a source rectangle whose corner
 * (srcX, srcY) lands at (x, y) of the destination and clips it to both
 * planes; negative corners shift both sides together. A call is rejected,
 * writing nothing, when a plane is NULL or empty (a width or height < 1),
 * when x >= dstWidth, y >= dstHeight, srcX >= srcWidth or srcY >= srcHeight,
 * or when nothing is left after clipping. Any int32 values are safe.
 *
 * QN_FillMaskColor: for each placed pixel of the 32-bit destination, alpha
 *   (byte 3) becomes alpha x m / 255 rounded to nearest even, m the mask
 *   byte; colour bytes are kept. The rectangle is the rest of the mask from
 *   (maskX, maskY). Returns 1 always.
 * QN_MixMask: d = d + s - (d x s + 255) / 256 (union of two coverages) over
 *   a width x height rectangle. Returns QBO_E_FAIL after mixing and 1 when
 *   rejected: hosts test these codes exactly as they are.
 * QN_SubMask: d = d > s ? d - s : 0 over a width x height rectangle.
 *   Returns 0 after subtracting and QBO_E_FAIL when rejected (the reverse
 *   sense of QN_MixMask, also kept for hosts).
 * The unnamed words of QN_MixMask and QN_SubMask are accepted and not read.
 */
QBO_API int32_t QBO_CALLEE QN_FillMaskColor(void* dst, int32_t x, int32_t y, int32_t dstWidth,
                                            int32_t dstHeight, const void* mask, int32_t maskX,
                                            int32_t maskY, int32_t maskWidth,
                                            int32_t maskHeight);
QBO_API int32_t QBO_CALLEE QN_MixMask(void* dst, int32_t x, int32_t y, int32_t width,
                                      int32_t height, int32_t dstWidth, int32_t dstHeight,
                                      const void* src, int32_t srcX, int32_t srcY,
                                      int32_t unused0, int32_t unused1, int32_t srcWidth,
                                      int32_t srcHeight);
QBO_API int32_t QBO_CALLEE QN_SubMask(void* dst, int32_t x, int32_t y, int32_t dstWidth,
                                      int32_t dstHeight, const void* src, int32_t srcX,
                                      int32_t srcY, int32_t srcWidth, int32_t srcHeight,
                                      int32_t width, int32_t height, int32_t unused);

/* ---- Block transfer, stretches, zooms, YUYV mean stretch --------------- */
/* The transfers and stretches take 16 arguments: dst, dstX, dstY, width,
 * height, dstWidth, dstHeight, src, srcX, srcY, srcRectWidth, srcRectHeight,
 * srcWidth, srcHeight, mode, field. Buffers are 32-bit pixels whose width is
 * also their row length; width x height is the destination rectangle,
 * srcRectWidth x srcRectHeight the source rectangle. Negative starts are
 * clipped away. mode: 0 = alpha over (byte 3 is alpha), 1 = copy, 2 = over
 * with the source alpha read as transparency. field: 0 = every row, 1 = even
 * destination rows, 2 = odd destination rows. Source and destination must
 * not overlap.
 *
 * QN_BitBlt: returns QBO_E_FAIL when src is NULL (tested first) or mode is
 *   not 0..2. When the rectangles differ in size it returns what
 *   QN_StretchBlt returns for the same arguments. Otherwise 1 when rows were
 *   transferred, 0 when nothing was (NULL dst, bad buffer sizes, rectangle
 *   outside a buffer or empty after clipping, bad field). With a field
 *   selected the start row moves down by one to the field's parity and the
 *   height is not reduced: the last row written (read) can be the one just
 *   below the clipped destination (source) rectangle. Leave one spare row
 *   below both rectangles when selecting a field.
 * QN_StretchBlt: bilinear. QBO_E_FAIL for a mode other than 0..2; modes 0
 *   and 1 with srcRectWidth or srcRectHeight below 2 are served by
 *   QN_StretchBlt_Mean. 1 when the transfer ran, 0 when a pointer is NULL, a
 *   size is not positive, a start lies outside its buffer, a rectangle ends
 *   before its buffer begins, or nothing is left after clipping. Clipping
 *   leaves nothing when a destination overhang moves the source start to
 *   or past the source buffer's edge, when a source overhang hides every
 *   destination column (row), or when a field moves the first row below
 *   the destination buffer. The last column (row) of a rectangle that stops
 *   short of the buffer's edge interpolates with the buffer's next column
 *   (row); a one-pixel-wide (one-row) buffer repeats its pixel instead.
 * QN_StretchBlt_Mean: area mean; the same results, but 0 for an unknown
 *   mode. With field 1 starting on an odd row, the rows written average the
 *   same source areas as in a full-frame stretch. An area that reaches past
 *   the source rectangle (a start with a fraction, rounding) reads the
 *   buffer's next column, or repeats its last one at the buffer's edge; no
 *   area reaches past the buffer.
 * The stretches return 0, writing nothing, when their scratch memory cannot
 * be had, and whenever they return 0 (or QBO_E_FAIL) nothing is written.
 * Scales are single-precision quotients of the unclipped rectangles; start
 * positions after an overhang come from those rounded values, so every
 * build and CPU gives the same pixels.
 */
QBO_API int32_t QBO_CALLEE QN_BitBlt(void* dst, int32_t dstX, int32_t dstY, int32_t width,
                                    int32_t height, int32_t dstWidth, int32_t dstHeight,
                                    const void* src, int32_t srcX, int32_t srcY,
                                    int32_t srcRectWidth, int32_t srcRectHeight,
                                    int32_t srcWidth, int32_t srcHeight, int32_t mode,
                                    int32_t field);
QBO_API int32_t QBO_CALLEE QN_StretchBlt(void* dst, int32_t dstX, int32_t dstY, int32_t width,
                                        int32_t height, int32_t dstWidth, int32_t dstHeight,
                                        const void* src, int32_t srcX, int32_t srcY,
                                        int32_t srcRectWidth, int32_t srcRectHeight,
                                        int32_t srcWidth, int32_t srcHeight, int32_t mode,
                                        int32_t field);
QBO_API int32_t QBO_CALLEE QN_StretchBlt_Mean(void* dst, int32_t dstX, int32_t dstY,
                                             int32_t width, int32_t height, int32_t dstWidth,
                                             int32_t dstHeight, const void* src, int32_t srcX,
                                             int32_t srcY, int32_t srcRectWidth,
                                             int32_t srcRectHeight, int32_t srcWidth,
                                             int32_t srcHeight, int32_t mode, int32_t field);

/* QN_CS_YUYV2BGRA_MeanStretch, QN_CS_YUYV2RGBA_MeanStretch: area-mean
 *   stretch of a YUYV rectangle into a 32-bit rectangle, converted on the
 *   way (B,G,R,255 or R,G,B,255). Arguments: dst, dstPitch (bytes), dstX,
 *   dstY, width, height, dstWidth, dstHeight, src, srcPitch (bytes), srcX,
 *   srcY, srcRectWidth, srcRectHeight, srcWidth, srcHeight, matrix (0 =
 *   BT.601, else BT.709), flip (non-zero: first row written at the bottom
 *   of the rectangle, rows going up). Returns 1 when the transfer ran, 0
 *   (nothing written) when a pointer is NULL or the clipping of
 *   QN_StretchBlt_Mean refuses the rectangles, for the same reasons.
 *   dstX and srcX displace by BYTES, not pixels: the destination row starts
 *   dstX bytes in, the source row (srcX rounded down to even) bytes in.
 *   Callers wanting pixel offsets pass 0 and offset the pointers
 *   themselves. A source row is read as ceil(srcWidth / 2) four-byte groups.
 */
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGRA_MeanStretch(
    void* dst, int32_t dstPitch, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
    int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcPitch, int32_t srcX,
    int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight, int32_t srcWidth,
    int32_t srcHeight, int32_t matrix, int32_t flip);
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGBA_MeanStretch(
    void* dst, int32_t dstPitch, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
    int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcPitch, int32_t srcX,
    int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight, int32_t srcWidth,
    int32_t srcHeight, int32_t matrix, int32_t flip);


/* Zooms
 * Bilinear resizing in single precision, sampling from position 0 of the
 * source at destination position 0 (no half-pixel centring). Samples past
 * the last source row or column count as 0, so the right and bottom edges
 * fade toward 0 where the position has a fraction. Both return 0 on
 * success and QBO_E_FAIL on an argument error, writing nothing then.
 *
 * QN_BufferZoom: resizes a whole 8-bit plane (width = row length in bytes)
 *   into another; the sum is taken in double precision and truncated.
 *   Rejected: a NULL pointer or any size 0. A negative dstHeight writes
 *   nothing and returns 0. A negative dstWidth, srcWidth or srcHeight has no
 *   meaning as a plane and is rejected like 0 (QBO_E_FAIL, nothing written).
 * QN_DwordBufferZoom: resizes the srcRectWidth x srcRectHeight rectangle at
 *   (srcX, srcY) onto the width x height rectangle at (dstX, dstY), four
 *   bytes of each 32-bit pixel alike (alpha included), rounded to nearest
 *   even. Rectangles are clipped to their buffers keeping the scale. A
 *   source rectangle overhanging the left edge moves the destination right
 *   and widens it, the added columns sampling past the source rectangle and
 *   coming out 0; overhanging the top it moves the destination down and
 *   makes it shorter. Rejected: srcX >= srcWidth, srcY >= srcHeight,
 *   dstX >= dstWidth, dstY >= dstHeight, any buffer or rectangle size < 1,
 *   a NULL pointer, nothing left after clipping, or a clipping step whose
 *   value leaves the 32-bit range.
 */
QBO_API int32_t QBO_CALLEE QN_BufferZoom(void* dst, int32_t dstWidth, int32_t dstHeight,
                                         const void* src, int32_t srcWidth, int32_t srcHeight);
QBO_API int32_t QBO_CALLEE QN_DwordBufferZoom(void* dst, int32_t dstX, int32_t dstY,
                                              int32_t width, int32_t height, int32_t dstWidth,
                                              int32_t dstHeight, const void* src, int32_t srcX,
                                              int32_t srcY, int32_t srcRectWidth,
                                              int32_t srcRectHeight, int32_t srcWidth,
                                              int32_t srcHeight);

/* ---- Resampling, blur, YUYV split, YUYV alpha mixing ------------------- */
/* Windowed-sinc resampling of 32-bit images (all four bytes filtered
 * alike), 4 taps (32 phases) or 8 taps (16 phases), separable, in Q12 fixed
 * point. These exports use the caller-pops convention.
 *
 * QN_Re4Sampling, QN_Re8Sampling: scale the whole image src (srcWidth x
 *   srcHeight, rows srcWidth pixels long) into dst (dstWidth x dstHeight).
 *   Return 1 when drawn and the temporary memory released; 0 when nothing
 *   was drawn (a NULL pointer, a size below 1, or no memory for the
 *   intermediate lines). On that memory failure QN_Re4Sampling also shows
 *   "VirtualAlloc alloc <a>*<b>*4 fail" with the intermediate image's
 *   sizes (srcWidth*dstHeight when scaling vertically first,
 *   srcHeight*dstWidth otherwise); QN_Re8Sampling shows nothing.
 *   Scaling by 1 reproduces lines shorter than 2048 pixels exactly.
 * QN_Re4SamplingEx, QN_Re8SamplingEx: scale the rectangle (srcX, srcY,
 *   srcRectWidth, srcRectHeight) of a srcWidth x srcHeight image into the
 *   rectangle (x, y, width, height) of a dstWidth x dstHeight image, rows as
 *   long as their image. The source rectangle is cut to its image and the
 *   destination rectangle to its image, taking away the source samples the
 *   cut hides. Return 1 when drawn and the temporary memory released; 0
 *   when fewer than 2 pixels remain on any side, a pointer is NULL or memory
 *   is short (nothing drawn). Quirk kept on purpose: when the image is
 *   scaled vertically first, taps below the source rectangle read on down
 *   to the source image's last row instead of repeating the rectangle's
 *   last row.
 */
QBO_API int32_t QBO_CALLER QN_Re4Sampling(void* dst, int32_t dstWidth, int32_t dstHeight,
                                          const void* src, int32_t srcWidth,
                                          int32_t srcHeight);
QBO_API int32_t QBO_CALLER QN_Re8Sampling(void* dst, int32_t dstWidth, int32_t dstHeight,
                                          const void* src, int32_t srcWidth,
                                          int32_t srcHeight);
QBO_API int32_t QBO_CALLER QN_Re4SamplingEx(void* dst, int32_t x, int32_t y, int32_t width,
                                            int32_t height, int32_t dstWidth,
                                            int32_t dstHeight, const void* src, int32_t srcX,
                                            int32_t srcY, int32_t srcRectWidth,
                                            int32_t srcRectHeight, int32_t srcWidth,
                                            int32_t srcHeight);
QBO_API int32_t QBO_CALLER QN_Re8SamplingEx(void* dst, int32_t x, int32_t y, int32_t width,
                                            int32_t height, int32_t dstWidth,
                                            int32_t dstHeight, const void* src, int32_t srcX,
                                            int32_t srcY, int32_t srcRectWidth,
                                            int32_t srcRectHeight, int32_t srcWidth,
                                            int32_t srcHeight);

/* The frame descriptor QN_ReSampling hands to the VelaVid module's
 * ResampleFrame entry: sixteen machine words.
 *   pixels          the frame's first byte
 *   row_bytes       distance between two lines of one field: the line
 *                   length (header word at byte 24, or the width when that
 *                   word is 0) x bits per pixel / 8, times the field count
 *   width           pixels a line
 *   height          lines a field: the header height (rounded up to a
 *                   multiple of 4 for the planar formats 8 and 9) divided
 *                   by the field count
 *   bits_per_pixel  from the header
 *   format          0 RGB 32-bit, 3 RGB 24-bit, 6 YUY2, 7 UYVY, 8 YUV8
 *                   planar, 9 YUV6 planar
 *   field_count     2 when both frames are at least 480 lines high, else 1
 *   aspect_class    1 for 4:3 (within 0.0001), 0 for 16:9, otherwise 1
 *                   below 1080 lines and 0 from 1080 lines
 *   below_1080      1 when the frame is less than 1080 lines high
 *   buffer_lines    the header word at byte 28, passed on as is
 *   reserved        0
 */
typedef struct QN_FrameDescriptor {
  void* pixels;
  intptr_t row_bytes;
  intptr_t width;
  intptr_t height;
  intptr_t bits_per_pixel;
  intptr_t format;
  intptr_t field_count;
  intptr_t aspect_class;
  intptr_t below_1080;
  intptr_t buffer_lines;
  intptr_t reserved[6];
} QN_FrameDescriptor;

/* QN_ReSampling: hands two frames (bitmap-information header and pixels
 * each) to the VelaVid module's ResampleFrame entry, frame B's descriptor
 * first as the source and frame A's second as the destination: the module
 * scales the picture of B into A. The library has no code of its own for
 * it; the VelaVid module built with the library serves formats 0, 3, 6
 * and 7 (not the planar 8 and 9), scales each field on its own when both
 * frames are at least 480 lines high, and pillarboxes a 4:3 picture in a
 * 16:9 frame (letterboxes the reverse) with black, centred. Headers: width at byte 4, height at byte 8, bits per pixel
 * (16-bit) at byte 14, compression code at byte 16, line length at byte 24,
 * buffer lines at byte 28. Header A's compression selects the format of both
 * frames: 0 (24 bits gives 3, else 0), "YUY2", "UYVY", "YUV8", "YUV6".
 * Returns 1 or 0 as the module reports; 0 at once for any other
 * compression code or when VelaVid or its entry is missing.
 */
QBO_API int32_t QBO_CALLER QN_ReSampling(const void* headerA, void* pixelsA,
                                         const void* headerB, void* pixelsB);


/* QN_VerticalBlur: smooths a 32-bit image (rows `width` pixels long) in
 *   place with the 3-row filter weights[0] (row above), weights[1] (row),
 *   weights[2] (row below), scaled to Q14 by their sum; the first and last
 *   rows use their inner neighbour on both sides. Each result byte keeps the
 *   low 8 bits of its sum, so negative weights can wrap. Returns buffer;
 *   the image is left unchanged for a NULL pointer, width < 1, height < 2,
 *   weights summing to 0, or no memory for the two-row temporary.
 * QN_CS_YUYVSplit: de-interleaves `count` YUYV pixels into count luma bytes
 *   and count / 2 bytes each of U and V; an odd last pixel is not read.
 *   Returns the number of pixels split (count rounded down to even, 0 when
 *   count < 2 or a pointer is NULL).
 * QN_Yuyv_Alpha_Mixin: lays the YUYV image src (with the optional alpha
 *   plane srcAlpha) over the rectangle (x, y, width, height) of dst (with
 *   the optional alpha plane dstAlpha); pitches in bytes. Position and size
 *   are clipped as unsigned values against dstWidth/dstHeight (a negative x
 *   or y draws nothing). The source is read from its first pixel. Without
 *   srcAlpha the rows are copied and covered dstAlpha bytes are set to 1
 *   (not 255). With srcAlpha only, bytes move by floor(s*a/256) -
 *   floor(d*a/256). With both, the destination moves toward the source by
 *   the alpha-over share / 65536, i.e. half-way for an opaque source, and
 *   its alpha becomes da + sa - floor(da*sa/256). An odd last pixel of a row
 *   is left unchanged. The two words after srcAlphaPitch are ignored.
 *   Returns the clipped width.
 */
QBO_API void* QBO_CALLEE QN_VerticalBlur(void* buffer, int32_t width, int32_t height,
                                         const int32_t* weights);
QBO_API int32_t QBO_CALLEE QN_CS_YUYVSplit(uint8_t* y, uint8_t* u, uint8_t* v,
                                           const uint8_t* src, int32_t count);
QBO_API int32_t QBO_CALLEE QN_Yuyv_Alpha_Mixin(
    uint8_t* dst, int32_t dstPitch, uint8_t* dstAlpha, int32_t dstAlphaPitch, int32_t dstWidth,
    int32_t dstHeight, const uint8_t* src, int32_t srcPitch, const uint8_t* srcAlpha,
    int32_t srcAlphaPitch, int32_t reserved0, int32_t reserved1, int32_t x, int32_t y,
    int32_t width, int32_t height);

/* ---- Fields, frames and 4:2:0 <-> 4:2:2 layouts ------------------------- */
/* No argument of these exports is checked and none reports anything; they
 * return nothing. Widths are in pixels, heights in rows of the frame, and
 * every pitch is a signed byte distance between row starts (negative
 * pitches walk a plane upwards). A width of 0 or less writes nothing.
 *
 * Interlace: the top field is frame rows 0, 2, 4, ..., the bottom field
 * rows 1, 3, 5, ...; a field buffer holds its rows consecutively.
 *
 * QN_CS_ComposeFields / QN_CS_SplitFrame: move width x bytesPerPixel bytes
 *   a row between a frame and its two fields, for height / 2 row pairs. An
 *   odd last frame row is neither read nor written.
 * QN_CS_ComposeYUV422_Frame: planar 4:2:2 (chroma planes width / 2 wide)
 *   to one YUYV frame. With an odd width the last pixel's two bytes keep
 *   what they held.
 * QN_CS_ComposeYUV422_Split: the same into two YUYV field buffers. With an
 *   odd height both fields get height / 2 + 1 rows: the last plane row
 *   fills the top field's last row, which is copied (2 x width bytes)
 *   into the bottom field's last row.
 *
 * QN_CS_420_422_*: interlaced planar 4:2:0 (chroma planes width / 2 by
 *   height / 2; plane rows 0, 2, ... carry the top field's chroma, rows
 *   1, 3, ... the bottom field's) to YUYV, chroma interpolated within each
 *   field: quarters in both fields, or XDCAM eighths that differ per field.
 *   2 x (height / 2) rows are written; an odd last frame row is untouched.
 *   No chroma row past height / 2 is read: a field reference past the
 *   field's own last chroma row takes that last row (with height / 2 odd
 *   the bottom field's last output rows use its second-to-last field
 *   chroma row for the missing last one). Short pictures (height below 6)
 *   follow the same clamp; the bottom field of a 2- or 3-row picture,
 *   which has no chroma row of its own, uses plane row 0.
 *   Height exactly 576: after the conversion the last picture row (Frame:
 *   frame row 575; Split: bottom field row 287) is overwritten with YUYV
 *   black (16, 128, 16, 128 ...) over |pitch| bytes rounded down to a
 *   multiple of 4, the padding included.
 *   QN_CS_420_422_YUVSplit hands the whole call to the VelaVid acceleration
 *   module when it provides its 4:2:0-to-4:2:2 entry.
 *
 * QN_CS_422_420_*: YUYV to planar 4:2:0. Y is copied row for row (an odd
 *   width's last pixel is not written). Chroma is decimated vertically:
 *   Field forms treat the source as one field; Frame forms decimate each
 *   field of an interlaced frame on its own (chroma rows 0, 2, ... from the
 *   top field, 1, 3, ... from the bottom field).
 *   Field: rows 2k, 2k + 1 average into chroma row k; an odd last row keeps
 *     its chroma ((height + 1) / 2 chroma rows).
 *   Frame: each group of 4 rows gives chroma rows 2m (top pair) and
 *     2m + 1 (bottom pair). A remainder of 3 rows mixes the top pair and
 *     keeps the middle row's chroma; 2 rows keep both chromas; a single
 *     last row is dropped, its Y row included. Chroma planes therefore
 *     need 2 x ((height / 2 + 1) / 2) rows. Heights below 4 follow the
 *     same remainder rules.
 *   XDCAM: 3:1 weights toward the top field's upper row or the bottom
 *     field's lower row (Field_XDCAM: topField non-zero for a top field).
 *     The trailing 2-pixel group of a row (width & 2 set) is shifted by
 *     one bit less, so its chroma comes out doubled, saturated at 255.
 *   _4: 4-tap (-a + 3b + 3c - d + 2) >> 2 per field (edge rows repeated);
 *     sums are 16-bit and shifted logically, so a negative sum saturates to
 *     255, not 0. A field with an odd row count ends with (3b - a + 1) >> 1,
 *     and its last Y row then receives the chroma bytes of the row above,
 *     each followed by 0, instead of luma. Frame_4 drops an odd last frame
 *     row. Fewer than 3 rows a field (Field_4: height < 3; Frame_4:
 *     height < 6) write nothing.
 */
QBO_API void QBO_CALLEE QN_CS_ComposeFields(void* dst, int32_t dstPitch, const void* top,
                                            int32_t topPitch, const void* bottom,
                                            int32_t bottomPitch, int32_t width, int32_t height,
                                            int32_t bytesPerPixel);
QBO_API void QBO_CALLEE QN_CS_SplitFrame(void* top, int32_t topPitch, void* bottom,
                                         int32_t bottomPitch, const void* frame,
                                         int32_t framePitch, int32_t width, int32_t height,
                                         int32_t bytesPerPixel);
QBO_API void QBO_CALLEE QN_CS_ComposeYUV422_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                  int32_t yPitch, const void* srcU,
                                                  int32_t uPitch, const void* srcV,
                                                  int32_t vPitch, int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_ComposeYUV422_Split(void* dstTop, int32_t topPitch,
                                                  void* dstBottom, int32_t bottomPitch,
                                                  const void* srcY, int32_t yPitch,
                                                  const void* srcU, int32_t uPitch,
                                                  const void* srcV, int32_t vPitch,
                                                  int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_420_422_YUVFrame(void* dst, int32_t dstPitch, const void* srcY,
                                               int32_t yPitch, const void* srcU, int32_t uPitch,
                                               const void* srcV, int32_t vPitch, int32_t width,
                                               int32_t height);
QBO_API void QBO_CALLEE QN_CS_420_422_YUVSplit(void* dstTop, int32_t topPitch, void* dstBottom,
                                               int32_t bottomPitch, const void* srcY,
                                               int32_t yPitch, const void* srcU, int32_t uPitch,
                                               const void* srcV, int32_t vPitch, int32_t width,
                                               int32_t height);
QBO_API void QBO_CALLEE QN_CS_420_422_YUVFrame_XDCAM(void* dst, int32_t dstPitch,
                                                     const void* srcY, int32_t yPitch,
                                                     const void* srcU, int32_t uPitch,
                                                     const void* srcV, int32_t vPitch,
                                                     int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_420_422_YUVSplit_XDCAM(void* dstTop, int32_t topPitch,
                                                     void* dstBottom, int32_t bottomPitch,
                                                     const void* srcY, int32_t yPitch,
                                                     const void* srcU, int32_t uPitch,
                                                     const void* srcV, int32_t vPitch,
                                                     int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVField(void* dstY, int32_t yPitch, void* dstU,
                                               int32_t uPitch, void* dstV, int32_t vPitch,
                                               const void* src, int32_t srcPitch, int32_t width,
                                               int32_t height);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame(void* dstY, int32_t yPitch, void* dstU,
                                               int32_t uPitch, void* dstV, int32_t vPitch,
                                               const void* src, int32_t srcPitch, int32_t width,
                                               int32_t height);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVField_4(void* dstY, int32_t yPitch, void* dstU,
                                                 int32_t uPitch, void* dstV, int32_t vPitch,
                                                 const void* src, int32_t srcPitch,
                                                 int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame_4(void* dstY, int32_t yPitch, void* dstU,
                                                 int32_t uPitch, void* dstV, int32_t vPitch,
                                                 const void* src, int32_t srcPitch,
                                                 int32_t width, int32_t height);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVField_XDCAM(void* dstY, int32_t yPitch, void* dstU,
                                                     int32_t uPitch, void* dstV, int32_t vPitch,
                                                     const void* src, int32_t srcPitch,
                                                     int32_t width, int32_t height,
                                                     int32_t topField);
QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame_XDCAM(void* dstY, int32_t yPitch, void* dstU,
                                                     int32_t uPitch, void* dstV, int32_t vPitch,
                                                     const void* src, int32_t srcPitch,
                                                     int32_t width, int32_t height);


/* ---- Colour-space conversion and matrices ------------------------------ */

/* -- Planar YUV to 32-bit --
 * Planar 4:2:2 (chroma planes height rows) or interlaced 4:2:0 (chroma
 * planes height / 2 rows; plane rows 0, 2, ... the top field's chroma,
 * 1, 3, ... the bottom field's) to opaque RGBA / BGRA (alpha 255). No
 * argument is checked; nothing is returned. `bt709` non-zero selects
 * BT.709, zero BT.601 (full range). `flip` non-zero writes each
 * destination bottom-up. `width`, `height` are the whole frame's.
 * Chroma rows hold one sample per pixel pair: pixel 2k takes sample k,
 * pixel 2k + 1 the mean of samples k and k + 1, the last pair's odd pixel
 * sample k alone. Exactly `width` pixels are written; an odd width's last
 * pixel has a sample of its own, so chroma rows then hold (width + 1) / 2
 * samples.
 * _Frame: row i of the frame from luma row i. 4:2:2 _Split: luma rows 2j
 *   and 2j + 1 to row j of dst0 and dst1 (height / 2 rows each; an odd last
 *   row is not converted). 4:2:0 _Split: the top field (luma rows 0, 2, ...)
 *   to dst0, the bottom field to dst1.
 * 4:2:0 chroma is interpolated within each field exactly as
 *   QN_CS_420_422_YUVFrame does (quarters, the same first, middle and last
 *   rows, no chroma row past height / 2 read, short pictures clamped), but
 *   without its 576-line blackening. 2 x (height / 2) rows are written; an
 *   odd last frame row is untouched. Each call takes four chroma rows of
 *   scratch memory; if that allocation fails nothing is written.
 */
QBO_API void QBO_CALLEE QN_CS_YUV422_RGBA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV422_BGRA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV422_RGBA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV422_BGRA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV420_RGBA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV420_BGRA_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV420_RGBA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUV420_BGRA_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                                int32_t dstPitch1, const void* srcY,
                                                int32_t yPitch, const void* srcU, int32_t uPitch,
                                                const void* srcV, int32_t vPitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);

/* Matrices: 16 floats, 4 x 4 row by row, row r = output component r from
 * input components (R, G, B, A) or (Y, U, V, A); U and V centred on zero,
 * no offsets. `standard`: 1 = BT.709, 2 = BT.601 (both full range).
 * QN_CS_GetMatYUVA2RGBA / QN_CS_GetMatRGBA2YUVA: pointer to the library's
 *   constant matrix (same pointer on every call; never write or free it),
 *   or NULL for any other standard.
 * ..._Cell(row, column, standard): the float at row * 4 + column, 0.0 for
 *   any other standard. Rows and columns must be 0..3; others read 0.0.
 * QN_CS_GetMatLUVA2RGBA: a third YUVA-to-RGBA matrix, no selector. */
QBO_API const float* QBO_CALLEE QN_CS_GetMatYUVA2RGBA(int32_t standard);
QBO_API float QBO_CALLEE QN_CS_GetMatYUVA2RGBA_Cell(int32_t row, int32_t column,
                                                    int32_t standard);
QBO_API const float* QBO_CALLEE QN_CS_GetMatRGBA2YUVA(int32_t standard);
QBO_API float QBO_CALLEE QN_CS_GetMatRGBA2YUVA_Cell(int32_t row, int32_t column,
                                                    int32_t standard);
QBO_API const float* QBO_CALLEE QN_CS_GetMatLUVA2RGBA(void);

/* YUYV to opaque 32-bit RGBA / BGRA (alpha 255) and to 24-bit pixels.
 * `bt709` non-zero selects BT.709, zero BT.601 (full range). `flip`
 * non-zero writes the destination bottom-up; the source is always read
 * top-down. `width`, `height` are those of the destination.
 * Chroma: the odd pixel of a pair takes the mean of its pair's and the
 * next pair's chroma; the last pair of a row uses its own.
 * An odd width converts the whole last pair: it reads 2 * (width + 1)
 * source bytes and writes one pixel more than `width`.
 * Width or height below 1 writes nothing. No argument is checked.
 * Frame forms return 1, except that QN_CS_YUYV2BGRA_Frame first hands the
 * whole job to the VelaVid acceleration module when that provides it, and
 * then returns the module's result instead (same pixels).
 * Compose: destination rows 0, 2, 4, ... from field0 rows 0, 1, 2, ...,
 *   rows 1, 3, 5, ... from field1; `height` counts the whole frame (field0
 *   gives ceil(height / 2) rows, field1 floor(height / 2)).
 * QN_CS_YUYV2RGB_Frame writes 3 bytes a pixel, R, G, B.
 * QN_CS_YUYV2BGR_Frame writes exactly the same bytes, R, G, B, not B, G, R:
 *   swap bytes 0 and 2 yourself if you need BGR. */
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGBA_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                 int32_t src_pitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip);
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGRA_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                 int32_t src_pitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUYV2RGBA_Compose(void* dst, int32_t dst_pitch, const void* field0,
                                                int32_t field0_pitch, const void* field1,
                                                int32_t field1_pitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_YUYV2BGRA_Compose(void* dst, int32_t dst_pitch, const void* field0,
                                                int32_t field0_pitch, const void* field1,
                                                int32_t field1_pitch, int32_t width,
                                                int32_t height, int32_t bt709, int32_t flip);
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGB_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                int32_t src_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip);
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGR_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                int32_t src_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip);

/* 24-bit to 32-bit: the three source bytes are copied unchanged (the colour
 * order is kept) and byte 3 is alpha: alpha[i] of the row's alpha line when
 * `alpha` is not NULL, else 255. `flip` reads the source bottom-up,
 * `alpha_flip` the alpha plane, independently; destinations are written
 * top-down. Width or height below 1 writes nothing.
 * QN_CS_24_to_32_Split: source rows 2k and 2k + 1 go to row k of dst0 and
 *   dst1 (the alpha plane advances with the source). With an odd height the
 *   last row goes to dst0 and is copied whole into dst1: min(|dst_pitch0|,
 *   |dst_pitch1|) bytes, padding included. When the VelaVid acceleration
 *   module provides this conversion it does the whole job and the alpha
 *   plane is NOT used (alpha is 255). */
QBO_API void QBO_CALLEE QN_CS_24_to_32_Frame(void* dst, int32_t dst_pitch, const void* src,
                                             int32_t src_pitch, const void* alpha,
                                             int32_t alpha_pitch, int32_t width, int32_t height,
                                             int32_t flip, int32_t alpha_flip);
QBO_API void QBO_CALLEE ZQCS_24_to_32_Frame(void* dst, int32_t dst_pitch, const void* src,
                                            int32_t src_pitch, const void* alpha,
                                            int32_t alpha_pitch, int32_t width, int32_t height,
                                            int32_t flip, int32_t alpha_flip);
/* QBO_ALIAS_OF(QN_CS_24_to_32_Frame) */
QBO_API void QBO_CALLEE QN_CS_24_to_32_Split(void* dst0, int32_t dst_pitch0, void* dst1,
                                             int32_t dst_pitch1, const void* src,
                                             int32_t src_pitch, const void* alpha,
                                             int32_t alpha_pitch, int32_t width, int32_t height,
                                             int32_t flip, int32_t alpha_flip);
/* RGB to YUYV
 * 32-bit RGBA or BGRA, or packed 24-bit RGB or BGR, to YUYV (Y0 U Y1 V per
 * pair of pixels), full range: black gives Y 0, white Y 255, greys U and V
 * 128. `bt709` non-zero selects BT.709, zero BT.601. `flip` non-zero reads
 * the source bottom-up (destination row 0 from the last source row); the
 * destination is always written top-down. Pitches are signed byte
 * distances. A pair takes U and V from its first pixel alone.
 * A width or height of 0 or less writes nothing. No argument is checked
 * and no memory is taken.
 *
 * Row tails (32-bit sources): an odd width writes one whole group for the
 * last pixel, Y U Y V with its luma twice, so a row writes 2 * width bytes
 * rounded up to a multiple of 4. In BGRA order with BT.601, the U of the
 * last pair or single pixel of a row whose width is not a multiple of 4 is
 * always 128.
 *
 * YUYVA forms also write byte 3 of every pixel to the alpha plane. With an
 * odd width the last alpha byte is (A | byte 2 of that pixel), and the
 * byte after it is set to 0: the alpha row takes width + 1 bytes.
 *
 * Split forms write source rows 0, 2, 4, ... to the first field and 1, 3,
 * 5, ... to the second (rows counted from the bottom when flipped). With an
 * odd height the last row goes to the first field and is then copied into
 * the second as min(|dstPitch0|, |dstPitch1|) bytes (padding included),
 * and its alpha row as min(|alphaPitch0|, |alphaPitch1|) bytes.
 *
 * QN_CS_RGBA2YUYV_Frame and QN_CS_BGRA2YUYV_Frame return 0.
 * QN_RGB32_2_YUV16_AA_Frame: RGBA, or BGRA when the low byte of isBgra is
 *   non-zero; BT.709 when width >= 1440, BT.601 below; the low byte of
 *   `flip` counts; `reserved` has no effect.
 *
 * 24-bit forms (QN_CS_RGB2YUYV_*, QN_CS_BGR2YUYV_*): the count of
 *   four-pixel groups is taken from the source pitch, g =
 *   (|srcPitch| - 4) / 12 rounded toward zero, not from the width; then,
 *   with r = width - 4g: if r has bit 2 set (r = 4..7, or a negative r
 *   with that bit) one more group; if r is 3 one more group, which reads 3
 *   bytes past the row's last pixel; if r is 2 a pair; if r is 1 a single
 *   pixel. So with srcPitch = 3 * width rounded up to a multiple of 4 every
 *   pixel converts; with srcPitch exactly 3 * width a width of 4m + 1 leaves
 *   its last pixel unwritten; a larger pitch converts more groups than the
 *   width holds, reading and writing past the row.
 */
QBO_API int32_t QBO_CALLEE QN_CS_RGBA2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                                 int32_t srcPitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip);
QBO_API int32_t QBO_CALLEE QN_CS_BGRA2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                                 int32_t srcPitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_RGBA2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                              int32_t dstPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_BGRA2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                              int32_t dstPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_RGBA2YUYVA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                               int32_t alphaPitch, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_BGRA2YUYVA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                               int32_t alphaPitch, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_RGBA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                               int32_t alphaPitch0, void* dst1,
                                               int32_t dstPitch1, void* alpha1,
                                               int32_t alphaPitch1, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QNCS_RGBA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                              int32_t alphaPitch0, void* dst1, int32_t dstPitch1,
                                              void* alpha1, int32_t alphaPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip);
/* QBO_ALIAS_OF(QN_CS_RGBA2YUYVA_Split) */
QBO_API void QBO_CALLEE QN_CS_BGRA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                               int32_t alphaPitch0, void* dst1,
                                               int32_t dstPitch1, void* alpha1,
                                               int32_t alphaPitch1, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_RGB32_2_YUV16_AA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                                  int32_t alphaPitch, const void* src,
                                                  int32_t srcPitch, int32_t width,
                                                  int32_t height, int32_t reserved,
                                                  int32_t isBgra, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_RGB2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                             int32_t srcPitch, int32_t width, int32_t height,
                                             int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_BGR2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                             int32_t srcPitch, int32_t width, int32_t height,
                                             int32_t bt709, int32_t flip);
QBO_API void QBO_CALLEE QN_CS_RGB2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                             int32_t dstPitch1, const void* src, int32_t srcPitch,
                                             int32_t width, int32_t height, int32_t bt709,
                                             int32_t flip);
QBO_API void QBO_CALLEE QN_CS_BGR2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                             int32_t dstPitch1, const void* src, int32_t srcPitch,
                                             int32_t width, int32_t height, int32_t bt709,
                                             int32_t flip);

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_BUFFER_OPERA_U_H_ */
