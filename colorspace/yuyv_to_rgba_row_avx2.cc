#include <immintrin.h>

#include "colorspace/yuv_to_rgb_core_avx2.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"
#include "frame/simd_store.h"

namespace qbo {
namespace {

__m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

// Scaled chroma of sixteen pixels straight from the YUYV bytes. With
// s = the block, s2 = the block one pixel on, s4 = one pair on, pair k's
// dword is   s: Y U_k Y V_k   s2: Y V_k Y U_k+1   s4: Y U_k+1 Y V_k+1.
// Word blends give  Y U_k Y U_k+1  and  Y V_k Y V_k+1;  a byte shuffle makes
// each pixel's 16-bit lane the two samples it averages (U_k U_k for the
// even pixel, U_k U_k+1 for the odd one), and pmaddubsw with 64, 64 on the
// samples minus 128 (xor 0x80 makes them signed) yields 128 (U - 128) and
// 64 ((U - 128) + (Un - 128)) directly, at most 16256 in size.
void ChromaOf16(__m256i s, __m256i s2, __m256i s4, __m256i* du, __m256i* dv) {
  const __m256i pick = _mm256_setr_epi8(1, 1, 1, 3, 5, 5, 5, 7, 9, 9, 9, 11, 13, 13, 13, 15,  //
                                        1, 1, 1, 3, 5, 5, 5, 7, 9, 9, 9, 11, 13, 13, 13, 15);
  const __m256i bias = _mm256_set1_epi8(static_cast<char>(0x80));
  const __m256i weights = _mm256_set1_epi8(64);
  const __m256i u =
      _mm256_xor_si256(_mm256_shuffle_epi8(_mm256_blend_epi16(s, s2, 0xAA), pick), bias);
  const __m256i v =
      _mm256_xor_si256(_mm256_shuffle_epi8(_mm256_blend_epi16(s2, s4, 0xAA), pick), bias);
  *du = _mm256_maddubs_epi16(weights, u);
  *dv = _mm256_maddubs_epi16(weights, v);
}

// Sixteen pixels from the block and its chroma.
void PixelsOf16(__m256i s, __m256i du, __m256i dv, const YuvToRgbRegs_AVX2& k, __m256i* r,
                __m256i* g, __m256i* b) {
  YuvToRgbChannels_AVX2(_mm256_and_si256(s, _mm256_set1_epi16(0x00FF)), du, dv, k, r, g, b);
}

// The block that ends a row: its bytes from one pixel and one pair on, with
// the last pair standing in for the missing next pair (its Y bytes are
// never used).
void ShiftedLast(__m256i s, __m256i* s2, __m256i* s4) {
  *s4 = _mm256_permutevar8x32_epi32(s, _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 7));
  // alignr shifts each half by two bytes, taking the two bytes that enter
  // from dword 4 (low half) and from the last dword, Y U of the last pair.
  const __m256i entering =
      _mm256_permutevar8x32_epi32(s, _mm256_setr_epi32(4, 7, 7, 7, 7, 7, 7, 7));
  *s2 = _mm256_alignr_epi8(entering, s, 2);
}

template <bool kBgra, bool kStream>
struct Yuyv32Block {
  static constexpr int kPixels = 16;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_AVX2 k;

  void Convert(__m256i s, __m256i s2, __m256i s4, uint8_t* dst) const {
    __m256i du, dv, r, g, b, first, second;
    ChromaOf16(s, s2, s4, &du, &dv);
    PixelsOf16(s, du, dv, k, &r, &g, &b);
    PackOpaquePixels_AVX2<kBgra>(r, g, b, &first, &second);
    Store32_AVX2<kStream>(dst, first);
    Store32_AVX2<kStream>(dst + 32, second);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const {
    Convert(Load(src), Load(src + 2), Load(src + 4), dst);
  }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src);
    __m256i s2, s4;
    ShiftedLast(s, &s2, &s4);
    Convert(s, s2, s4, dst);
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

  void Convert(__m256i s, __m256i s2, __m256i s4, uint8_t* dst) const {
    __m256i du, dv, r, g, b, first, second;
    ChromaOf16(s, s2, s4, &du, &dv);
    PixelsOf16(s, du, dv, k, &r, &g, &b);
    PackOpaquePixels_AVX2<false>(r, g, b, &first, &second);
    StoreWithoutAlpha(dst, first);
    StoreWithoutAlpha(dst + 24, second);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const {
    Convert(Load(src), Load(src + 2), Load(src + 4), dst);
  }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m256i s = Load(src);
    __m256i s2, s4;
    ShiftedLast(s, &s2, &s4);
    Convert(s, s2, s4, dst);
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
