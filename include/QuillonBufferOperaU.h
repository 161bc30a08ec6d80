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

/* ---- Fields, frames and 4:2:0 <-> 4:2:2 layouts ------------------------- */

/* ---- Colour-space conversion and matrices ------------------------------ */

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_BUFFER_OPERA_U_H_ */
