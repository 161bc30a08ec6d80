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
 *   size is not positive, a start lies outside its buffer or nothing is
 *   left after clipping. The last column (row) of a rectangle that stops
 *   short of the buffer's edge interpolates with the buffer's next column
 *   (row); a one-pixel-wide (one-row) buffer repeats its pixel instead.
 * QN_StretchBlt_Mean: area mean; the same results, but 0 for an unknown
 *   mode. With field 1 starting on an odd row, the rows written average the
 *   same source areas as in a full-frame stretch. An area that reaches past
 *   the source rectangle (a start with a fraction, rounding) reads the
 *   buffer's next column, or repeats its last one at the buffer's edge; no
 *   area reaches past the buffer.
 * The stretches return 0, writing nothing, when their scratch memory cannot
 * be had.
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
 *   when a pointer is NULL or the clipping leaves nothing.
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


/* ---- Resampling, blur, YUYV split, YUYV alpha mixing ------------------- */

/* ---- Fields, frames and 4:2:0 <-> 4:2:2 layouts ------------------------- */

/* ---- Colour-space conversion and matrices ------------------------------ */

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_BUFFER_OPERA_U_H_ */
