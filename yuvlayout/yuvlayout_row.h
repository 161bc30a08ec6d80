// Rows of the field/frame moves and the 4:2:0 <-> 4:2:2 chroma layouts.
//
// Contracts (every level writes identical bytes; `_SSE2` / `_AVX2` rows take
// whole vectors only, `_Any_` rows any width; no alignment is required; no
// destination may overlap a source)
//
//   InterleaveYuyvRow(dst, y, u, v, width)
//     dst[4j..4j+3] = y[2j], u[j], y[2j+1], v[j] for j < width / 2. Reads
//     width & ~1 luma and width / 2 chroma bytes, writes 2 x (width & ~1)
//     bytes: an odd last pixel is left as it was.
//     SSE2 width % 16 == 0, AVX2 width % 32 == 0.
//
//   BlendChromaRow(dst, a, b, count, w)
//     dst[i] = (w->wa * a[i] + w->wb * b[i] + 4) >> 3 for i < count. The
//     weights are eighths (wa + wb == 8), so the result never needs a clamp;
//     quarter rules are the same fractions in eighths:
//     (p + 3c + 2) >> 2 == (2p + 6c + 4) >> 3 for all bytes p, c.
//     SSE2 count % 16 == 0, AVX2 count % 32 == 0.
//
//   Yuv420ToYuyvRow(dst, y, ua, ub, va, vb, width, w)
//     A row of the 4:2:0 to YUYV conversion whose chroma mixes two chroma
//     rows: InterleaveYuyvRow of y with
//     u[j] = (w->wa * ua[j] + w->wb * ub[j] + 4) >> 3 and v likewise.
//     SSE2 width % 16 == 0, AVX2 width % 32 == 0, AVX512 width % 64 == 0.
//
//   YuyvToLumaRow(dst_y, src, width)
//     dst_y[i] = src[2i] for i < (width & ~1): the odd last pixel is not
//     written. SSE2 width % 16 == 0, AVX2 width % 32 == 0.
//
//   YuyvToChromaRow(dst_u, dst_v, a, b, c, d, width, taps)
//     For pair j < width / 2 and each of U (byte 4j + 1) and V (byte 4j + 3)
//       s = ta*a + tb*b + tc*c + td*d + round   (16-bit, wrapping)
//       out = min(255, s >> shift)              (logical shift)
//     A negative sum wraps to a large number and so saturates to 255, as
//     the 4-tap filter requires. The pair that forms the row's trailing
//     2-pixel group (width & 2 set, j == width / 2 - 1) shifts by
//     `pair_shift` instead: the XDCAM filters shift that pair by 1. Both
//     shifts are at least 1, so a shifted sum fits a signed 16-bit lane.
//     Reads 2 x (width & ~1) bytes of each of a, b, c, d (rows whose tap is
//     0 are read too; pass any valid row). SSE2 width % 16 == 0, AVX2
//     width % 32 == 0 (multiples of 8, so a SIMD row never holds the
//     trailing 2-pixel group).
//
//   YuyvChromaIntoLumaRow_C(dst_y, a, width)
//     The Y row that the 4-tap filter fills with chroma when a field has an
//     odd number of rows: pixels go in groups of 8, then 4 and 2 by the
//     bits of width % 8, and a group starting at pixel g of n pixels gets
//     the first n / 2 chroma bytes of its own pixels of row `a`, each
//     followed by a 0: dst_y[g + 2m] = a[2g + 2m + 1], dst_y[g + 2m + 1] = 0.
//     An odd last pixel is not written. Reference only: it runs once per
//     picture at most.
#ifndef QBO_YUVLAYOUT_YUVLAYOUT_ROW_H_
#define QBO_YUVLAYOUT_YUVLAYOUT_ROW_H_

#include <cstdint>

namespace qbo {

struct ChromaBlend {
  uint16_t wa, wb;  // eighths, wa + wb == 8
  // The frame streams its rows past the cache: Yuv420ToYuyvRow uses
  // streaming stores where dst is aligned to its store width (the other
  // rows ignore it). The bytes are the same either way.
  bool stream = false;
};

struct ChromaTaps {
  int16_t ta, tb, tc, td;
  uint16_t round;
  uint16_t shift;       // >= 1
  uint16_t pair_shift;  // >= 1; the trailing 2-pixel group's shift
};

// The two-row average (b + c + 1) >> 1, written as quarters.
inline bool IsAverage(const ChromaTaps& t) {
  return t.ta == 0 && t.tb == 2 && t.tc == 2 && t.td == 0 && t.round == 2 && t.shift == 2;
}

// (2, 6) or (6, 2): the quarter rules (p + 3c + 2) >> 2 in eighths.
inline bool IsQuarterMix(const ChromaBlend& w) {
  return (w.wa == 2 && w.wb == 6) || (w.wa == 6 && w.wb == 2);
}

using InterleaveYuyvRowFn = void (*)(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                     const uint8_t* v, int width);
using BlendChromaRowFn = void (*)(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                                  const ChromaBlend* w);
using Yuv420ToYuyvRowFn = void (*)(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                                   const uint8_t* ub, const uint8_t* va, const uint8_t* vb,
                                   int width, const ChromaBlend* w);
using YuyvToLumaRowFn = void (*)(uint8_t* dst_y, const uint8_t* src, int width);
using YuyvToChromaRowFn = void (*)(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a,
                                   const uint8_t* b, const uint8_t* c, const uint8_t* d,
                                   int width, const ChromaTaps* taps);

#define QBO_YUVLAYOUT_ROWS(level)                                                              \
  void InterleaveYuyvRow_##level(uint8_t* dst, const uint8_t* y, const uint8_t* u,            \
                                 const uint8_t* v, int width);                                 \
  void BlendChromaRow_##level(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,    \
                              const ChromaBlend* w);                                           \
  void Yuv420ToYuyvRow_##level(uint8_t* dst, const uint8_t* y, const uint8_t* ua,            \
                               const uint8_t* ub, const uint8_t* va, const uint8_t* vb,       \
                               int width, const ChromaBlend* w);                              \
  void YuyvToLumaRow_##level(uint8_t* dst_y, const uint8_t* src, int width);                  \
  void YuyvToChromaRow_##level(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a,              \
                               const uint8_t* b, const uint8_t* c, const uint8_t* d,          \
                               int width, const ChromaTaps* taps)

QBO_YUVLAYOUT_ROWS(C);
QBO_YUVLAYOUT_ROWS(SSE2);
QBO_YUVLAYOUT_ROWS(Any_SSE2);
QBO_YUVLAYOUT_ROWS(AVX2);
QBO_YUVLAYOUT_ROWS(Any_AVX2);

#undef QBO_YUVLAYOUT_ROWS

void Yuv420ToYuyvRow_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                            const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w);
void Yuv420ToYuyvRow_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                                const uint8_t* ub, const uint8_t* va, const uint8_t* vb,
                                int width, const ChromaBlend* w);

void YuyvChromaIntoLumaRow_C(uint8_t* dst_y, const uint8_t* a, int width);

}  // namespace qbo

#endif  // QBO_YUVLAYOUT_YUVLAYOUT_ROW_H_
