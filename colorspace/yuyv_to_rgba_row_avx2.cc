#include <immintrin.h>

#include "colorspace/yuv_to_rgb_core_avx2.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"
#include "frame/simd_store.h"

namespace qbo {
namespace {

__m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

// Scaled chroma of sixteen pixels straight from the YUYV bytes. With
// s1 = the block one byte on and s4 = one pair on, pair k's dword is
//   s1: U_k Y V_k Y   s4: Y U_k+1 Y V_k+1,
// so one byte blend gives U_k U_k+1 V_k V_k+1, the four samples pair k
// needs; a byte shuffle per plane makes each pixel's 16-bit lane the two
// samples it averages (U_k U_k for the even pixel, U_k U_k+1 for the odd
// one), and pmaddubsw with 64, 64 on the samples minus 128 (xor 0x80 makes
// them signed) yields 128 (U - 128) and 64 ((U - 128) + (Un - 128))
// directly, at most 16384 in size.
void ChromaOf16(__m256i s1, __m256i s4, __m256i* du, __m256i* dv) {
  const __m256i from_s4 = _mm256_set1_epi32(static_cast<int>(0x80008000u));
  const __m256i pick_u = _mm256_setr_epi8(0, 0, 0, 1, 4, 4, 4, 5, 8, 8, 8, 9, 12, 12, 12, 13,  //
                                          0, 0, 0, 1, 4, 4, 4, 5, 8, 8, 8, 9, 12, 12, 12, 13);
  const __m256i pick_v = _mm256_add_epi8(pick_u, _mm256_set1_epi8(2));
  const __m256i weights = _mm256_set1_epi8(64);
  const __m256i samples = _mm256_xor_si256(_mm256_blendv_epi8(s1, s4, from_s4),
                                           _mm256_set1_epi8(static_cast<char>(0x80)));
  *du = _mm256_maddubs_epi16(weights, _mm256_shuffle_epi8(samples, pick_u));
  *dv = _mm256_maddubs_epi16(weights, _mm256_shuffle_epi8(samples, pick_v));
}

// Sixteen pixels from the block and its chroma.
void PixelsOf16(__m256i s, __m256i du, __m256i dv, const YuvToRgbRegs_AVX2& k, __m256i* r,
                __m256i* g, __m256i* b) {
  YuvToRgbChannels_AVX2(_mm256_and_si256(s, _mm256_set1_epi16(0x00FF)), du, dv, k, r, g, b);
}

// The block that ends a row: its bytes from one byte and one pair on, with
// the last pair standing in for the missing next pair (the bytes that come
// from past the row are never used).
void ShiftedLast(__m256i s, __m256i* s1, __m256i* s4) {
  *s1 = _mm256_srli_epi32(s, 8);
  *s4 = _mm256_permutevar8x32_epi32(s, _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 7));
}

// Two registers of sixteen pixels a block, each step done for both before
// the next: one register's chain of dependent steps is longer than the
// out-of-order window can cover alone (the row ran 6 % faster on Zen 4).
template <bool kBgra, bool kStream>
struct Yuyv32Block {
  static constexpr int kPixels = 32;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_AVX2 k;

  void Convert(const __m256i (&s)[2], const __m256i (&s1)[2], const __m256i (&s4)[2],
               uint8_t* dst) const {
    __m256i du[2], dv[2], r[2], g[2], b[2], first[2], second[2];
    for (int h = 0; h < 2; ++h) ChromaOf16(s1[h], s4[h], &du[h], &dv[h]);
    for (int h = 0; h < 2; ++h) PixelsOf16(s[h], du[h], dv[h], k, &r[h], &g[h], &b[h]);
    for (int h = 0; h < 2; ++h)
      PackOpaquePixels_AVX2<kBgra>(r[h], g[h], b[h], &first[h], &second[h]);
    for (int h = 0; h < 2; ++h) {
      Store32_AVX2<kStream>(dst + 64 * h, first[h]);
      Store32_AVX2<kStream>(dst + 64 * h + 32, second[h]);
    }
  }
  void Middle(const uint8_t* src, uint8_t* dst) const {
    Convert({Load(src), Load(src + 32)}, {Load(src + 1), Load(src + 33)},
            {Load(src + 4), Load(src + 36)}, dst);
  }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src + 32);
    __m256i s1, s4;
    ShiftedLast(s, &s1, &s4);
    Convert({Load(src), s}, {Load(src + 1), s1}, {Load(src + 4), s4}, dst);
  }
};

// Eight RGBA pixels to 24 bytes: alpha dropped within each half (12 bytes
// each), then the halves' dwords 0-2 and 4-6 brought together.
void StoreWithoutAlpha(uint8_t* dst, __m256i px) {
  const __m256i drop = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                        0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(px, drop),
                                                     _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 16), _mm256_extracti128_si256(packed, 1));
}

struct Yuyv24Block {
  static constexpr int kPixels = 16;
  static constexpr int kDstBytesPerPixel = 3;
  YuvToRgbRegs_AVX2 k;

  void Convert(__m256i s, __m256i s1, __m256i s4, uint8_t* dst) const {
    __m256i du, dv, r, g, b, first, second;
    ChromaOf16(s1, s4, &du, &dv);
    PixelsOf16(s, du, dv, k, &r, &g, &b);
    PackOpaquePixels_AVX2<false>(r, g, b, &first, &second);
    StoreWithoutAlpha(dst, first);
    StoreWithoutAlpha(dst + 24, second);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const {
    Convert(Load(src), Load(src + 1), Load(src + 4), dst);
  }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src);
    __m256i s1, s4;
    ShiftedLast(s, &s1, &s4);
    Convert(s, s1, s4, dst);
  }
};

}  // namespace

#define QBO_DEFINE_YUYV_ROWS_AVX2(Name, Block)                                                  \
  void Name##_AVX2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {     \
    ConvertYuyvBlocks(Block{LoadYuvToRgbRegs_AVX2(*v)}, src, dst, width);                       \
  }                                                                                             \
  void Name##_Any_AVX2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) { \
    ConvertYuyvRowAny(Block{LoadYuvToRgbRegs_AVX2(*v)}, src, dst, width);                       \
  }

QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToRgbaRow, AVX2, Yuyv32Block, false, YuvToRgbRegs_AVX2, 32)
QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToBgraRow, AVX2, Yuyv32Block, true, YuvToRgbRegs_AVX2, 32)
QBO_DEFINE_YUYV_ROWS_AVX2(YuyvToRgb24Row, Yuyv24Block)

#undef QBO_DEFINE_YUYV_ROWS_AVX2

}  // namespace qbo
