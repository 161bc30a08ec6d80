#include <emmintrin.h>

#include "colorspace/yuv_to_rgb_core_sse2.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"

namespace qbo {
namespace {

__m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// Eight pixels from 16 YUYV bytes `s` (Y0 U0 Y1 V0 ... Y7 V3) and the same
// bytes one pair on, `s_next`. Luma sits in the low byte of every 16-bit
// lane, chroma in the high byte: U V U V ... after a shift.
void PixelsOf8(__m128i s, __m128i s_next, const YuvToRgbRegs_SSE2& k, __m128i* r, __m128i* g,
               __m128i* b) {
  __m128i du, dv;
  PixelChroma_SSE2(_mm_srli_epi16(s, 8), _mm_srli_epi16(s_next, 8), &du, &dv);
  YuvToRgbChannels_SSE2(_mm_and_si128(s, _mm_set1_epi16(0x00FF)), du, dv, k, r, g, b);
}

// The block that ends a row: its last pair (dword 3) is its own next pair.
__m128i OnePairOn(__m128i s) { return _mm_shuffle_epi32(s, _MM_SHUFFLE(3, 3, 2, 1)); }

template <bool kBgra>
struct Yuyv32Block {
  static constexpr int kPixels = 8;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_SSE2 k;

  void Convert(__m128i s, __m128i s_next, uint8_t* dst) const {
    __m128i r, g, b, lo, hi;
    PixelsOf8(s, s_next, k, &r, &g, &b);
    PackOpaquePixels_SSE2<kBgra>(r, g, b, &lo, &hi);
    Store(dst, lo);
    Store(dst + 16, hi);
  }
  void Middle(const uint8_t* src, uint8_t* dst) const { Convert(Load(src), Load(src + 4), dst); }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m128i s = Load(src);
    Convert(s, OnePairOn(s), dst);
  }
};

// Four RGBA pixels to 12 bytes R G B R G B ... in the low bytes, zeros above.
__m128i DropAlpha(__m128i px) {
  const __m128i low_dword = _mm_set_epi32(0, -1, 0, -1);
  const __m128i rgb = _mm_and_si128(px, _mm_set1_epi32(0x00FFFFFF));
  // Per qword: pixel 0 in bytes 0-2, pixel 1 moved from bytes 4-6 to 3-5.
  const __m128i qwords = _mm_or_si128(_mm_and_si128(rgb, low_dword),
                                      _mm_srli_epi64(_mm_andnot_si128(low_dword, rgb), 8));
  // Upper qword's six bytes moved from bytes 8-13 to 6-11.
  const __m128i low_qword = _mm_set_epi32(0, 0, -1, -1);
  return _mm_or_si128(_mm_and_si128(qwords, low_qword),
                      _mm_srli_si128(_mm_andnot_si128(low_qword, qwords), 2));
}

struct Yuyv24Block {
  static constexpr int kPixels = 8;
  static constexpr int kDstBytesPerPixel = 3;
  YuvToRgbRegs_SSE2 k;

  void Convert(__m128i s, __m128i s_next, uint8_t* dst) const {
    __m128i r, g, b, lo, hi;
    PixelsOf8(s, s_next, k, &r, &g, &b);
    PackOpaquePixels_SSE2<false>(r, g, b, &lo, &hi);
    const __m128i first = DropAlpha(lo), second = DropAlpha(hi);
    Store(dst, _mm_or_si128(first, _mm_slli_si128(second, 12)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 16), _mm_srli_si128(second, 4));
  }
  void Middle(const uint8_t* src, uint8_t* dst) const { Convert(Load(src), Load(src + 4), dst); }
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m128i s = Load(src);
    Convert(s, OnePairOn(s), dst);
  }
};

}  // namespace

#define QBO_DEFINE_YUYV_ROWS_SSE2(Name, Block)                                                  \
  void Name##_SSE2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {     \
    ConvertYuyvBlocks(Block{LoadYuvToRgbRegs_SSE2(*v)}, src, dst, width);                       \
  }                                                                                             \
  void Name##_Any_SSE2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) { \
    ConvertYuyvRowAny(Block{LoadYuvToRgbRegs_SSE2(*v)}, src, dst, width);                       \
  }

QBO_DEFINE_YUYV_ROWS_SSE2(YuyvToRgbaRow, Yuyv32Block<false>)
QBO_DEFINE_YUYV_ROWS_SSE2(YuyvToBgraRow, Yuyv32Block<true>)
QBO_DEFINE_YUYV_ROWS_SSE2(YuyvToRgb24Row, Yuyv24Block)

#undef QBO_DEFINE_YUYV_ROWS_SSE2

}  // namespace qbo
