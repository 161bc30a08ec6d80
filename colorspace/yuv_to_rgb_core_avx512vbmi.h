// AVX-512 VBMI store of the YUV-to-RGB rows: the channels of thirty-two
// pixels packed to bytes and put in pixel order by one two-register byte
// permute per sixteen pixels, where PackOpaquePixels_AVX512 needs four
// unpacks and two qword permutes. Include only from *_avx512vbmi.cc files.
#ifndef QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512VBMI_H_
#define QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512VBMI_H_

#include <immintrin.h>

#include <array>
#include <cstdint>

namespace qbo {
namespace {  // internal to each including file, as yuv_to_rgb_core_avx512.h

namespace vbmi_detail {

// Pixels 16h .. 16h + 15 out of the packs: in 128-bit lane L (pixels
// 8L .. 8L + 7) the first pack holds the first channel's eight bytes, then
// the third's; the second pack G, then 255.
constexpr std::array<uint8_t, 64> PixelIndex(int h) {
  std::array<uint8_t, 64> index{};
  for (int p = 0; p < 16; ++p) {
    const int q = 16 * h + p, lane = q / 8, j = q % 8;
    index[4 * p] = static_cast<uint8_t>(16 * lane + j);
    index[4 * p + 1] = static_cast<uint8_t>(64 + 16 * lane + j);
    index[4 * p + 2] = static_cast<uint8_t>(16 * lane + 8 + j);
    index[4 * p + 3] = static_cast<uint8_t>(64 + 16 * lane + 8 + j);
  }
  return index;
}

inline constexpr std::array<uint8_t, 64> kFirstPixels = PixelIndex(0);
inline constexpr std::array<uint8_t, 64> kSecondPixels = PixelIndex(1);

}  // namespace vbmi_detail

// Stores 32 opaque pixels (B G R A when kBgra, else R G B A) from 16-bit
// channels in natural order, saturated to bytes; with kStream past the
// cache, to a 64-byte aligned dst.
template <bool kBgra, bool kStream>
inline void StoreOpaquePixels_AVX512VBMI(__m512i r, __m512i g, __m512i b, uint8_t* dst) {
  const __m512i c0_c2 = kBgra ? _mm512_packus_epi16(b, r) : _mm512_packus_epi16(r, b);
  const __m512i g_a = _mm512_packus_epi16(g, _mm512_set1_epi16(255));
  const __m512i first = _mm512_loadu_si512(vbmi_detail::kFirstPixels.data());
  const __m512i second = _mm512_loadu_si512(vbmi_detail::kSecondPixels.data());
  Store64_AVX512<kStream>(dst, _mm512_permutex2var_epi8(c0_c2, first, g_a));
  Store64_AVX512<kStream>(dst + 64, _mm512_permutex2var_epi8(c0_c2, second, g_a));
}

}  // namespace
}  // namespace qbo

#endif  // QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512VBMI_H_
