// SSE2 resampling rows. A tap product is pmulhw(s << 7, w): the high half of
// the signed 16 x 16 product is exactly (s * 128 * w) >> 16, and paddw wraps
// like the reference's 16-bit sum. Pixels are widened to four 16-bit lanes,
// so one register holds two pixels (lanes ch0..ch3 of each).
#include <emmintrin.h>

#include "filter/resample_row.h"
#include "filter/resample_row_any.h"

namespace qbo {
namespace {

inline __m128i Widen7Lo(__m128i x) {
  return _mm_slli_epi16(_mm_unpacklo_epi8(x, _mm_setzero_si128()), 7);
}
inline __m128i Widen7Hi(__m128i x) {
  return _mm_slli_epi16(_mm_unpackhi_epi8(x, _mm_setzero_si128()), 7);
}
inline __m128i Load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

// Four taps of one output: [p0*w0 + p2*w2 | p1*w1 + p3*w3], four channels a half.
inline __m128i Taps4(const uint8_t* s, const int16_t* w) {
  const __m128i x = Load(s);
  return _mm_add_epi16(_mm_mulhi_epi16(Widen7Lo(x), Load(w)),
                       _mm_mulhi_epi16(Widen7Hi(x), Load(w + 8)));
}
inline __m128i Taps8(const uint8_t* s, const int16_t* w) {
  return _mm_add_epi16(Taps4(s, w), Taps4(s + 16, w + 16));
}

// [a.lo + a.hi | b.lo + b.hi]: the full sums of outputs a and b.
inline __m128i Pair(__m128i a, __m128i b) {
  return _mm_add_epi16(_mm_unpacklo_epi64(a, b), _mm_unpackhi_epi64(a, b));
}
inline __m128i Finish(__m128i sum) {
  return _mm_srai_epi16(_mm_add_epi16(sum, _mm_set1_epi16(4)), 3);
}

template <int kTaps>
__attribute__((always_inline)) inline void Block4(uint8_t* dst, const uint8_t* src, int64_t j, const ResampleLineParams* p) {
  __m128i r[4];
  for (int i = 0; i < 4; ++i) {
    const TapSite site = SiteOf(src, j + i, p);
    r[i] = kTaps == 4 ? Taps4(site.first, site.lanes) : Taps8(site.first, site.lanes);
  }
  // packuswb clamps below 0 and above 255 like the reference.
  _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                   _mm_packus_epi16(Finish(Pair(r[0], r[1])), Finish(Pair(r[2], r[3]))));
}

template <int kTaps>
void ColumnRow(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes,
               ResampleRowVFn reference) {
  __m128i w[kTaps];
  for (int t = 0; t < kTaps; ++t) w[t] = _mm_set1_epi16(taps->weights[t]);
  int32_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    __m128i lo = _mm_setzero_si128(), hi = _mm_setzero_si128();
    for (int t = 0; t < kTaps; ++t) {
      const __m128i x = Load(taps->rows[t] + i);
      lo = _mm_add_epi16(lo, _mm_mulhi_epi16(Widen7Lo(x), w[t]));
      hi = _mm_add_epi16(hi, _mm_mulhi_epi16(Widen7Hi(x), w[t]));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                     _mm_packus_epi16(Finish(lo), Finish(hi)));
  }
  ResampleColumnTaps rest = *taps;
  for (int t = 0; t < kTaps; ++t) rest.rows[t] += i;
  reference(dst + i, &rest, bytes - i);
}

}  // namespace

void ResampleRowH4_SSE2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p) {
  ResampleRowAny<4>(dst, src, x0, width, p, ResampleRowH4_C, ResampleRowH4_C,
                    [](uint8_t* d, const uint8_t* s, int64_t j, const ResampleLineParams* q) {
                      Block4<4>(d, s, j, q);
                    });
}
void ResampleRowH8_SSE2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p) {
  ResampleRowAny<4>(dst, src, x0, width, p, ResampleRowH8_C, ResampleRowH8_C,
                    [](uint8_t* d, const uint8_t* s, int64_t j, const ResampleLineParams* q) {
                      Block4<8>(d, s, j, q);
                    });
}
void ResampleRowV4_SSE2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ColumnRow<4>(dst, taps, bytes, ResampleRowV4_C);
}
void ResampleRowV8_SSE2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ColumnRow<8>(dst, taps, bytes, ResampleRowV8_C);
}

}  // namespace qbo
