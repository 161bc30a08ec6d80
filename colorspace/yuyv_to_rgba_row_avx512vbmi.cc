// AVX-512 VBMI rows of YUYV to 32-bit, two registers of thirty-two pixels
// a block, interleaved step by step as the AVX2 rows are: the
// AVX-512 rows' arithmetic, with the byte placement done by two-register
// byte permutes. Each pixel's chroma byte pair (U_k U_k for an even pixel,
// U_k U_k+1 for an odd one) comes out of the block and the pair after it in
// one permute instead of two shuffles and a dword permute, and the packed
// channels go to B G R A order in one permute per 16 pixels instead of four
// unpacks and a qword permute. Where 512-bit operations run as two halves,
// the row is bound by its operation count, and these save a fifth of it.
#include <immintrin.h>

#include <array>
#include <cstring>

#include "colorspace/yuv_to_rgb_core_avx512.h"
#include "colorspace/yuv_to_rgb_core_avx512vbmi.h"
#include "colorspace/yuyv_row_driver.h"
#include "colorspace/yuyv_to_rgba_row.h"

namespace qbo {
namespace {

using ByteIndex = std::array<uint8_t, 64>;

// Chroma byte pairs of the 32 pixels: for pixel 2k both bytes are sample k
// (byte 4k + `at` of the block: 1 for U, 3 for V); for pixel 2k + 1 the
// second byte is sample k + 1, which for k = 15 is the first pair after
// the block: byte `at` of the second register (index 64 + at), or, for the
// block that ends its row, sample 15 itself.
constexpr ByteIndex ChromaIndex(int at, bool row_end) {
  ByteIndex index{};
  for (int k = 0; k < 16; ++k) {
    const int own = 4 * k + at;
    const int next = k < 15 ? own + 4 : (row_end ? own : 64 + at);
    index[4 * k] = index[4 * k + 1] = index[4 * k + 2] = static_cast<uint8_t>(own);
    index[4 * k + 3] = static_cast<uint8_t>(next);
  }
  return index;
}

constexpr ByteIndex kUPairs = ChromaIndex(1, false), kVPairs = ChromaIndex(3, false);
constexpr ByteIndex kUPairsAtEnd = ChromaIndex(1, true), kVPairsAtEnd = ChromaIndex(3, true);

inline __m512i Load(const ByteIndex& index) { return _mm512_loadu_si512(index.data()); }

template <bool kBgra, bool kStream>
struct Yuyv32Block {
  static constexpr int kPixels = 64;
  static constexpr int kDstBytesPerPixel = 4;
  YuvToRgbRegs_AVX512 k;

  // Two registers of 32 pixels; `after[h]` holds what the chroma indices
  // past register h point at.
  void Convert(const __m512i (&s)[2], const __m512i (&after)[2], const ByteIndex& u_end,
               const ByteIndex& v_end, uint8_t* dst) const {
    const __m512i u_index[2] = {Load(kUPairs), Load(u_end)};
    const __m512i v_index[2] = {Load(kVPairs), Load(v_end)};
    __m512i du[2], dv[2], r[2], g[2], b[2];
    for (int h = 0; h < 2; ++h) {
      du[h] = PairedChroma_AVX512(_mm512_permutex2var_epi8(s[h], u_index[h], after[h]));
      dv[h] = PairedChroma_AVX512(_mm512_permutex2var_epi8(s[h], v_index[h], after[h]));
    }
    for (int h = 0; h < 2; ++h) {
      YuvToRgbChannels_AVX512(_mm512_and_si512(s[h], _mm512_set1_epi16(0x00FF)), du[h], dv[h], k,
                              &r[h], &g[h], &b[h]);
    }
    for (int h = 0; h < 2; ++h)
      StoreOpaquePixels_AVX512VBMI<kBgra, kStream>(r[h], g[h], b[h], dst + 128 * h);
  }
  // The pair after the first register opens the second; the pair after
  // the block comes in the low dword of a third.
  void Middle(const uint8_t* src, uint8_t* dst) const {
    int32_t next;
    std::memcpy(&next, src + 128, 4);
    const __m512i second = _mm512_loadu_si512(src + 64);
    Convert({_mm512_loadu_si512(src), second},
            {second, _mm512_castsi128_si512(_mm_cvtsi32_si128(next))}, kUPairs, kVPairs, dst);
  }
  // The block that ends a row reads only its own bytes.
  void Last(const uint8_t* src, uint8_t* dst) const {
    const __m512i second = _mm512_loadu_si512(src + 64);
    Convert({_mm512_loadu_si512(src), second}, {second, second}, kUPairsAtEnd, kVPairsAtEnd, dst);
  }
};

}  // namespace

QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToRgbaRow, AVX512VBMI, Yuyv32Block, false,
                               YuvToRgbRegs_AVX512, 64)
QBO_DEFINE_STREAMING_YUYV_ROWS(YuyvToBgraRow, AVX512VBMI, Yuyv32Block, true,
                               YuvToRgbRegs_AVX512, 64)

}  // namespace qbo
