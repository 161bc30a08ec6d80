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

#ifdef __cplusplus
}
#endif

#endif /* QUILLON_BUFFER_OPERA_U_H_ */
