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

/* ---- Masks ------------------------------------------------------------ */

/* ---- Block transfer, stretches, zooms, YUYV mean stretch --------------- */

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

/* QN_ReSampling: resamples frame A (bitmap-information header and pixels)
 * into frame B through the VelaVid module; the library has no code of its
 * own for it. Headers: width at byte 4, height at byte 8, bits per pixel
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

/* ---- Colour-space conversion and matrices ------------------------------ */

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_BUFFER_OPERA_U_H_ */
