// AVX2 resampling rows: the SSE2 arithmetic on 256-bit registers.
// Horizontal: vpmovzxbw widens four source pixels in order, so one register
// is [p0 p1 | p2 p3] (four 16-bit channels a pixel) against the phase lanes
// [w0 w1 | w2 w3]; eight outputs are reduced together and packed.
#include <immintrin.h>

#include "filter/resample_row.h"
#include "filter/resample_row_any.h"

namespace qbo {
namespace {

inline __m256i Widen7(const uint8_t* s) {
  return _mm256_slli_epi16(
      _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s))), 7);
}
inline __m256i Load(const void* p) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(p));
}

inline __m256i Taps4(const uint8_t* s, const int16_t* w) {
  return _mm256_mulhi_epi16(Widen7(s), Load(w));
}
inline __m256i Taps8(const uint8_t* s, const int16_t* w) {
  return _mm256_add_epi16(Taps4(s, w), Taps4(s + 16, w + 16));
}

// a = [a0 a1 | a2 a3], b likewise (64-bit slots) -> [a0+a1 b0+b1 | a2+a3 b2+b3].
inline __m256i Pair(__m256i a, __m256i b) {
  return _mm256_add_epi16(_mm256_unpacklo_epi64(a, b), _mm256_unpackhi_epi64(a, b));
}
// Full sums of four outputs: [a b | c d].
inline __m256i Quad(const __m256i* r) {
  const __m256i x = Pair(r[0], r[1]), y = Pair(r[2], r[3]);
  return _mm256_add_epi16(_mm256_permute2x128_si256(x, y, 0x20),
                          _mm256_permute2x128_si256(x, y, 0x31));
}
inline __m256i Finish(__m256i sum) {
  return _mm256_srai_epi16(_mm256_add_epi16(sum, _mm256_set1_epi16(4)), 3);
}

template <int kTaps>
__attribute__((always_inline)) inline void Block8(uint8_t* dst, const uint8_t* src, int64_t j, const ResampleLineParams* p) {
  __m256i r[8];
  for (int i = 0; i < 8; ++i) {
    const TapSite site = SiteOf(src, j + i, p);
    r[i] = kTaps == 4 ? Taps4(site.first, site.lanes) : Taps8(site.first, site.lanes);
  }
  // packus gives [a b e f | c d g h]; qword order 0, 2, 1, 3 restores a..h.
  const __m256i packed = _mm256_packus_epi16(Finish(Quad(r)), Finish(Quad(r + 4)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm256_permute4x64_epi64(packed, 0xD8));
}

// Column rows: unpacking within 128-bit lanes and packing back with
// packuswb returns every byte to its own column.
template <int kTaps>
void ColumnRow(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes,
               ResampleRowVFn rest_row) {
  __m256i w[kTaps];
  for (int t = 0; t < kTaps; ++t) w[t] = _mm256_set1_epi16(taps->weights[t]);
  const __m256i zero = _mm256_setzero_si256();
  int32_t i = 0;
  for (; i + 32 <= bytes; i += 32) {
    __m256i lo = zero, hi = zero;
    for (int t = 0; t < kTaps; ++t) {
      const __m256i x = Load(taps->rows[t] + i);
      lo = _mm256_add_epi16(lo, _mm256_mulhi_epi16(_mm256_slli_epi16(_mm256_unpacklo_epi8(x, zero), 7), w[t]));
      hi = _mm256_add_epi16(hi, _mm256_mulhi_epi16(_mm256_slli_epi16(_mm256_unpackhi_epi8(x, zero), 7), w[t]));
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i),
                        _mm256_packus_epi16(Finish(lo), Finish(hi)));
  }
  ResampleColumnTaps rest = *taps;
  for (int t = 0; t < kTaps; ++t) rest.rows[t] += i;
  rest_row(dst + i, &rest, bytes - i);
}

}  // namespace

void ResampleRowH4_AVX2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p) {
  ResampleRowAny<8>(dst, src, x0, width, p, ResampleRowH4_C, ResampleRowH4_SSE2,
                    [](uint8_t* d, const uint8_t* s, int64_t j, const ResampleLineParams* q) {
                      Block8<4>(d, s, j, q);
                    });
}
void ResampleRowH8_AVX2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p) {
  ResampleRowAny<8>(dst, src, x0, width, p, ResampleRowH8_C, ResampleRowH8_SSE2,
                    [](uint8_t* d, const uint8_t* s, int64_t j, const ResampleLineParams* q) {
                      Block8<8>(d, s, j, q);
                    });
}
void ResampleRowV4_AVX2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ColumnRow<4>(dst, taps, bytes, ResampleRowV4_SSE2);
}
void ResampleRowV8_AVX2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ColumnRow<8>(dst, taps, bytes, ResampleRowV8_SSE2);
}

}  // namespace qbo
