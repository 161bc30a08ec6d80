// AVX-512 rows of YUYV to 32-bit, thirty-two pixels a block.
#include <immintrin.h>

#include <cstring>

#include "colorspace/yuv_to_rgb_core_avx512.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"

namespace qbo {
namespace {

// Scaled chroma of thirty-two pixels from the block s and s4, the block
// one pair on (dword k of s4 is pair k + 1). Each pixel's 16-bit lane gets
// the two samples it averages, U_k U_k (even pixel) or U_k U_k+1 (odd):
// three bytes from s and the fourth from s4 at the same place, by one
// masked shuffle. Shifted loads at +2 and +4 would do the same with fewer
// shuffles, but every one of them straddles a cache line, and on frames
// that stream from memory those straddling loads cost more than the row.
void ChromaOf32(__m512i s, __m512i s4, __m512i* du, __m512i* dv) {
  const __m512i pick_u =
      _mm512_broadcast_i32x4(_mm_setr_epi8(1, 1, 1, 1, 5, 5, 5, 5, 9, 9, 9, 9, 13, 13, 13, 13));
  const __m512i pick_v =
      _mm512_broadcast_i32x4(_mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15));
  const __mmask64 fourth_bytes = 0x8888888888888888ull;
  *du = PairedChroma_AVX512(
      _mm512_mask_shuffle_epi8(_mm512_shuffle_epi8(s, pick_u), fourth_bytes, s4, pick_u));
  *dv = PairedChroma_AVX512(
      _mm512_mask_shuffle_epi8(_mm512_shuffle_epi8(s, pick_v), fourth_bytes, s4, pick_v));
}

template <bool kBgra, bool kStream>
struct Yuyv32Block {
  static constexpr int kPixels = 32;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_AVX512 k;

  void Convert(__m512i s, __m512i s4, uint8_t* dst) const {
    __m512i du, dv, r, g, b, first, second;
    ChromaOf32(s, s4, &du, &dv);
    YuvToRgbChannels_AVX512(_mm512_and_si512(s, _mm512_set1_epi16(0x00FF)), du, dv, k, &r, &g,
                            &b);
    PackOpaquePixels_AVX512<kBgra>(r, g, b, &first, &second);
    Store64_AVX512<kStream>(dst, first);
    Store64_AVX512<kStream>(dst + 64, second);
  }
  // s4 takes the pair after the block into its last dword.
  void Middle(const uint8_t* src, uint8_t* dst) const {
    int32_t next;
    std::memcpy(&next, src + 64, 4);
    const __m512i s = _mm512_loadu_si512(src);
    Convert(s,
            _mm512_permutex2var_epi32(s, _mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12,
                                                           13, 14, 15, 16),
                                      _mm512_castsi128_si512(_mm_cvtsi32_si128(next))),
            dst);
  }
  // The block that ends a row reads only its own bytes: the last pair
  // stands in for the missing next pair.
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m512i s = _mm512_loadu_si512(src);
    Convert(s,
            _mm512_permutexvar_epi32(
                _mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 15), s),
            dst);
  }
};

}  // namespace

QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToRgbaRow, AVX512, Yuyv32Block, false, YuvToRgbRegs_AVX512, 64)
QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToBgraRow, AVX512, Yuyv32Block, true, YuvToRgbRegs_AVX512, 64)

}  // namespace qbo
