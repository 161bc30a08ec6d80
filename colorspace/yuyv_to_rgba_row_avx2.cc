#include <immintrin.h>

#include "colorspace/yuv_to_rgb_core_avx2.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"

namespace qbo {
namespace {

__m256i Load(const uint8_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// Sixteen pixels from 32 YUYV bytes `s` and the same bytes one pair on;
// see PixelsOf8 of the SSE2 rows.
void PixelsOf16(__m256i s, __m256i s_next, const YuvToRgbRegs_AVX2& k, __m256i* r, __m256i* g,
                __m256i* b) {
  __m256i du, dv;
  PixelChroma_AVX2(_mm256_srli_epi16(s, 8), _mm256_srli_epi16(s_next, 8), &du, &dv);
  YuvToRgbChannels_AVX2(_mm256_and_si256(s, _mm256_set1_epi16(0x00FF)), du, dv, k, r, g, b);
}

// The block that ends a row: pairs 1..7 then pair 7 again as the next pairs.
__m256i OnePairOn(__m256i s) {
  return _mm256_permutevar8x32_epi32(s, _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 7));
}

template <bool kBgra>
struct Yuyv32Block {
  static constexpr int kPixels = 16;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_AVX2 k;

  void Convert(__m256i s, __m256i s_next, uint8_t* dst) const {
    __m256i r, g, b, first, second;
    PixelsOf16(s, s_next, k, &r, &g, &b);
    PackOpaquePixels_AVX2<kBgra>(r, g, b, &first, &second);
    Store(dst, first);
    Store(dst + 32, second);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const { Convert(Load(src), Load(src + 4), dst); }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src);
    Convert(s, OnePairOn(s), dst);
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

  void Convert(__m256i s, __m256i s_next, uint8_t* dst) const {
    __m256i r, g, b, first, second;
    PixelsOf16(s, s_next, k, &r, &g, &b);
    PackOpaquePixels_AVX2<false>(r, g, b, &first, &second);
    StoreWithoutAlpha(dst, first);
    StoreWithoutAlpha(dst + 24, second);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const { Convert(Load(src), Load(src + 4), dst); }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src);
    Convert(s, OnePairOn(s), dst);
  }
};

}  // namespace

#define QBO_DEFINE_YUYV_ROWS_AVX2(Name, Block)                                               \
  void Name##_AVX2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {  \
    ConvertYuyvBlocks(Block{LoadYuvToRgbRegs_AVX2(*v)}, src, dst, width);                    \
  }                                                                                          \
  void Name##_Any_AVX2(const uint8_t* src, uint8_t* dst, int width,                          \
                       const YuvToRgbVectors* v) {                                           \
    ConvertYuyvRowAny(Block{LoadYuvToRgbRegs_AVX2(*v)}, src, dst, width);                    \
  }

QBO_DEFINE_YUYV_ROWS_AVX2(YuyvToRgbaRow, Yuyv32Block<false>)
QBO_DEFINE_YUYV_ROWS_AVX2(YuyvToBgraRow, Yuyv32Block<true>)
QBO_DEFINE_YUYV_ROWS_AVX2(YuyvToRgb24Row, Yuyv24Block)

#undef QBO_DEFINE_YUYV_ROWS_AVX2

}  // namespace qbo
